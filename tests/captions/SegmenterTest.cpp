#include "captions/Segmenter.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Buffers of 0.1 s at 16 kHz, as the tap hands them on after conversion.
constexpr qsizetype tenth = 1'600;

// A square wave whose root mean square is `level` (0 to 1) of full scale, to the nearest step.
std::vector<qint16> tone(double level)
{
    const auto step = qint16(std::lround(level * 32'768.0));
    std::vector<qint16> samples(static_cast<size_t>(tenth), step);
    for (size_t i = 1; i < samples.size(); i += 2)
        samples[i] = qint16(-step);
    return samples;
}

struct Fed
{
    std::vector<Segmenter::Cut> cuts;
    // Seconds of sound fed when each cut happened.
    std::vector<double> at;
};

// Feeds `count` buffers of the same samples, collecting the cuts.
void feed(Segmenter &segmenter, const std::vector<qint16> &buffer, int count, Fed &fed, double &clock)
{
    for (int i = 0; i < count; ++i) {
        clock += double(buffer.size()) / Segmenter::rate;
        if (auto cut = segmenter.consume(buffer)) {
            fed.cuts.push_back(std::move(*cut));
            fed.at.push_back(clock);
        }
    }
}

TEST(SegmenterTest, FloorStartsAtTheFirstBufferAndCreepsUpUnderSteadyNoise)
{
    Segmenter segmenter;
    EXPECT_FALSE(segmenter.consume({}));
    EXPECT_DOUBLE_EQ(segmenter.floor(), 1.0) << "an empty buffer changes nothing";

    const auto quiet = tone(0.001);
    segmenter.consume(quiet);
    const double first = segmenter.floor();
    EXPECT_NEAR(first, 0.001, 0.00002) << "the first buffer sets the floor to its own level";

    const auto hum = tone(0.01);
    segmenter.consume(hum);
    EXPECT_DOUBLE_EQ(segmenter.floor(), first * 1.002 + 0.00001) << "a louder buffer only nudges it";
    segmenter.consume(quiet);
    EXPECT_NEAR(segmenter.floor(), 0.001, 0.00002) << "a quieter one drops it at once";

    // A steady hum is speech at first (cut only at 8 s), until the floor has crept up to it; from
    // then on it counts as quiet and segments end at the pause rule.
    Fed fed;
    double clock = 0;
    feed(segmenter, hum, 600, fed, clock);
    ASSERT_GE(fed.cuts.size(), 4u);
    EXPECT_DOUBLE_EQ(fed.cuts[0].seconds, 8.0);
    EXPECT_DOUBLE_EQ(fed.cuts[0].speech, 7.8) << "the two quiet buffers before the hum";
    EXPECT_DOUBLE_EQ(fed.cuts[1].seconds, 8.0);
    EXPECT_DOUBLE_EQ(fed.cuts[1].speech, 8.0);
    EXPECT_DOUBLE_EQ(fed.cuts.back().seconds, 2.5);
    EXPECT_DOUBLE_EQ(fed.cuts.back().speech, 0.0);
    EXPECT_GT(fed.cuts.back().floor * 1.8, 0.0099);
    EXPECT_TRUE(fed.cuts.back().sent) << "a hum of 0.01 is loud enough to be sent all the same";
}

TEST(SegmenterTest, DigitalSilenceIsQuietAndCutAsSkippedWithoutGrowingPastTheFirstCut)
{
    Segmenter segmenter;
    const std::vector<qint16> silence(tenth, 0);
    EXPECT_FALSE(segmenter.consume(silence));
    EXPECT_DOUBLE_EQ(segmenter.floor(), 0.0);

    Fed fed;
    double clock = 0.1;
    for (int i = 0; i < 100; ++i) {
        feed(segmenter, silence, 1, fed, clock);
        EXPECT_LE(segmenter.pending(), 4.0) << "silence is never held past four seconds";
    }
    ASSERT_EQ(fed.cuts.size(), 4u) << "quiet from the start: cut every 2.5 s";
    for (const auto &cut : fed.cuts) {
        EXPECT_DOUBLE_EQ(cut.seconds, 2.5);
        EXPECT_FALSE(cut.sent);
        EXPECT_TRUE(cut.samples.empty()) << "a skipped segment hands on no sound";
        EXPECT_EQ(cut.describe(), QString::fromUtf8("segment 2.5s, speech 0.0s, level 0.0000, floor 0.0000 → skipped"));
    }
}

TEST(SegmenterTest, UnbrokenSpeechIsCutAtEightSecondsAndAPauseCutsFromTwoAndAHalf)
{
    // Each run starts with 0.1 s of room noise, which sets the floor under the speech.
    const auto room = tone(0.0003);
    const auto speech = tone(0.05);
    const auto pause = tone(0.0);
    {
        Segmenter segmenter;
        Fed fed;
        double clock = 0;
        feed(segmenter, speech, 30, fed, clock);
        ASSERT_EQ(fed.cuts.size(), 1u) << "speech from the first buffer sets the floor: it is all quiet";
        EXPECT_DOUBLE_EQ(fed.cuts[0].seconds, 2.5);
        EXPECT_DOUBLE_EQ(fed.cuts[0].speech, 0.0);
    }
    {
        Segmenter segmenter;
        Fed fed;
        double clock = 0;
        feed(segmenter, room, 1, fed, clock);
        feed(segmenter, speech, 78, fed, clock);
        EXPECT_TRUE(fed.cuts.empty()) << "7.9 s of speech";
        feed(segmenter, speech, 1, fed, clock);
        ASSERT_EQ(fed.cuts.size(), 1u) << "8.0 s cut without a pause";
        EXPECT_DOUBLE_EQ(fed.cuts[0].seconds, 8.0);
        EXPECT_DOUBLE_EQ(fed.cuts[0].speech, 7.9);
        EXPECT_EQ(fed.cuts[0].samples, [&] {
            std::vector<qint16> all(room);
            for (int i = 0; i < 79; ++i)
                all.insert(all.end(), speech.begin(), speech.end());
            return all;
        }()) << "the segment holds the samples in order";
        EXPECT_EQ(segmenter.pending(), 0.0);
    }
    {
        // 1.8 s with speech, then a pause: quiet reaches 0.5 s at 2.3 s, but no cut before 2.5 s.
        Segmenter segmenter;
        Fed fed;
        double clock = 0;
        feed(segmenter, room, 1, fed, clock);
        feed(segmenter, speech, 17, fed, clock);
        feed(segmenter, pause, 6, fed, clock);
        EXPECT_TRUE(fed.cuts.empty());
        feed(segmenter, pause, 1, fed, clock);
        ASSERT_EQ(fed.cuts.size(), 1u);
        EXPECT_DOUBLE_EQ(fed.at[0], 2.5);
        EXPECT_DOUBLE_EQ(fed.cuts[0].speech, 1.7);
        EXPECT_TRUE(fed.cuts[0].sent);
    }
    {
        // 2.4 s with speech, then the pause must itself last 0.5 s.
        Segmenter segmenter;
        Fed fed;
        double clock = 0;
        feed(segmenter, room, 1, fed, clock);
        feed(segmenter, speech, 23, fed, clock);
        feed(segmenter, pause, 4, fed, clock);
        EXPECT_TRUE(fed.cuts.empty()) << "0.4 s of quiet";
        feed(segmenter, speech, 1, fed, clock);
        feed(segmenter, pause, 4, fed, clock);
        EXPECT_TRUE(fed.cuts.empty()) << "a loud buffer starts the quiet anew";
        feed(segmenter, pause, 1, fed, clock);
        ASSERT_EQ(fed.cuts.size(), 1u);
        EXPECT_DOUBLE_EQ(fed.cuts[0].seconds, 3.4);
        EXPECT_DOUBLE_EQ(fed.cuts[0].speech, 2.4);
    }
}

TEST(SegmenterTest, AQuietSegmentIsSentByItsLevelOrItsSpeechElseSkipped)
{
    // Room noise sets the floor; 0.2 s of soft speech; then quiet until the cut at 2.5 s. The
    // segment's level is set by how loud the speech is.
    const auto judge = [](double speechLevel, int speechTenths) {
        Segmenter segmenter;
        Fed fed;
        double clock = 0;
        feed(segmenter, tone(0.0003), 5, fed, clock);
        feed(segmenter, tone(speechLevel), speechTenths, fed, clock);
        feed(segmenter, tone(0.0003), 25 - 5 - speechTenths, fed, clock);
        EXPECT_EQ(fed.cuts.size(), 1u);
        return fed.cuts.empty() ? Segmenter::Cut() : fed.cuts.front();
    };

    const Segmenter::Cut soft = judge(0.00484, 2);
    EXPECT_NEAR(soft.level, 0.0014, 0.0001);
    EXPECT_DOUBLE_EQ(soft.speech, 0.2);
    EXPECT_FALSE(soft.sent);
    EXPECT_EQ(soft.describe(), QString::fromUtf8("segment 2.5s, speech 0.2s, level 0.0014, floor 0.0003 → skipped"));

    const Segmenter::Cut stronger = judge(0.011, 2);
    EXPECT_GE(stronger.level, 0.003);
    EXPECT_LT(stronger.level, 0.0035);
    EXPECT_DOUBLE_EQ(stronger.speech, 0.2);
    EXPECT_TRUE(stronger.sent) << "an average of 0.003 is sent however short its loud part";
    EXPECT_EQ(stronger.samples.size(), size_t(2.5 * 16'000));

    const Segmenter::Cut longer = judge(0.002, 3);
    EXPECT_LT(longer.level, 0.003);
    EXPECT_DOUBLE_EQ(longer.speech, 0.3);
    EXPECT_TRUE(longer.sent) << "0.3 s of speech is sent however soft";
}

} // namespace
