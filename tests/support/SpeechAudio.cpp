#include "SpeechAudio.h"

#include "platform/WavFile.h"

#include <QDir>
#include <QProcess>

#include <cmath>

namespace {

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
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
bool makeQuiet(const QString &path, double seconds)
{
    return run(QStringLiteral("sox"), {QStringLiteral("-n"), QStringLiteral("-r16000"), QStringLiteral("-c1"),
                                       QStringLiteral("-b16"), path, QStringLiteral("trim"), QStringLiteral("0"),
                                       QString::number(seconds)});
}

} // namespace

std::optional<SpeechAudio> SpeechAudio::make(const QString &folder, const Script &script)
{
    const QDir dir(folder);
    const QString lead = dir.filePath(QStringLiteral("lead.wav"));
    const QString pause = dir.filePath(QStringLiteral("pause.wav"));
    if (!makeQuiet(lead, script.leadSeconds) || !makeQuiet(pause, script.pauseSeconds))
        return std::nullopt;

    SpeechAudio speech;
    QStringList parts{lead};
    double at = script.leadSeconds;
    for (qsizetype i = 0; i < script.sentences.size(); ++i) {
        const QString said = dir.filePath(QStringLiteral("sentence%1.wav").arg(i));
        if (!run(QStringLiteral("flite"), {QStringLiteral("-voice"), QStringLiteral("slt"), QStringLiteral("-t"),
                                           script.sentences[i], QStringLiteral("-o"), said}))
            return std::nullopt;
        const auto sound = soundOf(said);
        if (!sound)
            return std::nullopt;
        speech.sentenceEnds << at + sound->second;
        at += sound->first + script.pauseSeconds;
        parts << said << pause;
    }

    speech.path = dir.filePath(QStringLiteral("speech.wav"));
    speech.seconds = at;
    if (script.noise <= 0)
        return run(QStringLiteral("sox"), parts + QStringList{speech.path}) ? std::optional(speech) : std::nullopt;
    const QString clean = dir.filePath(QStringLiteral("clean.wav"));
    const QString noise = QStringLiteral("|sox -n -r 16000 -c 1 -b 16 -p synth %1 whitenoise vol %2").arg(at).arg(script.noise);
    if (!run(QStringLiteral("sox"), parts + QStringList{clean})
        || !run(QStringLiteral("sox"), {QStringLiteral("-m"), QStringLiteral("-v1"), clean, QStringLiteral("-v1"), noise, speech.path}))
        return std::nullopt;
    return speech;
}
