#pragma once

// The top of the panel: the title and status, the avatar, and the record button with the seven
// tool buttons. It only shows; the panel connects the buttons. Main thread only.

#include <QWidget>

class AvatarButton;
class IconButton;
class QLabel;
class QPushButton;
class QToolButton;
class StatusLine;

class PanelHeader final : public QWidget
{
    Q_OBJECT

public:
    explicit PanelHeader(QWidget *parent = nullptr);

    StatusLine *status() const { return status_; }
    AvatarButton *avatar() const { return avatar_; }
    QPushButton *record() const { return record_; }
    QToolButton *library() const { return library_; }
    IconButton *subtitles() const { return subtitles_; }
    IconButton *chat() const { return chat_; }
    IconButton *slides() const { return slides_; }
    IconButton *merge() const { return merge_; }
    IconButton *pin() const { return pin_; }
    IconButton *settings() const { return settings_; }

    void setRecording(bool recording, const QString &time);
    void setMerged(bool merged);
    void setPinned(bool pinned);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QLabel *title_;
    StatusLine *status_;
    AvatarButton *avatar_;
    QPushButton *record_;
    QToolButton *library_;
    IconButton *subtitles_;
    IconButton *chat_;
    IconButton *slides_;
    IconButton *merge_;
    IconButton *pin_;
    IconButton *settings_;
};
