#pragma once

// Every window the coordinator talks to, as fakes that write what they were told into one log
// ("panel.note …", "bar.tr 1 …") and answer the desktop's questions as a test scripts them.

#include "app/AppWindows.h"

#include <QRegularExpression>
#include <QStringList>

#include <deque>

// One log for all windows, so a test sees the order across them.
struct WindowLog
{
    QStringList entries;

    void add(const QString &entry) { entries << entry; }
    // The entries that start with prefix, the prefix kept.
    QStringList starting(const QString &prefix) const
    {
        return entries.filter(QRegularExpression(u'^' + QRegularExpression::escape(prefix)));
    }
};

class FakeTranscript final : public TranscriptSurface
{
public:
    FakeTranscript(WindowLog &log, QString name)
        : log_(log)
        , name_(std::move(name))
    {
    }
    void clear(const QString &hint) override { log_.add(name_ + u".clear " + hint); }
    void addLine(int id, const QString &text) override { say(u"add", id, text); }
    void setText(int id, const QString &text) override { say(u"text", id, text); }
    void setTranslation(int id, const QString &text) override { say(u"tr", id, text); }
    void setDrafts(const Drafts &drafts) override
    {
        QStringList shown;
        for (const auto &[text, translation] : drafts)
            shown << text + u'|' + translation;
        log_.add(name_ + u".drafts " + shown.join(u", "));
    }

private:
    void say(QStringView what, int id, const QString &text)
    {
        log_.add(QStringLiteral("%1.%2 %3 ").arg(name_, what).arg(id) + text);
    }

    WindowLog &log_;
    QString name_;
};

// The feed half of the panel and the chat window.
template<typename Base>
class FakeFeed : public Base
{
public:
    FakeFeed(WindowLog &log, QString name)
        : log_(log)
        , name_(std::move(name))
    {
    }
    void addNote(const QString &text) override { say(u"note " + text); }
    void addCard(const QString &kind, const QString &text, const QString &) override { say(kind + u' ' + text); }
    void setSummary(const QString &text, const QString &, bool final) override
    {
        say((final ? u"final " : u"summary ") + text);
    }
    void setVocabulary(const QList<QStringList> &terms) override
    {
        QStringList shown;
        for (const QStringList &term : terms)
            shown << term.join(u'/');
        say(u"terms " + shown.join(u", "));
    }
    void addEvent(const QString &, const ClassEvent &event) override { say(u"event " + event.date + u' ' + event.title); }
    void markEventAdded(const QString &) override { say(QStringLiteral("event added")); }
    void showYou(const QString &text, const QList<Attachment> &) override { say(u"you " + text); }
    void addReply(const QString &text) override { say(u"reply " + text); }

protected:
    void say(const QString &entry) { log_.add(name_ + u'.' + entry); }

private:
    WindowLog &log_;
    QString name_;
};

class FakePanel final : public FakeFeed<PanelView>
{
public:
    explicit FakePanel(WindowLog &log)
        : FakeFeed<PanelView>(log, QStringLiteral("panel"))
        , transcript_(log, QStringLiteral("rows"))
    {
    }
    TranscriptSurface &transcript() override { return transcript_; }
    void setTitle(const QString &title) override { say(u"title " + title); }
    void setStatus(const QString &text) override { say(u"status " + text); }
    void setRecording(bool recording, const QString &time) override
    {
        say(recording ? u"recording " + time : QStringLiteral("stopped"));
    }
    void setLanguages(const QString &lecture, const QString &answer, const QStringList &extras) override
    {
        say(u"languages " + lecture + u" → " + answer + (extras.isEmpty() ? QString() : u" + " + extras.join(u',')));
    }
    void setSwitches(const Switches &) override {}
    void setUnread(bool unread) override { say(unread ? QStringLiteral("unread") : QStringLiteral("all read")); }
    void setAccount(const std::optional<QString> &email) override { say(u"account " + email.value_or(QStringLiteral("-"))); }
    void setPinned(bool) override {}
    void setMerged(bool merged) override { say(merged ? QStringLiteral("merged") : QStringLiteral("apart")); }
    void setLayout(const QString &) override {}
    void applyShow(const QString &) override {}
    void placeDivider() override {}
    void setBackground(const QString &) override {}
    void setTranscriptFont(const QString &, double) override {}
    void bringToFront() override {}
    void orderOut() override { say(QStringLiteral("hidden")); }
    bool isMinimized() const override { return false; }
    QRect frame() const override { return frame_; }

