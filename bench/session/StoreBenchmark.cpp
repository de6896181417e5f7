// The store's costs that grow with the classes: saving a long class (every two seconds while it
// is recorded) and listing the whole library (every time the library opens or refreshes).

#include "session/SessionStore.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTimeZone>

#include <benchmark/benchmark.h>

namespace {

SessionData recordOf(int lines)
{
    const QDateTime start(QDate(2026, 3, 2), QTime(9, 0), QTimeZone::utc());
    SessionData data = SessionData::make(QStringLiteral("Korean"), QStringLiteral("Simplified Chinese"), start);
    data.duration = lines * 1.1;
    for (int i = 0; i < lines; ++i)
        data.lines.append({i * 1.1, QStringLiteral("오늘은 열역학 제2법칙과 엔트로피의 의미를 함께 살펴보겠습니다 %1").arg(i),
                           QStringLiteral("今天我们一起来看热力学第二定律和熵的含义 %1").arg(i)});
    for (int i = 0; i < lines / 100; ++i)
        data.notes.append({i * 110.0, QStringLiteral("课堂重点"), QStringLiteral("The second law holds for closed systems.")});
    data.summary = QString(2'000, u'总');
    data.vocabulary = QList<SessionData::Term>(lines / 100, {QStringLiteral("엔트로피"), QStringLiteral("熵"), QString()});
    return data;
}

void saveLongClass(benchmark::State &state)
{
    QTemporaryDir folder;
    const SessionData data = recordOf(int(state.range(0)));
    for (auto _ : state)
        SessionStore::write(data, folder.path());
    state.counters["json_bytes"] = double(data.toJson().size());
}
BENCHMARK(saveLongClass)->Arg(5'000)->Unit(benchmark::kMillisecond);

void listLibrary(benchmark::State &state)
{
    QTemporaryDir documents;
    SessionStore::useDocumentsFolder(documents.path());
    SessionData data = recordOf(int(state.range(1)));
    for (int i = 0; i < state.range(0); ++i) {
        const QString folder = SessionStore::root() + u"/class " + QString::number(i);
        QDir().mkpath(folder);
        data.started = data.started.addSecs(3'600);
        SessionStore::write(data, folder);
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(SessionStore::list());
    state.counters["json_bytes_each"] = double(data.toJson().size());
    SessionStore::useDocumentsFolder({});
}
BENCHMARK(listLibrary)->Args({1'000, 20})->Args({1'000, 200})->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
