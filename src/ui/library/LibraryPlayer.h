#pragma once

// The library's player row: play/pause, a position slider and "00:00 / 45:10". It plays one
// class's recording and follows it with the transcript: every quarter second while playing it
// reports the last line whose time has been reached. Without a recording the controls are off
// and the label says why. Main thread only; the media player is a child of the row.

#include <QList>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class IconButton;
class QAudioOutput;
class QLabel;
class QMediaPlayer;
class QSlider;
class QTimer;

class LibraryPlayer final : public QWidget
{
    Q_OBJECT

public:
    struct Track
    {
        QString audio;              // the recording, or empty for none
        QString missing;            // what the label says without a recording
        QList<double> lineTimes;    // seconds, in line order
        double recordDuration = 0;  // the record's length, shown without a recording
    };

    explicit LibraryPlayer(QWidget *parent = nullptr);

    // Stops what played and opens the track; a recording that can't be read leaves no player.
    void open(const Track &track);
    // Stops and lets go of the recording (before its folder moves).
    void close();
    void stop();
    // Plays from a line's time, or from the end of the recording when the line lies beyond it.
    void playLine(int index);

    bool hasPlayer() const { return hasPlayer_; }
    bool playing() const;
    int activeLine() const { return activeLine_; }
    // Seconds.
    double position() const;
    double duration() const;

    // The line now being heard changed (-1: none yet).
    std::function<void(int line)> onActive = [](int) {};

private:
    void seek(qint64 milliseconds);
    void togglePlay();
    void refreshPlayState();
    void tick();
    void seekSlider(int milliseconds);
    void updateTime();
    void fail();
    void enableControls();

    IconButton *playButton_;
    QSlider *slider_;
    QLabel *timeLabel_;
    QMediaPlayer *player_;
    QAudioOutput *output_;
    QTimer *timer_;
    Track track_;
    bool hasPlayer_ = false;
    // Where a seek goes until the media player reports having got there (it seeks asynchronously).
    std::optional<qint64> seeking_;
    int activeLine_ = -1;
};
