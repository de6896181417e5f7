#include "SpeechAudio.h"

#include "AudioFiles.h"
#include "platform/WavFile.h"

#include <QDir>
#include <QProcess>

#include <cmath>

namespace {

// The sentence said by the voice into `name` in the folder, at the rate and in the channels of
// the quiet between sentences; empty when the speaker or sox fails.
QString say(const QString &sentence, const QString &voice, const QString &folder, const QString &name)
{
    const QString spoken = QDir(folder).filePath(u"spoken-" + name);
    const QStringList arguments = voice == u"espeak-ng"
                                      ? QStringList{QStringLiteral("-v"), QStringLiteral("en-us"), QStringLiteral("-w"),
                                                    spoken, sentence}
                                      : QStringList{QStringLiteral("-voice"), voice, QStringLiteral("-t"), sentence,
                                                    QStringLiteral("-o"), spoken};
    const QString speaker = voice == u"espeak-ng" ? voice : QStringLiteral("flite");
    if (QProcess::execute(speaker, arguments) != 0)
        return {};
    const QStringList format{QStringLiteral("-r16000"), QStringLiteral("-c1"), QStringLiteral("-b16")};
    return soxFile(folder, name, {spoken}, format);
}

// Length of the file and the time of its last sample louder than a whisper.
std::optional<std::pair<double, double>> soundOf(const QString &path)
{
    WavFile file(path);
    if (file.open())
        return std::nullopt;
    const AudioFormat format = file.format();
    std::vector<float> block;
    qint64 frames = 0, lastLoud = 0;
    while (file.read(4'096, block)) {
        for (size_t i = 0; i < block.size(); ++i) {
            if (std::abs(block[i]) > 0.02f)
                lastLoud = frames + qint64(i) / format.channels + 1;
        }
        frames += qint64(block.size()) / format.channels;
    }
    return std::pair{double(frames) / format.sampleRate, double(lastLoud) / format.sampleRate};
}

// A file of quiet in the speech's format.
QString quiet(const QString &folder, const QString &name, double seconds)
{
    return soxFile(folder, name, {QStringLiteral("-n")},
                   {QStringLiteral("-r16000"), QStringLiteral("-c1"), QStringLiteral("-b16")},
                   {QStringLiteral("trim"), QStringLiteral("0"), QString::number(seconds)});
}

} // namespace

QStringList SpeechAudio::lecture()
{
    return {QStringLiteral("Please read chapter seven before the exam."),
            QStringLiteral("Photosynthesis turns light into chemical energy."),
            QStringLiteral("The exam will cover chapters three to five.")};
}

std::optional<SpeechAudio> SpeechAudio::make(const QString &folder, const Script &script)
{
    const QString lead = quiet(folder, QStringLiteral("lead.wav"), script.leadSeconds);
    if (lead.isEmpty())
        return std::nullopt;

    SpeechAudio speech;
    QStringList parts{lead};
    double at = script.leadSeconds;
    for (qsizetype i = 0; i < script.sentences.size(); ++i) {
        const QString name = QStringLiteral("sentence%1.wav").arg(i);
        const QString said = say(script.sentences[i], script.voice, folder, name);
        const auto sound = said.isEmpty() ? std::nullopt : soundOf(said);
        if (!sound)
            return std::nullopt;
        const double pauseSeconds = script.pausesAfter.value(i, script.pauseSeconds);
        const QString pause = quiet(folder, QStringLiteral("pause%1.wav").arg(i), pauseSeconds);
        if (pause.isEmpty())
            return std::nullopt;
        speech.sentenceStarts << at;
        speech.sentenceEnds << at + sound->second;
        at += sound->first + pauseSeconds;
        parts << said << pause;
    }
    speech.seconds = at;

    if (script.noise > 0) {
        const QString clean = soxFile(folder, QStringLiteral("clean.wav"), parts, {});
        const QString noise = QStringLiteral("|sox -n -r 16000 -c 1 -b 16 -p synth %1 whitenoise vol %2").arg(at).arg(script.noise);
        parts = {QStringLiteral("-m"), QStringLiteral("-v1"), clean, QStringLiteral("-v1"), noise};
    }
    speech.path = soxFile(folder, QStringLiteral("speech.wav"), parts, {});
    return speech.path.isEmpty() ? std::nullopt : std::optional(speech);
}
