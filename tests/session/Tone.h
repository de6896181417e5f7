#pragma once

// A sine tone as interleaved float samples: the sound the recorder tests feed in.

#include <vector>

std::vector<float> tone(int sampleRate, double seconds, int channels = 1);
