#pragma once

// Sends every closed row to the fast model, which fixes misheard words and translates the row
// properly; a fix is believed only when it stays close to the row as it was heard.
//
// Main thread only: add() and the handling of each reply run there; only the model call runs on
// the thread pool, at most one at a time. Rows that arrive while a call runs form the next batch.
// onFix is called on the main thread. Held by std::shared_ptr: a call in flight keeps its
// Corrector alive until the reply is handled, so rows closed just before the owner let go of it
// still get their fix, unless the owner cancel()s it first.

#include "ai/AIProvider.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class Corrector final : public std::enable_shared_from_this<Corrector>
{
public:
    // language and target are the ids of the lecture and the answer language ("Korean").
    static std::shared_ptr<Corrector> make(std::shared_ptr<const AIProvider> provider, QString language,
                                           QString target);

    ~Corrector();
    Corrector(const Corrector &) = delete;
    Corrector &operator=(const Corrector &) = delete;
    Corrector(Corrector &&) = delete;
    Corrector &operator=(Corrector &&) = delete;

    void add(int id, const QString &text);
    // Drops the rows waiting and every reply still to come: onFix is not called any more.
    void cancel();

    // (row id, fixed text, translation of the fixed text)
    std::function<void(int, const QString &, const QString &)> onFix = [](int, const QString &, const QString &) {};

private:
    struct Row
    {
        int id = 0;
        QString text;
    };
    Corrector(std::shared_ptr<const AIProvider> provider, QString language, QString target);

    void flush();
    QString prompt(const QList<Row> &batch) const;
    void finish(const QList<Row> &batch, const std::optional<QString> &reply);
    void apply(const Row &row, const QString &fixed, const QString &translation);

    const std::shared_ptr<const AIProvider> provider_;
    const QString language_;
    const QString target_;
    QList<Row> pending_;
    QStringList context_;
    bool busy_ = false;
    bool cancelled_ = false;
};
