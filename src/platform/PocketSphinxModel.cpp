#include "platform/PocketSphinxModel.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <pocketsphinx.h>

QString PocketSphinxModel::failure(const QString &detail)
{
    return u"加载语音识别模型失败，请检查模型文件夹：" + detail;
}

std::variant<PocketSphinxModel, QString> PocketSphinxModel::in(const QString &folder)
{
    const QDir dir(folder);
    PocketSphinxModel model;
    for (const QFileInfo &entry : dir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        if (QFileInfo::exists(entry.filePath() + QStringLiteral("/mdef"))) {
            model.acoustic = entry.filePath();
            break;
        }
    }
    const QStringList dictionaries = dir.entryList({QStringLiteral("*.dict")}, QDir::Files, QDir::Name);
    // Phonetic language models sit beside the word model in Debian's folder; they recognise no words.
    QStringList languageModels;
    for (const QString &name : dir.entryList({QStringLiteral("*.lm.bin"), QStringLiteral("*.lm"), QStringLiteral("*.lm.DMP")},
                                             QDir::Files, QDir::Name)) {
        if (!name.contains(u"-phone"))
            languageModels << name;
    }
    if (model.acoustic.isEmpty())
        return failure(folder + u" 里没有声学模型（含 mdef 的文件夹）");
    if (dictionaries.isEmpty())
        return failure(folder + u" 里没有发音词典（*.dict）");
    if (languageModels.isEmpty())
        return failure(folder + u" 里没有语言模型（*.lm.bin、*.lm 或 *.lm.DMP）");
    model.dictionary = dir.filePath(dictionaries.front());
    model.languageModel = dir.filePath(languageModels.front());
    return model;
}

QStringList PocketSphinxModel::arguments() const
{
    return {acoustic, dictionary, languageModel};
}

std::optional<PocketSphinxModel> PocketSphinxModel::fromArguments(const QStringList &arguments)
{
    if (arguments.size() != 3)
        return std::nullopt;
    return PocketSphinxModel{arguments[0], arguments[1], arguments[2]};
}

ps_decoder_t *PocketSphinxModel::open() const
{
    const QByteArray acousticPath = QFile::encodeName(acoustic);
    const QByteArray dictionaryPath = QFile::encodeName(dictionary);
    const QByteArray languageModelPath = QFile::encodeName(languageModel);
    // Measured on lecture sentences with and without room noise: without the second pass and with
    // fewer active models per frame, recognition takes half the time and an utterance's end a
    // tenth, at about the same accuracy. -ascale 12 rather than 20 spreads the word posteriors,
    // which the recogniser calibrates into confidences.
    cmd_ln_t *config = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", acousticPath.constData(), "-dict",
                                   dictionaryPath.constData(), "-lm", languageModelPath.constData(), "-ascale", "12",
                                   "-fwdflat", "no", "-maxhmmpf", "3000", "-logfn", "/dev/null", nullptr);
    if (!config)
        return nullptr;
    ps_decoder_t *decoder = ps_init(config);
    cmd_ln_free_r(config);
    return decoder;
}
