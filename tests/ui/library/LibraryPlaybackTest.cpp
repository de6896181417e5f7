// A class recorded by the real recorder, played back in the library: a click on a line plays from
// it, the marked row follows the sound, and a line beyond the end plays from the end.

#include "LibraryFixture.h"

#include "platform/MicHub.h"
#include "platform/WavFile.h"
#include "session/AudioRecorder.h"
#include "ui/library/LibraryPlayer.h"
#include "ui/web/TranscriptView.h"

#include "AudioFiles.h"
#include "FakeAudioInput.h"
#include "support/PageProbe.h"
#include "SpeechAudio.h"

#include <QTest>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {

class LibraryPlaybackTest : public LibraryFixture
{
protected:
    // The lecture said by flite, recorded into a class folder as the microphone would give it.
    QString recordedClass()
    {
        const auto speech = SpeechAudio::make(documents_.path(), {SpeechAudio::lecture()});
        EXPECT_TRUE(speech);
        if (!speech)
            return {};
        speech_ = *speech;
        const QString folder = make(u"听力课"_s, std::nullopt, 1, 0);
        const QString wav = soxFile(documents_.path(), u"48k.wav"_s, {speech_.path}, {u"-r48000"_s});
        WavFile file(wav);
        EXPECT_EQ(file.open(), std::nullopt);
        input_->delivered = file.format();
        AudioRecorder recorder(hub_);
        EXPECT_EQ(recorder.start(folder + u"/录音.m4a"_s), std::nullopt);
        std::vector<float> block;
        while (file.read(4'800, block))
            input_->play(block, 4'800);
        recorder.stop();

        SessionData data = *SessionStore::load(folder);
        const double second = speech_.sentenceStarts[1];
        data.lines = {{0, u"Today we start chapter seven."_s, u"今天开始第七章。"_s},
                      {second, u"Photosynthesis turns light into chemical energy."_s, u"光合作用把光变成化学能。"_s},
                      {second + 0.6, u"(a line half a second later)"_s, {}},
                      {speech_.seconds + 60, u"A line past the end."_s, {}}};
        data.duration = speech_.seconds;
        SessionStore::write(data, folder);
        return folder;
    }

    static QString activeRow(TranscriptView *view)
    {
        return PageProbe::evaluate(view->web(), u"(document.querySelector('.row.active') || {dataset: {}}).dataset.id || ''"_s)
            .toString();
    }

    SpeechAudio speech_;
    FakeAudioInput *input_ = new FakeAudioInput;   // owned by the hub
    MicHub hub_{std::unique_ptr<AudioInput>(input_)};
};

} // namespace

TEST_F(LibraryPlaybackTest, AClickedLinePlaysAndTheMarkedRowFollowsTheSound)
{
    const QString folder = recordedClass();
    ASSERT_FALSE(folder.isEmpty());
    window_->resize(960, 640);
    window_->QWidget::show();
    reload();
    LibraryPlayer *player = window_->detail()->player();
    TranscriptView *transcript = window_->detail()->transcript();
    ASSERT_TRUE(player->hasPlayer());
    ASSERT_TRUE(QTest::qWaitFor([&] { return player->duration() > 0 && transcript->ready(); }, 10'000));
    EXPECT_NEAR(player->duration(), speech_.seconds, 0.3);
    EXPECT_EQ(part<QLabel>("time")->text(), u"00:00 / "_s + SessionStore::clock(player->duration()));

    transcript->onLineClick(1);
    EXPECT_TRUE(player->playing());
    EXPECT_EQ(player->activeLine(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return player->activeLine() == 2; }, 5'000)) << player->position();
    EXPECT_TRUE(QTest::qWaitFor([&] { return activeRow(transcript) == u"2"_s; }, 5'000));
    EXPECT_EQ(part<QAbstractButton>("play")->toolTip(), u"暂停"_s);

    transcript->onLineClick(3);   // far beyond the end: from the end, where playing stops at once
    EXPECT_NEAR(player->position(), player->duration(), 0.3);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !player->playing(); }, 5'000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return part<QAbstractButton>("play")->toolTip() == u"播放"_s; }, 2'000));
    EXPECT_EQ(player->activeLine(), 2) << "the line past the end is never reached";

    window_->hide();
}
