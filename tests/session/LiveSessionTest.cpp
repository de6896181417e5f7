#include "session/LiveSession.h"

#include "session/SessionStore.h"

#include "SessionFixture.h"

#include <QFileInfo>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

class LiveSessionTest : public SessionFixture
{
protected:
    std::unique_ptr<LiveSession> makeSession()
    {
        return std::make_unique<LiveSession>(u"Korean"_s, u"Simplified Chinese"_s, 32'000, hub_, clock_,
                                             [this](std::chrono::milliseconds delay, std::function<void()> save) {
                                                 delays_.append(delay);
                                                 saves_.push_back(std::move(save));
                                             });
    }
    // The delayed saves, run as their timers would.
    void runSaves()
    {
        for (const auto &save : std::exchange(saves_, {}))
            save();
    }
    static SessionData onDisk(const LiveSession &session) { return SessionStore::load(session.folder()).value(); }

    QList<std::chrono::milliseconds> delays_;
    std::vector<std::function<void()>> saves_;
};

} // namespace

TEST_F(LiveSessionTest, StartsWithAValidRecordInAFolderNamedAfterTheLocalMinute)
{
    clock_.advance(5min + 30s);   // 09:05:30 UTC, 18:05 in the tests' zone
    const auto session = makeSession();
    EXPECT_EQ(session->audioURL(), documents_.path() + u"/Quillet/课程记录/2026-03-02 18-05/录音.m4a");
    EXPECT_EQ(QStringList({session->data().lecture, session->data().answer}),
              QStringList({u"Korean"_s, u"Simplified Chinese"_s}));
    EXPECT_EQ(onDisk(*session), session->data());
    clock_.advance(20s);   // the same minute
    EXPECT_EQ(makeSession()->folder(), SessionStore::root() + u"/2026-03-02 18-05 (2)");
}

TEST_F(LiveSessionTest, ChangesAreStampedAndSavedTogetherTwoSecondsAfterTheFirst)
{
    auto session = makeSession();
    const SessionData initial = onDisk(*session);
    for (const qsizetype none : {qsizetype(-1), qsizetype(0)}) {   // no such line: nothing changes
        session->setText(none, u"x"_s);
        session->setTranslation(none, u"x"_s);
    }
    clock_.advance(1s);
    EXPECT_EQ(session->addLine(u"first"_s), 0);   // heard three seconds earlier, but not before the start
    clock_.advance(9s);
    session->addNote(u"考试重点"_s, u"chapter 4"_s);
    EXPECT_EQ(session->addLine(u"second"_s), 1);
    session->setText(1, u"second, corrected"_s);
    session->setTranslation(1, u"第二"_s);
    session->setSummary(u"So far: chapter 4."_s);
    EXPECT_EQ(session->data().lines,
              (QList<SessionData::Line>{{0, u"first"_s, {}}, {7, u"second, corrected"_s, u"第二"_s}}));
    EXPECT_EQ(session->data().notes, (QList<SessionData::Note>{{10, u"考试重点"_s, u"chapter 4"_s}}));
    EXPECT_EQ(session->data().summary, u"So far: chapter 4."_s);
    EXPECT_EQ(delays_, QList{2000ms});
    EXPECT_EQ(onDisk(*session), initial);
    runSaves();
    EXPECT_EQ(onDisk(*session), session->data());
    EXPECT_EQ(onDisk(*session).duration, 10.0);

    // The next change waits again; a session gone by then saves nothing.
    session->addLine(u"never saved"_s);
    EXPECT_EQ(delays_.size(), 2);
    const QString folder = session->folder();
    const SessionData saved = onDisk(*session);
    session.reset();
    runSaves();
    EXPECT_EQ(SessionStore::load(folder), saved);
}

TEST_F(LiveSessionTest, RenamesSaveAtOnceAndTermsReachTheWordBookUnderTheName)
{
    const auto session = makeSession();
    const auto saved = [&] { return std::pair(onDisk(*session).title, onDisk(*session).category); };
    session->rename(u"Thermo"_s, u"Physics"_s);
    EXPECT_EQ(saved(), std::pair(u"Thermo"_s, std::optional(u"Physics"_s)));
    session->addTerms({{u"엔트로피"_s, u"熵"_s, {}}});
    session->addTerms({{u"열역학"_s, u"热力学"_s, u"thermo"_s}});
    EXPECT_TRUE(QString::fromUtf8(read(SessionStore::wordBook()))
                    .endsWith(u"\n## Physics · Thermo\n\n- **엔트로피**\u3000熵\n"
                              u"\n## Physics · Thermo\n\n- **열역학**\u3000热力学\u3000— thermo\n"));
    runSaves();
    EXPECT_EQ(onDisk(*session).vocabulary.value_or(QList<SessionData::Term>()).size(), 2);
    session->rename({}, u""_s);   // an empty title keeps the old one; an empty category clears it
    EXPECT_EQ(saved(), std::pair(u"Thermo"_s, std::optional<QString>()));
}

TEST_F(LiveSessionTest, StoppingFreezesTheClockAndFinishFixesTheDuration)
{
    const auto session = makeSession();
    const QString title = session->data().title;
    clock_.advance(90s);
    session->stopAudio();
    clock_.advance(30s);
    session->stopAudio();   // keeps the first moment
    EXPECT_EQ(session->elapsed(), 90.0);
    session->addLine(u"late line"_s);
    EXPECT_EQ(session->data().lines[0].t, 87.0);

    session->finish({}, u""_s);
    const SessionData saved = onDisk(*session);
    EXPECT_EQ(saved.duration, 90.0);
    EXPECT_EQ(saved.category, u""_s) << "finish stores the category as given";
    EXPECT_EQ(saved.title, title);
    EXPECT_EQ(saved.lines.size(), 1);
    session->finish(u"Final"_s, std::nullopt);
    EXPECT_EQ(std::pair(onDisk(*session).title, onDisk(*session).category),
              std::pair(u"Final"_s, std::optional<QString>()));
}

TEST_F(LiveSessionTest, RecordsIntoItsFolderOrRunsOnWithoutAudio)
{
    input_->delivered = {16'000, 1};
    const auto session = makeSession();
    ASSERT_EQ(session->startAudio(), std::nullopt);
    input_->play(tone(16'000, 4.0), 1'600);
    session->stopAudio();
    EXPECT_FALSE(hub_.running());
    EXPECT_TRUE(isMonoAac(session->audioURL(), 16'000, 4.0));
    EXPECT_NEAR(double(QFileInfo(session->audioURL()).size()), 32'000 / 8 * 4.0, 32'000 / 8 * 4.0 * 0.2);

    const QString blocked = documents_.filePath(u"not a folder"_s);
    put(blocked, "a file where the documents folder should be");
    SessionStore::useDocumentsFolder(blocked);
    const auto homeless = makeSession();
    EXPECT_FALSE(QFileInfo(homeless->folder()).isDir());
    EXPECT_EQ(homeless->startAudio(), u"无法创建录音文件"_s);
    homeless->addLine(u"still taken down"_s);
    runSaves();
    homeless->finish(u"Lost"_s, std::nullopt);
    EXPECT_EQ(homeless->data().lines.size(), 1);
    EXPECT_EQ(homeless->data().title, u"Lost"_s);
    EXPECT_EQ(read(blocked), "a file where the documents folder should be");
}
