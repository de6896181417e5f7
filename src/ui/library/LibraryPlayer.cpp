#include "ui/library/LibraryPlayer.h"

#include "session/SessionStore.h"
#include "ui/common/IconButton.h"
#include "ui/library/LibraryLook.h"

#include <QAudioOutput>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QMediaPlayer>
#include <QSlider>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <cmath>

using namespace std::chrono_literals;

LibraryPlayer::LibraryPlayer(QWidget *parent)
    : QWidget(parent)
    , playButton_(new IconButton(QStringLiteral("play.circle.fill"), QStringLiteral("播放"), this, 26))
    , slider_(new QSlider(Qt::Horizontal, this))
    , timeLabel_(new QLabel(this))
    , player_(new QMediaPlayer(this))
    , output_(new QAudioOutput(this))
    , timer_(new QTimer(this))
{
    playButton_->setObjectName(QStringLiteral("play"));
    playButton_->setTint(IconButton::Tint::accent);
    slider_->setObjectName(QStringLiteral("slider"));
    slider_->setMinimumWidth(LibraryLook::sliderWidth);
    timeLabel_->setObjectName(QStringLiteral("time"));
    QFont digits = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    digits.setPixelSize(LibraryLook::infoSize);
    timeLabel_->setFont(digits);
    timeLabel_->setText(QStringLiteral("00:00 / 00:00"));

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    row->addWidget(playButton_);
    row->addWidget(slider_, 1);
    row->addWidget(timeLabel_);

    player_->setAudioOutput(output_);
    timer_->setInterval(250ms);
    connect(timer_, &QTimer::timeout, this, &LibraryPlayer::tick);
    connect(playButton_, &QToolButton::clicked, this, &LibraryPlayer::togglePlay);
    connect(slider_, &QSlider::sliderMoved, this, &LibraryPlayer::seekSlider);
    connect(slider_, &QSlider::actionTriggered, this, [this](int action) {
        // Clicks and keys on the track: the value they lead to is set after this signal.
        if (action != QAbstractSlider::SliderMove)
            QTimer::singleShot(0, this, [this] { seekSlider(slider_->value()); });
    });
    connect(player_, &QMediaPlayer::durationChanged, this, [this] {
        if (hasPlayer_)
            slider_->setMaximum(int(std::max<qint64>(player_->duration(), 1)));
        updateTime();
    });
    connect(player_, &QMediaPlayer::errorOccurred, this, [this] { fail(); });
    connect(player_, &QMediaPlayer::positionChanged, this, [this](qint64 position) {
        if (seeking_ && std::abs(position - *seeking_) <= 300)
            seeking_.reset();
    });
    connect(player_, &QMediaPlayer::playbackStateChanged, this, [this] { refreshPlayState(); });
    open({});
}

void LibraryPlayer::open(const Track &track)
{
    close();
    track_ = track;
    hasPlayer_ = !track.audio.isEmpty() && QFileInfo(track.audio).isFile();
    if (hasPlayer_)
        player_->setSource(QUrl::fromLocalFile(track.audio));
    slider_->setMaximum(1000);
    slider_->setValue(0);
    activeLine_ = -1;
    enableControls();
    updateTime();
}

void LibraryPlayer::close()
{
    stop();
    seeking_.reset();
    hasPlayer_ = false;
    player_->setSource(QUrl());
    enableControls();
}

void LibraryPlayer::stop()
{
    player_->stop();
    timer_->stop();
    playButton_->setSymbol(QStringLiteral("play.circle.fill"));
    playButton_->setDescription(QStringLiteral("播放"));
}

void LibraryPlayer::playLine(int index)
{
    if (!hasPlayer_ || index < 0 || index >= track_.lineTimes.size())
        return;
    double seconds = track_.lineTimes[index];
    if (player_->duration() > 0)
        seconds = std::min(seconds, duration());
    // Rounded up, so that the clicked line counts as reached.
    seek(qint64(std::ceil(seconds * 1000)));
    if (!playing())
        player_->play();
    refreshPlayState();
    tick();
}

bool LibraryPlayer::playing() const
{
    return player_->playbackState() == QMediaPlayer::PlayingState;
}

double LibraryPlayer::position() const
{
    return hasPlayer_ ? double(seeking_.value_or(player_->position())) / 1000 : 0;
}

double LibraryPlayer::duration() const
{
    return hasPlayer_ ? double(player_->duration()) / 1000 : 0;
}

void LibraryPlayer::togglePlay()
{
    if (!hasPlayer_)
        return;
    if (playing())
        player_->pause();
    else
        player_->play();
    refreshPlayState();
}

void LibraryPlayer::refreshPlayState()
{
    const bool on = hasPlayer_ && playing();
    playButton_->setSymbol(on ? QStringLiteral("pause.circle.fill") : QStringLiteral("play.circle.fill"));
    playButton_->setDescription(on ? QStringLiteral("暂停") : QStringLiteral("播放"));
    timer_->stop();
    if (on)
        timer_->start();
}

void LibraryPlayer::tick()
{
    if (!hasPlayer_)
        return;
    const double now = position();
    if (!slider_->isSliderDown())
        slider_->setValue(int(position() * 1000));
    updateTime();
    // The last line, from the end, whose time has been reached (an equal time counts).
    int line = int(track_.lineTimes.size()) - 1;
    while (line >= 0 && track_.lineTimes[line] > now)
        --line;
    if (line != activeLine_) {
        activeLine_ = line;
        onActive(line);
    }
    if (!playing())
        refreshPlayState();
}

void LibraryPlayer::seekSlider(int milliseconds)
{
    if (!hasPlayer_)
        return;
    seek(milliseconds);
    tick();
}

void LibraryPlayer::seek(qint64 milliseconds)
{
    seeking_ = milliseconds;
    player_->setPosition(milliseconds);
}

void LibraryPlayer::updateTime()
{
    if (!hasPlayer_ && !track_.missing.isEmpty()) {
        timeLabel_->setText(track_.missing);
        return;
    }
    const double total = hasPlayer_ ? duration() : track_.recordDuration;
    timeLabel_->setText(SessionStore::clock(position()) + u" / " + SessionStore::clock(total));
}

void LibraryPlayer::fail()
{
    if (!hasPlayer_)
        return;
    close();
    if (track_.missing.isEmpty())
        track_.missing = QStringLiteral("没有录音文件");
    updateTime();
}

void LibraryPlayer::enableControls()
{
    playButton_->setEnabled(hasPlayer_);
    slider_->setEnabled(hasPlayer_);
}
