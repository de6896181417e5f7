// A spoken lecture end to end: flite speech played in real time through the WAV microphone,
// recognised by PocketSphinx in a MicSource, followed by an Engine whose model is a local server
// that answers after a second.

#include "ai/OpenAIProvider.h"
#include "captions/MicSource.h"
#include "engine/Engine.h"
#include "platform/Http.h"
#include "platform/MicHub.h"
#include "platform/PocketSphinxRecognizer.h"
#include "platform/WavFileInput.h"
#include "settings/UserDefaults.h"

#include "QtPrinters.h"
#include "SpeechAudio.h"
#include "TestServer.h"
#include "TimeScale.h"

#include <QSettings>
#include <QThreadPool>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Steady = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// The system clock, put forward on demand: a class that has run past its first five minutes.
class ForwardClock final : public Text::Clock
{
public:
    Duration elapsed() const override { return system_.elapsed() + ahead.load(); }
    QDateTime now() const override { return system_.now(); }
    bool sleep(Duration duration, std::stop_token stop) override { return system_.sleep(duration, stop); }

    std::atomic<Duration> ahead{Duration(0)};

private:
    Text::SystemClock system_;
};

// The file input, noting when its first buffer went out: the moment the lecture's sound begins.
class NotedInput final : public AudioInput
{
public:
    explicit NotedInput(std::unique_ptr<AudioInput> input)
        : input_(std::move(input))
    {
    }
    AudioFormat format() override { return input_->format(); }
    std::optional<QString> start(Receiver receiver) override
    {
        return input_->start([this, receiver = std::move(receiver)](const AudioBuffer &buffer) {
            if (!began)
                began = Steady::now();
            receiver(buffer);
        });
    }
    void stop() override { input_->stop(); }

    std::optional<Steady::time_point> began;   // written once on the audio thread, read after it

private:
    std::unique_ptr<AudioInput> input_;
};

struct Heard
{
    std::mutex mutex;
    std::condition_variable changed;
    QList<std::pair<QString, Steady::time_point>> cards;
    QList<std::pair<QString, Steady::time_point>> drafts;
    QStringList lines;
    int classEnds = 0;
};

int milliseconds(Steady::duration duration)
{
    return int(std::chrono::duration_cast<std::chrono::milliseconds>(duration).count());
}

// An OpenAI Responses reply with the text.
TestServer::Response reply(const QString &text)
{
    const QByteArray quoted = '"' + text.toUtf8() + '"';
    TestServer::Response response = TestServer::Response::json(
        R"({"output": [{"content": [{"type": "output_text", "text": )" + quoted + "}]}]}");
    response.delay = 1s;
    return response;
}

TEST(LectureSpeechTest, AnswersComeInTheSilenceANoticeSaidLastIsSentAndTheClassEndIsHeard)
{
    TestServer model;
    model.setHandler([](const TestServer::Request &request) {
        if (request.body.contains("may be questions"))
            return reply(u"Ice is less dense than water."_s);
        if (request.body.contains("exam/homework/schedule keyword"))
            return reply(u"作业下周五交"_s);
        return reply(u"SKIP"_s);
    });
    QSettings().setValue(QString::fromLatin1(UserDefaults::openaiURL), model.url());

    QTemporaryDir folder;
    SpeechAudio::Script script{{u"Good morning everyone, today we talk about the water cycle."_s,
                                u"Why does ice float on water?"_s, u"Because ice is less dense than water."_s,
                                u"Class is over, see you on Monday."_s, u"The homework is due next Friday."_s}};
    script.pausesAfter = {1, 6, 1, 1, 6};   // students think after the question; the notice comes last
    const auto speech = SpeechAudio::make(folder.path(), script);
    ASSERT_TRUE(speech);

    Heard heard;   // outlives the engine and its model calls
    static Text::SystemClock playing;
    auto noted = std::make_unique<NotedInput>(
        std::make_unique<WavFileInput>(speech->path, WavFileInput::Pace::RealTime, playing));
    NotedInput &input = *noted;
    MicHub hub(std::move(noted));
    Config config;
    config.sourceType = u"mic"_s;
    config.lectureLanguage = u"English"_s;
    config.answerLanguage = u"Simplified Chinese"_s;
    auto clock = std::make_shared<ForwardClock>();
    auto fast = std::make_shared<OpenAIProvider>(OpenAIProvider::Settings{u"key"_s, u"fast"_s});
    auto source = std::make_unique<MicSource>(QStringList{u"en-US"_s}, hub, PocketSphinxRecognizer::factory());
    Engine engine(config, std::move(source), nullptr, fast, clock);
    clock->ahead = 301s;

    const auto note = [&](auto change) {
        std::scoped_lock lock(heard.mutex);
        change();
        heard.changed.notify_all();
    };
    engine.onResult = [&](const QString &kind, const QString &, const QString &) {
        note([&] { heard.cards.append({kind, Steady::now()}); });
    };
    engine.onCaption = [&](const QString &draft) {
        note([&] { heard.drafts.append({draft, Steady::now()}); });
    };
    engine.onLine = [&](const QString &line) { note([&] { heard.lines << line; }); };
    engine.onClassEnd = [&] { note([&] { ++heard.classEnds; }); };
    engine.start();

    std::unique_lock lock(heard.mutex);
    const bool bothCards = heard.changed.wait_for(lock, Seconds(speech->seconds + 20 * timeScale), [&] {
        return heard.cards.size() >= 2;
    });
    ASSERT_TRUE(bothCards) << heard.lines.join(u" | ");
    ASSERT_TRUE(input.began);
    EXPECT_EQ(heard.classEnds, 1) << heard.lines.join(u" | ");
    EXPECT_EQ(heard.cards[0].first, Engine::questionKind);
    EXPECT_EQ(heard.cards[1].first, Engine::noticeKind) << "the notice said last was sent";

    // The answer came in the silence after the question: before the teacher's next words showed.
    const auto answered = heard.cards[0].second;
    const auto spokeAgain = std::find_if(heard.drafts.begin(), heard.drafts.end(), [&](const auto &draft) {
        return draft.first.contains(u"because"_s, Qt::CaseInsensitive);
    });
    ASSERT_NE(spokeAgain, heard.drafts.end());
    EXPECT_LT(answered, spokeAgain->second);
    const auto heardAt = [&](double seconds) {
        return *input.began + std::chrono::duration_cast<Steady::duration>(Seconds(seconds));
    };
    const auto questionEnd = heardAt(speech->sentenceEnds[1]);
    const auto noticeEnd = heardAt(speech->sentenceEnds[4]);
    RecordProperty("question_end_to_card_ms", milliseconds(answered - questionEnd));
    RecordProperty("notice_end_to_card_ms", milliseconds(heard.cards[1].second - noticeEnd));
    lock.unlock();
    engine.stop();
    Http::taskPool().waitForDone();
}

} // namespace
