#include "platform/AudioInput.h"

#include "platform/QtAudioInput.h"
#include "platform/WavFileInput.h"
#include "settings/UserDefaults.h"

AudioInput::~AudioInput() = default;

std::unique_ptr<AudioInput> AudioInput::create()
{
    const QString file = UserDefaults::text(UserDefaults::micFile);
    if (file.isEmpty())
        return std::make_unique<QtAudioInput>();
    // Stateless, so one clock serves every file input of the program.
    static Text::SystemClock clock;
    return std::make_unique<WavFileInput>(file, WavFileInput::Pace::RealTime, clock);
}
