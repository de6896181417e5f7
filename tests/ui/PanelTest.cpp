#include "ui/Panel.h"

#include <QLabel>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QWebEngineView>

#include "X11Client.h"

#include <gtest/gtest.h>

#include <iostream>



TEST(Panel, ShowsTitleStatusAndLoadsTheFeedPage)
{
    Panel panel;
    bool loaded = false;
    bool finished = false;
    panel.onFeedLoaded = [&](bool ok) {
        loaded = ok;
        finished = true;
    };
    panel.show();
    EXPECT_EQ(panel.windowTitle(), QStringLiteral("Quillet"));
    EXPECT_EQ(panel.status(), QStringLiteral("未开始"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return finished; }, 30000));
    EXPECT_TRUE(loaded);

    auto *view = panel.findChild<QWebEngineView *>();
    ASSERT_NE(view, nullptr);
    QString placeholder;
    bool answered = false;
    view->page()->runJavaScript(QStringLiteral("document.getElementById('feed').dataset.empty"),
                                [&](const QVariant &value) {
                                    placeholder = value.toString();
                                    answered = true;
                                });
    ASSERT_TRUE(QTest::qWaitFor([&] { return answered; }, 10000));
    EXPECT_EQ(placeholder, QStringLiteral("AI 提示会显示在这里。"));

    panel.setStatus(QStringLiteral("● 正在录音"));
    EXPECT_EQ(panel.findChild<QLabel *>()->text(), QStringLiteral("● 正在录音"));
}

TEST(Application, StartsShowsItsWindowAndExitsCleanlyWhenClosed)
{
    X11Client x11;
    if (!x11.connected()) {
        std::cout << "Skipped: the application test needs an X display (run under xvfb-run).\n";
        GTEST_SKIP();
    }
    QProcess app;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    app.setProcessEnvironment(environment);
    app.setProcessChannelMode(QProcess::MergedChannels);
    app.start(QStringLiteral(QUILLET_EXECUTABLE), {});
    ASSERT_TRUE(app.waitForStarted());

    QByteArray output;
    const bool ready = QTest::qWaitFor([&] {
        output += app.readAll();
        return x11.hasWindow("Quillet") && output.contains("Feed page loaded");
    }, 60000);
    EXPECT_TRUE(ready) << output.constData();

    x11.requestClose("Quillet");
    const bool exited = app.waitForFinished(20000);
    if (!exited)
        app.kill();
    ASSERT_TRUE(exited) << "the application did not exit after its window was closed";
    EXPECT_EQ(app.exitStatus(), QProcess::NormalExit);
    output += app.readAll();
    EXPECT_EQ(app.exitCode(), 0) << output.constData();
}
