#include "captions/CloudTranscript.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

QDateTime at(double seconds)
{
    return QDateTime(QDate(2026, 3, 2), QTime(9, 0), Qt::UTC).addMSecs(qint64(seconds * 1000));
}

TEST(CloudTranscriptTest, SentencesAreComparedByTheirLettersAndDigits)
{
    EXPECT_EQ(CloudTranscript::normalized(QStringLiteral("It's 3.5 Meters, OK?")), QStringLiteral("its35metersok"));
    EXPECT_EQ(CloudTranscript::normalized(QStringLiteral(u"오늘은, 미분! 第２章")), QStringLiteral(u"오늘은미분第２章"));
    EXPECT_EQ(CloudTranscript::normalized(QStringLiteral(u"Café\u0301 — ½ ⅓")), QStringLiteral(u"café\u0301"));

    // One holds the other, or 0.6 of the shorter one's characters are found in the longer one,
    // each character used up once.
    const std::tuple<const char *, const char *, bool> pairs[] = {
        {"", "", false}, {"abc", "", false}, {"derivative", "thederivativeisalimit", true},
        {"thederivativeisalimit", "derivative", true}, {"abcxy", "zzzzzzzzzzzzzzzzcba", true},
        {"abwxy", "zzzzzzzzzzzzzzzzcba", false}, {"aaaaa", "abzzz", false},
        {"오늘은미분을배웁니다", "오늘미분배웁니다요", true},
    };
    for (const auto &[a, b, alike] : pairs)
        EXPECT_EQ(CloudTranscript::similar(QString::fromUtf8(a), QString::fromUtf8(b)), alike) << a << ", " << b;
}

TEST(CloudTranscriptTest, TheDraftShrinksFromTheFrontAsCloudTextArrivesAndHoldsAtMostSixSentences)
{
    CloudTranscript transcript;
    QString words = QStringLiteral(u"그리고 나서");
    const auto inProgress = [&] { return words; };
    const QString first = QStringLiteral(u"오늘은 극한을 정의합니다.");
    const QString second = QStringLiteral(u"그다음 미분이 나옵니다.");
    const QString third = QStringLiteral(u"변화율을 재는 것입니다.");
    EXPECT_EQ(transcript.draft({first}, at(2), inProgress), first + u' ' + words);
    EXPECT_EQ(transcript.draft({second}, at(4), inProgress), first + u' ' + second + u' ' + words);
    words.clear();
    EXPECT_EQ(transcript.draft({third}, at(7), inProgress), first + u' ' + second + u' ' + third);

    transcript.fail(QStringLiteral("trouble"));
    EXPECT_EQ(transcript.problem(), QStringLiteral("trouble"));
    // The segment cut at 0.5 s covers what the local recogniser finished until 3 s.
    transcript.merge({QStringLiteral(u"자, 시작하겠습니다.")}, at(0.5));
    EXPECT_FALSE(transcript.problem()) << "a good answer clears the trouble";
    EXPECT_EQ(transcript.draft({}, at(8), inProgress), second + u' ' + third);
    // A cloud sentence like a local one takes that one out, whenever it was heard.
    transcript.merge({QStringLiteral(u"변화율을 재는 겁니다.")}, at(1));
    EXPECT_EQ(transcript.draft({}, at(8.5), inProgress), second);
    EXPECT_EQ(transcript.read(), QStringLiteral(u"자, 시작하겠습니다.\n변화율을 재는 겁니다."));
    EXPECT_EQ(transcript.read(), QString()) << "each line is read once";

    // Covered time never moves back; an answer that kept nothing clears the trouble too.
    transcript.fail(QStringLiteral("again"));
    transcript.merge({}, at(2));
    EXPECT_FALSE(transcript.problem());
    transcript.merge({}, at(0));
    EXPECT_EQ(transcript.draft({}, at(9), inProgress), QString()) << "heard at 4 s, before 2 + 2.5 s";
    words = QStringLiteral(u"그래서");
    EXPECT_EQ(transcript.draft({QString()}, at(9.5), inProgress), words) << "empty parts are dropped";

    // At most six local sentences show; these share no character, so none is like another.
    const auto sentence = [](int i) -> QString { return QString(7, QChar(u'0' + i)) + u'.'; };
    QStringList heard;
    for (int i = 1; i <= 8; ++i)
        heard << sentence(i);
    EXPECT_EQ(transcript.draft(heard, at(11), [] { return QStringLiteral("and"); }),
              QStringList(heard.mid(2)).join(u' ') + QStringLiteral(" and"));

    // Only the last 12 cloud sentences cover local ones.
    transcript.merge({sentence(8)}, at(-10));
    for (int i = 0; i < 12; ++i)
        transcript.merge({QString(4, QChar(u'a' + i)) + u'.'}, at(-10));
    EXPECT_EQ(transcript.draft({sentence(8)}, at(12), [] { return QString(); }),
              QStringList(heard.mid(2)).join(u' '));
}

} // namespace
