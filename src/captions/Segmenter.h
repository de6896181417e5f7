#pragma once

// Cuts a stream of 16 kHz mono speech into segments of a few seconds at natural pauses, for the
// cloud recogniser. It follows the room's noise floor, cuts after 2.5 s once 0.5 s have been
// quiet (or at 8 s without a pause), and tells a segment worth sending from near silence.
//
// One thread feeds it (the audio thread); it never waits, does no input or output, and
// allocates only when a segment is cut. Not thread-safe: its owner feeds it from one thread.

#include <QString>
#include <QtGlobal>

#include <optional>
#include <span>
#include <vector>

class Segmenter final
{
public:
    static constexpr double rate = 16'000.0;

    // A cut segment and the figures it was judged by.
    struct Cut
    {
        std::vector<qint16> samples;
        double seconds = 0;
        double speech = 0;   // seconds of loud buffers
        double level = 0;    // root mean square of the whole segment, 0 to 1
        double floor = 0;    // noise floor at the cut
        bool sent = false;   // false: too quiet to be worth sending

        // The log line of the cut.
        QString describe() const;
    };

    Segmenter();

    // Takes the next samples; gives the segment when they complete one.
    std::optional<Cut> consume(std::span<const qint16> samples);

    double floor() const { return floor_; }
    // Seconds of sound held for the segment being collected.
    double pending() const { return double(buffer_.size()) / rate; }

private:
    Cut cut();
    void reset();

    std::vector<qint16> buffer_;
    qsizetype quietFrames_ = 0;
    qsizetype loudFrames_ = 0;
    double energy_ = 0;
    double floor_ = 1.0;
};
