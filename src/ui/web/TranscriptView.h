#pragma once

// The bilingual transcript page ("subtitle") in a web view: finished rows addressed by decimal ids,
// their translations, and the unfinished drafts below them, replaced as a whole. The panel, the
// subtitle bar and the library each own one. Main thread only; the view is placed by the owner.

#include "app/views/TranscriptSurface.h"

#include <QJsonValue>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class PageView;
class QWebEngineView;

class TranscriptView final : public QObject, public TranscriptSurface
{
    Q_OBJECT

public:
    // `look` is "panel" or "bar"; `fontSize` in points. Both are applied once the page has loaded.
    TranscriptView(const QString &look, double fontSize, QObject *parent = nullptr);

    QWebEngineView *web() const;
    bool ready() const;
    // Once, when the page has loaded.
    std::function<void()> onReady = [] {};

    // A clicked row's id, once `setSeekable(true)` was called.
    std::function<void(int id)> onLineClick = [](int) {};

    void setLook(const QString &look);
    void setFontSize(double size);
    // "light", "dark", or "" to follow the application's look (the default); the "bar" look is always dark.
    void setTheme(const QString &theme);
    // A font id: "system", "songti", "wenkai", "smiley" or "kuaile".
    void setFont(const QString &family);
    // `#rrggbb` colours; an empty one means the look's own colour.
    void setColors(const QString &translation, const QString &original);
    void addLine(int id, const QString &text) override;
    void setText(int id, const QString &text) override;
    void setTranslation(int id, const QString &text) override;
    void setDrafts(const Drafts &drafts) override;
    void clear(const QString &hint) override;
    void setSeekable(bool on);
    void setActive(int id);

private:
    // A "line" message body as a row id: a decimal integer as a number or as a string, else none.
    static std::optional<int> lineId(const QJsonValue &body);
    void message(const QString &name, const QJsonValue &body);

    PageView *page_;
};
