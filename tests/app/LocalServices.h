#pragma once

// What the coordinator tests share: timers that wait for the manual clock, and a local
// LibreTranslate server that knows English to Simplified Chinese and answers "zh-Hans:<text>".

#include "ManualClock.h"
#include "TestServer.h"
#include "text/Schedule.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include <map>

// advance() moves the clock and runs the tasks that came due, in order.
struct DueTasks
{
    ManualClock &clock;
    std::multimap<Text::Clock::Duration, std::function<void()>> tasks;

    Text::Schedule scheduler()
    {
        return [this](std::chrono::milliseconds delay, std::function<void()> task) {
            tasks.emplace(clock.elapsed() + delay, std::move(task));
        };
    }
    void advance(std::chrono::milliseconds by)
    {
        clock.advance(by);
        while (!tasks.empty() && tasks.begin()->first <= clock.elapsed()) {
            auto task = std::move(tasks.begin()->second);
            tasks.erase(tasks.begin());
            task();
        }
    }
};

inline void serveTranslations(TestServer &server)
{
    QSettings().setValue(QStringLiteral("translate.url"), server.url());
    server.setHandler([](const TestServer::Request &request) {
        if (request.path == "/languages")
            return TestServer::Response::json(R"([{"code": "en", "targets": ["zh-Hans"]}])");
        const QJsonObject body = QJsonDocument::fromJson(request.body).object();
        const QString text = body.value(u"target").toString() + u':' + body.value(u"q").toString();
        return TestServer::Response::json(QJsonDocument(QJsonObject{{QStringLiteral("translatedText"), text}}).toJson());
    });
}
