#pragma once

// One of our local pages (transcript or feed) in a web view, and the one way native code talks to
// it: `call` turns a function name and its arguments into one script text, built by JSON
// serialisation, and runs it once the page has loaded; earlier calls wait in order. Messages the
// page posts on its channel come back through `onMessage`. Main thread only. The view is a child
// widget that the owning window places in its layout.

#include <QJsonArray>
#include <QJsonValue>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>

class PageBridge;
class QWebEngineView;

class PageView final : public QObject
{
    Q_OBJECT

public:
    // Loads the page from `url` (normally "qrc:/<name>.html"). A page that fails to load leaves a
    // blank view and a queue that keeps growing.
    explicit PageView(const QString &url, QObject *parent = nullptr);
    ~PageView() override;

    QWebEngineView *web() const;
    bool ready() const;

    // Runs `name(...[args])` in the page, in call order: calls of one turn of the event loop go
    // together, and calls before the load finished wait for it.
    void call(const QString &name, const QJsonArray &args = {});

    // Once, when the page has loaded.
    std::function<void()> onReady = [] {};
    std::function<void(const QString &name, const QJsonValue &body)> onMessage =
        [](const QString &, const QJsonValue &) {};

    // "light" or "dark"; anything else follows the application's look, now and when it changes.
    void setTheme(const QString &theme);

    // The script text of one call, e.g. `addLine(...["1","hi"])`.
    static QString script(const QString &name, const QJsonArray &args);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followLook();
    void loaded(bool ok);
    void flush();

    QPointer<QWebEngineView> web_;
    PageBridge *bridge_;
    bool ready_ = false;
    bool followsLook_ = true;
    QStringList pending_;  // script texts not yet handed to the page, in call order
};
