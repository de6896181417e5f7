#include "session/LiveSession.h"

#include "session/SessionStore.h"
#include "AudioFile.h"
#include "FakeMicrophone.h"
#include "StoreFixture.h"
#include "Tone.h"

#include <QDir>
#include <QFileInfo>

using namespace std::chrono_literals;

namespace {

// Delayed tasks that run when the test's clock has reached them.
class ManualSchedule final
{
public:
    explicit ManualSchedule(ManualClock &clock)
        : clock_(clock)
    {
    }

    LiveSession::Schedule schedule()
    {
        return [this](std::chrono::milliseconds delay, std::function<void()> task) {
            tasks_.push_back({clock_.elapsed() + delay, std::move(task)});
            ++scheduled_;
        };
    }

    void advance(std::chrono::milliseconds duration)
    {
        clock_.advance(duration);
        std::vector<Task> due;
        std::erase_if(tasks_, [&](Task &task) {
            if (task.at > clock_.elapsed())
                return false;
            due.push_back(std::move(task));
            return true;
        });
        for (Task &task : due)
            task.run();
    }

    int scheduled() const { return scheduled_; }

private:
    struct Task
    {
        std::chrono::milliseconds at;
        std::function<void()> run;
    };
    ManualClock &clock_;
    std::vector<Task> tasks_;
    int scheduled_ = 0;
};

class LiveSessionTest : public StoreFixture
{
protected:
    std::unique_ptr<LiveSession> makeSession()
    {
        return std::make_unique<LiveSession>(QStringLiteral("Korean"), QStringLiteral("Simplified Chinese"), 32'000,
                                             microphone_.hub(), clock_, schedule_.schedule());
    }

    SessionData onDisk(const LiveSession &session) const { return *SessionStore::load(session.folder()); }

    FakeMicrophone microphone_;
    ManualSchedule schedule_{clock_};
};

} // namespace

TEST_F(LiveSessionTest, StartsWithAFolderAndAValidRecord)
{
    clock_.advance(5min + 30s);   // 09:05:30 UTC, 18:05 in the tests' zone
    const auto session = makeSession();
    EXPECT_EQ(session->folder(), SessionStore::root() + QStringLiteral("/2026-03-02 18-05"));
    EXPECT_EQ(session->audioURL(), session->folder() + QStringLiteral("/录音.m4a"));
    EXPECT_EQ(session->data().title, QStringLiteral("Mar 2, 6:05\u202fPM 的记录"));
    EXPECT_EQ(session->data().started, clock_.now());
    EXPECT_EQ(session->data().lecture, QStringLiteral("Korean"));
    EXPECT_EQ(onDisk(*session), session->data());
    EXPECT_EQ(schedule_.scheduled(), 0);

    clock_.advance(20s);   // the same minute
    const auto second = makeSession();
    EXPECT_EQ(second->folder(), SessionStore::root() + QStringLiteral("/2026-03-02 18-05 (2)"));
    EXPECT_EQ(SessionStore::list().size(), 2);
}

TEST_F(LiveSessionTest, StampsLinesThreeSecondsEarlyAndNotesAsTheyCome)
{
    const auto session = makeSession();
    schedule_.advance(1s);
    EXPECT_EQ(session->addLine(QStringLiteral("first")), 0);
    schedule_.advance(9s);
    EXPECT_EQ(session->elapsed(), 10.0);
    session->addNote(QStringLiteral("考试重点"), QStringLiteral("chapter 4"));
    EXPECT_EQ(session->addLine(QStringLiteral("second")), 1);
    EXPECT_EQ(session->data().lines[0].t, 0.0);
    EXPECT_EQ(session->data().lines[1].t, 7.0);
    EXPECT_EQ(session->data().notes[0].t, 10.0);
    EXPECT_EQ(session->data().notes[0].kind, QStringLiteral("考试重点"));

    session->setText(1, QStringLiteral("second, corrected"));
    session->setTranslation(1, QStringLiteral("第二"));
    EXPECT_EQ(session->data().lines[1], (SessionData::Line{7.0, QStringLiteral("second, corrected"), QStringLiteral("第二")}));
    session->setSummary(QStringLiteral("So far: chapter 4."));
    EXPECT_EQ(session->data().summary, QStringLiteral("So far: chapter 4."));
}

TEST_F(LiveSessionTest, ABurstOfChangesIsOneSaveTwoSecondsAfterItsStart)
{
    const auto session = makeSession();
    const SessionData initial = onDisk(*session);
    for (int i = 0; i < 10; ++i) {
        session->addLine(QStringLiteral("line %1").arg(i));
        schedule_.advance(100ms);
    }
    EXPECT_EQ(schedule_.scheduled(), 1);
    EXPECT_EQ(onDisk(*session), initial);
    schedule_.advance(999ms);   // 1.999 s after the first line
    EXPECT_EQ(onDisk(*session), initial);
    schedule_.advance(1ms);
    EXPECT_EQ(onDisk(*session).lines.size(), 10);
    EXPECT_EQ(onDisk(*session).duration, 2.0);

    // The next change starts a new delay.
    session->setTranslation(9, QStringLiteral("第十行"));
    EXPECT_EQ(schedule_.scheduled(), 2);
    schedule_.advance(2s);
    EXPECT_EQ(onDisk(*session), session->data());

    // Out of range: nothing changes and nothing is scheduled.
    const SessionData before = session->data();
    for (qsizetype index : {qsizetype(-1), qsizetype(10)}) {
        session->setTranslation(index, QStringLiteral("x"));
        session->setText(index, QStringLiteral("x"));
    }
    EXPECT_EQ(session->data(), before);
    EXPECT_EQ(schedule_.scheduled(), 2);
}

