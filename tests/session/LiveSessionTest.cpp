#include "session/LiveSession.h"

#include "SessionFixture.h"

#include <QFileInfo>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// Sessions whose delayed saves the test runs, as their timers would.
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

TEST_F(LiveSessionTest, StartsWithAValidRecordAndSavesTenLinesASecondInOneWrite)
{
    clock_.advance(5min + 30s);   // 09:05:30 UTC, 18:05 in the tests' zone
    auto session = makeSession();
    EXPECT_EQ(session->audioURL(), documents_.path() + u"/Quillet/课程记录/2026-03-02 18-05/录音.m4a");
    EXPECT_EQ(std::pair(session->data().lecture, session->data().answer),
              std::pair(u"Korean"_s, u"Simplified Chinese"_s));
    EXPECT_EQ(onDisk(*session), session->data());
    EXPECT_EQ(makeSession()->folder(), SessionStore::root() + u"/2026-03-02 18-05 (2)") << "the same minute";

    const SessionData initial = onDisk(*session);
    for (const qsizetype none : {qsizetype(-1), qsizetype(0)}) {   // no such line: nothing changes
        session->setText(none, u"x"_s);
        session->setTranslation(none, u"x"_s);
    }
    clock_.advance(10s);
    session->addNote(u"考试重点"_s, u"chapter 4"_s);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(session->addLine(QString::number(i)), i);
        clock_.advance(100ms);
    }
    session->setText(0, u"corrected"_s);
    session->setTranslation(0, u"第零"_s);
    session->setSummary(u"So far: chapter 4."_s);
    EXPECT_EQ(session->data().lines.first(), (SessionData::Line{7, u"corrected"_s, u"第零"_s}));
    EXPECT_DOUBLE_EQ(session->data().lines.last().t, 7.9) << "heard three seconds before it came";
    EXPECT_EQ(session->data().notes, (QList<SessionData::Note>{{10, u"考试重点"_s, u"chapter 4"_s}}));
    EXPECT_EQ(delays_, QList{2000ms}) << "one write for them all, two seconds after the first";
    EXPECT_EQ(onDisk(*session), initial);
    runSaves();
    EXPECT_EQ(onDisk(*session), session->data());
    EXPECT_EQ(onDisk(*session).duration, 11.0);

    // The next change waits again; a session gone by then saves nothing.
    session->addLine(u"never saved"_s);
    EXPECT_EQ(delays_.size(), 2);
    const QString folder = session->folder();
    const SessionData saved = onDisk(*session);
    session.reset();
    runSaves();
    EXPECT_EQ(SessionStore::load(folder), saved);
}

TEST_F(LiveSessionTest, RenamesSaveAtOnceTermsReachTheWordBookAndFinishFixesTheDuration)
{
    const auto session = makeSession();
    const auto saved = [&] { return std::pair(onDisk(*session).title, onDisk(*session).category); };
    session->rename(u"Thermo"_s, u"Physics"_s);
    EXPECT_EQ(saved(), std::pair(u"Thermo"_s, std::optional(u"Physics"_s)));
    session->addTerms({{u"엔트로피"_s, u"熵"_s, {}}});
    session->addTerms({{u"열역학"_s, u"热力学"_s, u"thermo"_s}});
    EXPECT_TRUE(QString::fromUtf8(readFile(SessionStore::wordBook()))
                    .endsWith(u"\n## Physics · Thermo\n\n- **엔트로피**\u3000熵\n"
                              u"\n## Physics · Thermo\n\n- **열역학**\u3000热力学\u3000— thermo\n"));
    runSaves();
    EXPECT_EQ(onDisk(*session).vocabulary.value_or(QList<SessionData::Term>()).size(), 2);
    session->rename({}, u""_s);   // an empty title keeps the old one; an empty category clears it
    EXPECT_EQ(saved(), std::pair(u"Thermo"_s, std::optional<QString>()));

    session->addLine(u"early"_s);   // not stamped before the start
    clock_.advance(90s);
    session->stopAudio();
    clock_.advance(30s);
    session->stopAudio();   // keeps the first moment
    EXPECT_EQ(session->elapsed(), 90.0);
    session->addLine(u"late"_s);
    EXPECT_EQ(QList({session->data().lines[0].t, session->data().lines[1].t}), QList({0.0, 87.0}));
    session->finish({}, u""_s);
    EXPECT_EQ(onDisk(*session).duration, 90.0);
    EXPECT_EQ(saved(), std::pair(u"Thermo"_s, std::optional(u""_s))) << "finish stores the category as given";
    session->finish(u"Final"_s, std::nullopt);
    EXPECT_EQ(saved(), std::pair(u"Final"_s, std::optional<QString>()));
}

TEST_F(LiveSessionTest, RecordsIntoItsFolderOrRunsOnWithoutOne)
{
    input_->delivered = {16'000, 1};
    const auto session = makeSession();
    ASSERT_EQ(session->startAudio(), std::nullopt);
    input_->play(tone(16'000, 4.0), 1'600);
    session->stopAudio();
    EXPECT_TRUE(isMonoAac(session->audioURL(), 16'000, 4.0));
    EXPECT_NEAR(double(QFileInfo(session->audioURL()).size()), 32'000 / 8 * 4.0, 32'000 / 8 * 4.0 * 0.2);

    const QString blocked = documents_.filePath(u"not a folder"_s);
    writeFile(blocked, "a file where the documents folder should be");
    SessionStore::useDocumentsFolder(blocked);
    const auto homeless = makeSession();
    EXPECT_FALSE(QFileInfo(homeless->folder()).isDir());
    EXPECT_EQ(homeless->startAudio(), u"无法创建录音文件"_s);
    homeless->addLine(u"still taken down"_s);
    runSaves();
    homeless->finish(u"Lost"_s, std::nullopt);
    EXPECT_EQ(homeless->data().title, u"Lost"_s);
    EXPECT_EQ(homeless->data().lines.size(), 1);
    EXPECT_EQ(readFile(blocked), "a file where the documents folder should be");
}
