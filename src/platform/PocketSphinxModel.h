#pragma once

// The files of one PocketSphinx model (acoustic model folder, pronunciation dictionary, language
// model) and the decoder Quillet makes of them. Shared by the recogniser and by the small
// quillet-model-check program, which loads a model in a process of its own first: PocketSphinx
// ends the whole process on some damaged files. A plain value; any thread.

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

struct ps_decoder_s;

struct PocketSphinxModel
{
    QString acoustic;       // the folder with "mdef"
    QString dictionary;     // "*.dict"
    QString languageModel;  // "*.lm.bin", "*.lm" or "*.lm.DMP"

    // The parts found in a model folder, or what is missing, worded for the user.
    static std::variant<PocketSphinxModel, QString> in(const QString &folder);
    // "加载语音识别模型失败，请检查模型文件夹：" + detail.
    static QString failure(const QString &detail);

    // The paths as the check program takes them on its command line, and back.
    QStringList arguments() const;
    static std::optional<PocketSphinxModel> fromArguments(const QStringList &arguments);

    // A decoder with the product's settings, owned by the caller (ps_free); null on failure.
    ps_decoder_s *open() const;
};
