#include "ui/Panel.h"

#include "X11Client.h"

#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

TEST(Panel, ShowsTitleAndStatusAndLoadsTheFeedPage)
{
    Panel panel;
    std::optional<bool> loaded;
    panel.onFeedLoaded = [&](bool ok) { loaded = ok; };
    panel.show();
    EXPECT_EQ(panel.windowTitle(), QStringLiteral("Quillet"));
    EXPECT_EQ(panel.status(), QStringLiteral("未开始"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return loaded.has_value(); }, 30000));
    EXPECT_TRUE(*loaded);
}

TEST(Application, StartsShowsItsWindowAndExitsCleanlyWhenClosed)
{
    if (QGuiApplication::platformName() != u"xcb")
        GTEST_SKIP() << "the application test needs an X display (run it under xvfb-run)";
    QProcess app;
    app.setProcessChannelMode(QProcess::MergedChannels);
    app.start(QStringLiteral(QUILLET_EXECUTABLE), {});
    ASSERT_TRUE(app.waitForStarted());

    QByteArray output;
    unsigned long window = 0;
    const bool ready = QTest::qWaitFor([&] {
        output += app.readAll();
        window = X11Client::find("Quillet");
        return window && output.contains("Feed page loaded");
    }, 60000);
    ASSERT_TRUE(ready) << output.constData();

    X11Client::requestClose(window);
    ASSERT_TRUE(app.waitForFinished(20000)) << "the application did not exit after its window was closed";
    EXPECT_EQ(app.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(app.exitCode(), 0) << QByteArray(output + app.readAll()).constData();
}
