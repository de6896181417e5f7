// How many texts a second the lanes get through against a local LibreTranslate-speaking server:
// one lane alone, and two lanes side by side, with the server answering at once or after a
// fixed time per text (a stand-in for the model's work); and what translate() costs its caller.

#include "translation/Translator.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <httplib.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

std::atomic<int> serverWorkMs{0};

class LocalServer
{
public:
    LocalServer()
    {
        server_.Get("/languages", [](const httplib::Request &, httplib::Response &response) {
            response.set_content(R"([{"code": "ko", "targets": ["zh-Hans"]}, {"code": "en", "targets": ["zh-Hans"]},)"
                                 R"( {"code": "zh-Hans", "targets": ["en", "ko"]}])",
                                 "application/json");
        });
        server_.Post("/translate", [](const httplib::Request &request, httplib::Response &response) {
            std::this_thread::sleep_for(std::chrono::milliseconds(serverWorkMs.load()));
            const QJsonObject body = QJsonDocument::fromJson(QByteArray::fromStdString(request.body)).object();
            const QJsonObject answer{{QStringLiteral("translatedText"), body.value(u"q").toString()}};
            response.set_content(QJsonDocument(answer).toJson(QJsonDocument::Compact).toStdString(), "application/json");
        });
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
    }

    ~LocalServer()
    {
        server_.stop();
        thread_.join();
    }

    LocalServer(const LocalServer &) = delete;
    LocalServer &operator=(const LocalServer &) = delete;

    QString url() const { return QStringLiteral("http://127.0.0.1:%1").arg(port_); }

private:
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
};

const QString korean = QStringLiteral("오늘은 경제학의 기본 개념에 대해서 이야기해 보겠습니다");
const QString english = QStringLiteral("Today we are going to talk about the basic ideas of economics");

// state.range(0): lanes in use (1 or 2); state.range(1): the server's time per text in ms.
void BM_LaneThroughput(benchmark::State &state)
{
    static LocalServer server;
    QSettings().setValue(QStringLiteral("translate.url"), server.url());
    serverWorkMs = int(state.range(1));
    const bool twoLanes = state.range(0) == 2;
    constexpr int textsPerRound = 40;

    Translator translator;
    translator.setLanguages({QStringLiteral("ko-KR"), QStringLiteral("en-US")}, QStringLiteral("zh-Hans"));
    for (auto _ : state) {
        int done = 0;
        for (int i = 0; i < textsPerRound; ++i) {
            const QString &text = twoLanes && i % 2 ? english : korean;
            translator.translate(text, [&done](const std::optional<QString> &) { ++done; });
        }
        while (done < textsPerRound)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    state.SetItemsProcessed(state.iterations() * textsPerRound);
}

BENCHMARK(BM_LaneThroughput)
    ->ArgNames({"lanes", "server_ms"})
    ->Args({1, 0})
    ->Args({2, 0})
    ->Args({1, 5})
    ->Args({2, 5})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The caller's share of translate(): detection and handing the text to its lane, with the server
// taking 5 ms per text, so the call must not wait for it.
void BM_TranslateCall(benchmark::State &state)
{
    static LocalServer server;
    QSettings().setValue(QStringLiteral("translate.url"), server.url());
    serverWorkMs = 5;
    constexpr int textsPerRound = 40;
    Translator translator;
    translator.setLanguages({QStringLiteral("ko-KR"), QStringLiteral("en-US")}, QStringLiteral("zh-Hans"));
    for (auto _ : state) {
        int done = 0;
        for (int i = 0; i < textsPerRound; ++i)
            translator.translate(i % 2 ? english : korean, [&done](const std::optional<QString> &) { ++done; });
        state.PauseTiming();
        while (done < textsPerRound)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * textsPerRound);
}

// Fixed rounds: each waits untimed for the server, which the automatic iteration count would not allow for.
BENCHMARK(BM_TranslateCall)->Unit(benchmark::kMicrosecond)->Iterations(200);

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("QuilletBench"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