TEST_F(LiveSessionTest, ASessionGoneBeforeItsSaveSavesNothing)
{
    auto session = makeSession();
    const QString folder = session->folder();
    const SessionData initial = onDisk(*session);
    session->addLine(QStringLiteral("never saved"));
    session.reset();
    schedule_.advance(3s);
    EXPECT_EQ(SessionStore::load(folder), initial);
}

TEST_F(LiveSessionTest, TermsGoIntoTheClassAndTheWordBook)
{
    const auto session = makeSession();
    session->addTerms({{QStringLiteral("엔트로피"), QStringLiteral("熵"), QString()}});
    session->addTerms({{QStringLiteral("열역학"), QStringLiteral("热力学"), QStringLiteral("thermo")}});
    ASSERT_TRUE(session->data().vocabulary);
    EXPECT_EQ(session->data().vocabulary->size(), 2);
    EXPECT_EQ(schedule_.scheduled(), 1);
    const QString book = QString::fromUtf8(read(SessionStore::wordBook()));
    EXPECT_TRUE(book.contains(u"\n## 未分类 · " + session->data().title + u"\n\n- **엔트로피**\u3000熵\n"));
    EXPECT_TRUE(book.contains(QStringLiteral("- **열역학**\u3000热力学\u3000— thermo\n")));
    schedule_.advance(2s);
    EXPECT_TRUE(QFileInfo::exists(session->folder() + QStringLiteral("/单词表.md")));
}

TEST_F(LiveSessionTest, RenameSavesAtOnceAndKeepsATitleOverEmptyText)
{
    const auto session = makeSession();
    const QString title = session->data().title;
    session->rename(QStringLiteral("Thermo"), QStringLiteral("Physics"));
    EXPECT_EQ(onDisk(*session).title, QStringLiteral("Thermo"));
    EXPECT_EQ(onDisk(*session).category, QStringLiteral("Physics"));
    session->rename(QString(), QString());
    EXPECT_EQ(onDisk(*session).title, QStringLiteral("Thermo"));
    EXPECT_FALSE(onDisk(*session).category);
    session->rename(QStringLiteral("Thermo 2"), std::nullopt);
    EXPECT_EQ(onDisk(*session).title, QStringLiteral("Thermo 2"));
    EXPECT_FALSE(onDisk(*session).category);
    EXPECT_EQ(schedule_.scheduled(), 0);
    EXPECT_EQ(QFileInfo(session->folder()).fileName(), QStringLiteral("2026-03-02 18-00")) << "the folder keeps its name";
}

TEST_F(LiveSessionTest, StoppingFreezesTheClockAndFinishFixesTheDuration)
{
    const auto session = makeSession();
    schedule_.advance(90s);
    session->stopAudio();
    schedule_.advance(30s);
    session->stopAudio();   // keeps the first moment
    EXPECT_EQ(session->elapsed(), 90.0);
    session->addLine(QStringLiteral("late line"));
    EXPECT_EQ(session->data().lines[0].t, 87.0);

    session->finish(QString(), QStringLiteral(""));
    const SessionData saved = onDisk(*session);
    EXPECT_EQ(saved.duration, 90.0);
    EXPECT_EQ(saved.category, QStringLiteral("")) << "finish stores the category as given";
    EXPECT_EQ(saved.title, session->data().title);
    EXPECT_EQ(saved.lines.size(), 1);
    session->finish(QStringLiteral("Final"), std::nullopt);
    EXPECT_EQ(onDisk(*session).title, QStringLiteral("Final"));
    EXPECT_FALSE(onDisk(*session).category);
}

TEST_F(LiveSessionTest, RecordsIntoItsFolderOrGoesOnWithoutAudio)
{
    microphone_.input().failure = QStringLiteral("没有输入设备");
    const auto silent = makeSession();
    EXPECT_EQ(silent->startAudio(), QStringLiteral("找不到麦克风"));
    silent->addLine(QStringLiteral("the class goes on"));
    silent->stopAudio();
    EXPECT_FALSE(QFileInfo::exists(silent->audioURL()));

    microphone_.input().failure.reset();
    microphone_.input().delivered = {16'000, 1};
    clock_.advance(1min);
    const auto session = makeSession();
    ASSERT_EQ(session->startAudio(), std::nullopt);
    microphone_.input().play(tone(16'000, 4.0), 1'600);
    session->stopAudio();
    EXPECT_FALSE(microphone_.hub().running());
    const auto audio = AudioFile::decode(session->audioURL());
    ASSERT_TRUE(audio);
    EXPECT_EQ(audio->sampleRate, 16'000);
    EXPECT_NEAR(audio->seconds, 4.0, 4.0 * 0.05);
}

TEST_F(LiveSessionTest, AFolderThatCannotBeMadeLeavesTheClassRunning)
{
    const QString blocked = documents_.filePath(QStringLiteral("not a folder"));
    put(blocked, "a file where the documents folder should be");
    SessionStore::useDocumentsFolder(blocked);
    const auto session = makeSession();
    EXPECT_FALSE(QFileInfo(session->folder()).isDir());
    EXPECT_EQ(session->startAudio(), QStringLiteral("无法创建录音文件"));
    session->addLine(QStringLiteral("still taken down"));
    schedule_.advance(2s);
    session->finish(QStringLiteral("Lost"), std::nullopt);
    EXPECT_EQ(session->data().lines.size(), 1);
    EXPECT_EQ(session->data().title, QStringLiteral("Lost"));
    EXPECT_EQ(read(blocked), "a file where the documents folder should be");
}
