#include "captions/Segmenter.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// 0.1 s at 16 kHz, as the tap hands buffers on after conversion.
constexpr size_t tenth = 1'600;

// A square wave whose root mean square is `level` (0 to 1) of full scale, to the nearest step.
std::vector<qint16> tone(double level)
{
    const auto step = qint16(std::lround(level * 32'768.0));
    std::vector<qint16> samples(tenth, step);
    for (size_t i = 1; i < tenth; i += 2)
        samples[i] = qint16(-step);
    return samples;
}

TEST(SegmenterTest, CutsAtAPauseFromTwoAndAHalfSecondsOrAtEightAndSendsOnlySpeech)
{
    struct Case
    {
        const char *name;
        std::vector<std::pair<double, int>> runs;           // level, tenths of a second
        std::vector<std::pair<double, std::string>> cuts;   // seconds fed at each cut, its log line
    };
    // Runs with speech start with room noise, which sets the floor under it.
    const double room = 0.0003;
    const double speech = 0.05;
    const std::vector<Case> cases{
        {"digital silence is quiet, cut and skipped every 2.5 s, never held longer", {{0, 55}},
         {{2.5, "segment 2.5s, speech 0.0s, level 0.0000, floor 0.0000 → skipped"},
          {5.0, "segment 2.5s, speech 0.0s, level 0.0000, floor 0.0000 → skipped"}}},
        {"speech from the first buffer is the floor: all quiet, but loud enough", {{speech, 30}},
         {{2.5, "segment 2.5s, speech 0.0s, level 0.0500, floor 0.0500 → sent"}}},
        {"a steady hum is loud until the floor creeps up to it", {{0.001, 1}, {0.01, 290}},
         {{8.0, "segment 8.0s, speech 7.9s, level 0.0099, floor 0.0020 → sent"},
          {16.0, "segment 8.0s, speech 8.0s, level 0.0100, floor 0.0033 → sent"},
          {24.0, "segment 8.0s, speech 8.0s, level 0.0100, floor 0.0047 → sent"},
          {28.8, "segment 4.8s, speech 4.3s, level 0.0100, floor 0.0057 → sent"}}},
        {"7.9 s of unbroken speech cut nothing, 8.0 s do", {{room, 1}, {speech, 79}},
         {{8.0, "segment 8.0s, speech 7.9s, level 0.0497, floor 0.0012 → sent"}}},
        {"quiet reaches 0.5 s at 2.3 s, but nothing is cut before 2.5 s", {{room, 1}, {speech, 17}, {0, 7}},
         {{2.5, "segment 2.5s, speech 1.7s, level 0.0412, floor 0.0000 → sent"}}},
        {"a loud buffer starts the pause anew", {{room, 1}, {speech, 23}, {0, 4}, {speech, 1}, {0, 5}},
         {{3.4, "segment 3.4s, speech 2.4s, level 0.0420, floor 0.0000 → sent"}}},
        {"0.2 s of soft speech is skipped", {{room, 5}, {0.00484, 2}, {room, 18}},
         {{2.5, "segment 2.5s, speech 0.2s, level 0.0014, floor 0.0003 → skipped"}}},
        {"an average of 0.003 is sent however short its loud part", {{room, 5}, {0.011, 2}, {room, 18}},
         {{2.5, "segment 2.5s, speech 0.2s, level 0.0031, floor 0.0003 → sent"}}},
        {"0.3 s of speech is sent however soft", {{room, 5}, {0.002, 3}, {room, 17}},
         {{2.5, "segment 2.5s, speech 0.3s, level 0.0008, floor 0.0003 → sent"}}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Segmenter segmenter;
        std::vector<qint16> held;
        std::vector<std::pair<double, std::string>> cuts;
        EXPECT_FALSE(segmenter.consume({})) << "an empty buffer changes nothing, the floor included";
        int fed = 0;
        for (const auto &[level, tenths] : c.runs) {
            const auto buffer = tone(level);
            for (int i = 0; i < tenths; ++i, ++fed) {
                held.insert(held.end(), buffer.begin(), buffer.end());
                if (auto cut = segmenter.consume(buffer)) {
                    cuts.emplace_back((fed + 1) / 10.0, cut->describe().toStdString());
                    EXPECT_EQ(cut->samples, cut->sent ? held : std::vector<qint16>()) << "all heard, in order";
                    held.clear();
                }
            }
        }
        EXPECT_EQ(cuts, c.cuts);
    }
}

} // namespace