    QRect frame_{100, 300, 420, 640};

private:
    FakeTranscript transcript_;
};

class FakeSubtitles final : public SubtitleView
{
public:
    explicit FakeSubtitles(WindowLog &log)
        : transcript_(log, QStringLiteral("bar"))
    {
    }
    TranscriptSurface &transcript() override { return transcript_; }
    void toggle() override { visible_ = !visible_; }
    void show() override { visible_ = true; }
    bool isVisible() const override { return visible_; }
    QString fontID() const override { return QStringLiteral("system"); }
    void setFontFamily(const QString &) override {}
    void setTextSize(double) override {}
    QRect frame() const override { return frame_; }
    void setFrame(const QRect &frame, bool) override { frame_ = frame; }
    void setFloating(bool floating) override { floating_ = floating; }

    QRect frame_{100, 100, 800, 90};
    bool floating_ = false;

private:
    FakeTranscript transcript_;
    bool visible_ = true;
};

class FakeChat final : public FakeFeed<ChatView>
{
public:
    explicit FakeChat(WindowLog &log)
        : FakeFeed<ChatView>(log, QStringLiteral("chat"))
    {
    }
    void setName(const QString &) override {}
    void toggle() override {}
    void setFloating(bool) override {}
};

class FakeLibrary final : public LibraryView
{
public:
    void show() override {}
    bool isVisible() const override { return false; }
    void reload() override { ++reloads; }
    void refresh(const QString &) override {}
    void setRefining(const QSet<QString> &folders) override { refining = folders; }

    int reloads = 0;
    QSet<QString> refining;
};

class FakeSettings final : public SettingsView
{
public:
    void load(const Config &) override {}
    void show() override { ++shown; }
    void hide() override {}
    int shown = 0;
};

class FakeSlides final : public SlidesView
{
public:
    void heard(const QString &line) override { lines << line; }
    void stopFollowing() override {}
    void toggle() override {}
    void open(const QString &) override {}
    QStringList lines;
};

class FakeLogin final : public LoginView
{
public:
    void show() override {}
    void showSetPassword() override {}
};

class FakeAccount final : public AccountView
{
public:
    void show() override {}
};

// Answers the save and discard questions from scripts the test fills; unanswered ones wait.
class FakeDesktop final : public Desktop
{
public:
    void askToSave(const SaveQuestion &question, std::function<void(const SaveAnswer &)> answer) override
    {
        questions << question;
        if (!saves.empty())
            answer(take(saves));
    }
    void confirmDiscard(std::function<void(bool)> answer) override
    {
        if (!discards.empty())
            answer(take(discards));
    }
    void showAbout(const QString &message, const QString &) override { about = message; }
    void notify(const QString &title, const QString &body) override { notes << title + u": " + body; }
    void open(const QString &path) override { opened << path; }
    void quit() override { ++quits; }
    void setTheme(const QString &) override {}
    bool isActive() const override { return true; }

    QList<SaveQuestion> questions;
    std::deque<SaveAnswer> saves;     // the answers to the save questions, in order
    std::deque<bool> discards;        // true: "不保存", false: "返回"
    QStringList notes;
    QStringList opened;
    QString about;
    int quits = 0;

private:
    template<typename T>
    static T take(std::deque<T> &answers)
    {
        T answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

// All of them, ready to hand to the coordinator.
struct FakeWindows
{
    WindowLog log;
    FakePanel panel{log};
    FakeSubtitles subtitles{log};
    FakeChat chat{log};
    FakeLibrary library;
    FakeSettings settings;
    FakeSlides slides;
    FakeLogin login;
    FakeAccount account;
    FakeDesktop desktop;

    AppWindows views() { return {panel, subtitles, chat, library, settings, slides, login, account, desktop}; }
};
