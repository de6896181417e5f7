#pragma once

// The AI feed page ("feed") in a web view: notes, cards, the running summary, the vocabulary,
// dated events with an add button, and the chat. The panel and the chat window each own one and
// forward their feed operations to it. Main thread only; the view is placed by the owner.

#include "app/views/FeedSurface.h"

#include <QJsonValue>
#include <QObject>
#include <QString>

#include <functional>

class PageView;
class QWebEngineView;

class FeedView final : public QObject, public FeedSurface
{
    Q_OBJECT

public:
    explicit FeedView(QObject *parent = nullptr);

    QWebEngineView *web() const;
    bool ready() const;
    // Once, when the page has loaded.
    std::function<void()> onReady = [] {};

    // The id of an event whose add button the student pressed.
    std::function<void(const QString &id)> onAddEvent = [](const QString &) {};

    // The name the AI's chat bubbles carry; "AI" until set.
    void setName(const QString &name);
    QString name() const;

    // "light", "dark", or "" to follow the application's look (the default).
    void setTheme(const QString &theme);

    void addNote(const QString &text) override;
    void addCard(const QString &kind, const QString &text, const QString &time) override;
    void setSummary(const QString &text, const QString &stamp, bool final) override;
    void setVocabulary(const QList<QStringList> &terms) override;
    void addEvent(const QString &id, const ClassEvent &event) override;
    void markEventAdded(const QString &id) override;
    // The page shows `text` (attachments already named in it) and then the waiting indicator.
    void showYou(const QString &text, const QList<Attachment> &attachments) override;
    void addReply(const QString &text) override;

private:
    void message(const QString &name, const QJsonValue &body);

    PageView *page_;
    QString name_ = QStringLiteral("AI");
};
