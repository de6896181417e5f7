#include "SessionFixture.h"

#include "session/SessionStore.h"

#include <QFile>
#include <QLocale>
#include <QProcess>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <numbers>

using namespace Qt::StringLiterals;

namespace {

const bool fixedPlace = [] {
    setenv("TZ", "Asia/Seoul", 1);
    tzset();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    return true;
}();

} // namespace

void SessionFixture::SetUp()
{
    ASSERT_TRUE(documents_.isValid());
    SessionStore::useDocumentsFolder(documents_.path());
    SessionStore::useClock(&clock_);
}

void SessionFixture::TearDown()
{
    SessionStore::useDocumentsFolder({});
    SessionStore::useClock(nullptr);
}

QByteArray SessionFixture::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void SessionFixture::put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

std::vector<float> SessionFixture::tone(int sampleRate, double seconds, int channels)
{
    std::vector<float> samples(size_t(sampleRate * seconds) * size_t(channels));
    const double step = 2 * std::numbers::pi * 440.0 / sampleRate;
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = float(0.3 * std::sin(step * double(i / size_t(channels))));
    return samples;
}

::testing::AssertionResult SessionFixture::isMonoAac(const QString &path, int sampleRate, double seconds,
                                                     std::optional<double> slack)
{
    // One line per decoded frame with its sample count, then one for the stream.
    QProcess probe;
    probe.start(u"ffprobe"_s, {u"-v"_s, u"error"_s, u"-select_streams"_s, u"a:0"_s, u"-show_entries"_s,
                               u"frame=nb_samples:stream=codec_name,sample_rate,channels"_s, u"-of"_s,
                               u"csv=p=0"_s, path});
    probe.waitForFinished();
    QList<QByteArray> lines = probe.readAllStandardOutput().trimmed().split('\n');
    const QByteArray stream = lines.takeLast();
    qint64 samples = 0;
    for (const QByteArray &line : lines)
        samples += line.toLongLong();
    const double decoded = double(samples) / sampleRate;
    if (stream != "aac," + QByteArray::number(sampleRate) + ",1"
        || std::abs(decoded - seconds) > slack.value_or(seconds / 20))
        return ::testing::AssertionFailure() << '"' << stream.toStdString() << "\", " << decoded << " s";
    return ::testing::AssertionSuccess();
}
