#pragma once

// The main panel: the window that stands for the application. A top bar with the status and the
// tool buttons, the language row, the live transcript beside or above the AI feed with its four
// switches, and the chat line with the files waiting to go. It holds no rules of its own: each
// control calls a callback of PanelView, and the coordinator drives it through PanelView.
// Closing it ends the application. Main thread only.

#include "app/views/PanelView.h"

#include <QMainWindow>

class ChatInputBar;
class FeedView;
class LanguageRow;
class PanelHeader;
class QCheckBox;
class QHBoxLayout;
class QSplitter;
class TranscriptView;

class Panel final : public QMainWindow, public PanelView
{
    Q_OBJECT

public:
    explicit Panel(QWidget *parent = nullptr);
    ~Panel() override;

    TranscriptSurface &transcript() override;
    TranscriptView &transcriptView() const { return *transcript_; }
    FeedView &feed() const { return *feed_; }

    void setTitle(const QString &title) override;
    void setStatus(const QString &text) override;
    void setRecording(bool recording, const QString &time) override;
    void setLanguages(const QString &lecture, const QString &answer, const QStringList &extras) override;
    void setSwitches(const Switches &switches) override;
    void setUnread(bool unread) override;
    void setAccount(const std::optional<QString> &email) override;
    void setPinned(bool pinned) override;
    void setMerged(bool merged) override;
    void setLayout(const QString &layout) override;
    void applyShow(const QString &show) override;
    void placeDivider() override;
    void setBackground(const QString &background) override;
    void setTranscriptFont(const QString &fontID, double size) override;
    void bringToFront() override;
    void orderOut() override;
    bool isMinimized() const override;
    QRect frame() const override;

    void addNote(const QString &text) override;
    void addCard(const QString &kind, const QString &text, const QString &time) override;
    void setSummary(const QString &text, const QString &stamp, bool final) override;
    void setVocabulary(const QList<QStringList> &terms) override;
    void addEvent(const QString &id, const ClassEvent &event) override;
    void markEventAdded(const QString &id) override;
    void showYou(const QString &text, const QList<Attachment> &attachments) override;
    void addReply(const QString &text) override;

    PanelHeader &header() const { return *header_; }
    LanguageRow &languages() const { return *languages_; }
    ChatInputBar &input() const { return *input_; }
    QSplitter &split() const { return *split_; }
    QWidget &aiBox() const { return *aiBox_; }
    QWidget &chips() const { return *chips_; }
    // The chat line's box, 0 high while only the translation shows.
    QWidget &inputBox() const { return *inputBox_; }
    // How often the application asked for the student's attention (an exam card).
    int alerts() const { return alerts_; }

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *buildAIBox();
    void connectControls();
    void switchesChanged();
    void refreshChips();
    void divideAt(double share);
    void saveFrame();

    PanelHeader *header_;
    LanguageRow *languages_;
    TranscriptView *transcript_;
    FeedView *feed_;
    QSplitter *split_;
    QWidget *aiBox_ = nullptr;
    QCheckBox *answerSwitch_ = nullptr;
    QCheckBox *examSwitch_ = nullptr;
    QCheckBox *keySwitch_ = nullptr;
    QCheckBox *vocabSwitch_ = nullptr;
    QWidget *chips_;
    QHBoxLayout *chipRow_;
    QWidget *inputBox_;
    ChatInputBar *input_;
    int alerts_ = 0;
    bool shown_ = false;
};
