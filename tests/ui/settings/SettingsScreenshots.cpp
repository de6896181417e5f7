// Shows every page of the sheet, light and dark, for a signed-in student with cloud speech and
// the clean-up on, and checks that each was drawn. With QUILLET_SCREENSHOT_DIR set the pictures
// are saved there as settings-<page>-<look>.png for a look.

#include "support/Screenshots.h"
#include "SheetFixture.h"

#include "settings/UserDefaults.h"
#include "ui/common/Look.h"
#include "ui/account/MenuRow.h"

#include <QAbstractButton>
#include <QDir>
#include <QSet>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using SettingsScreenshots = SheetFixture;

TEST_F(SettingsScreenshots, EveryPageLightAndDark)
{
    const QList<std::pair<QString, QString>> pages{{u"main"_s, {}},
                                                   {u"ownkey"_s, u"使用自己的 API key…"_s},
                                                   {u"models"_s, u"AI 模型分配"_s},
                                                   {u"appearance"_s, u"外观"_s},
                                                   {u"storage"_s, u"存储"_s},
                                                   {u"cloud"_s, u"云端同步"_s}};
    for (const QString &look : {u"light"_s, u"dark"_s}) {
        Look::apply(look);
        reset();
        UserDefaults::setValue(UserDefaults::relayURL, u"http://127.0.0.1:9"_s);
        UserDefaults::setValue(UserDefaults::accountEmail, u"mina.kim@snu.ac.kr"_s);
        storeKey(u"quillet-session"_s, u"session"_s);
        storeKey(u"claude"_s, u"sk-claude"_s);
        Config config;
        config.keySource = u"own"_s;
        config.recognizer = u"cloud"_s;
        config.autoClean = true;
        sheet.load(config);
        sheet.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(sheet.window()));
        for (const auto &[name, row] : pages) {
            SCOPED_TRACE(QString(name + u" " + look).toStdString());
            if (!row.isEmpty())
                QTest::mouseClick(get<MenuRow>(row.toUtf8().constData()), Qt::LeftButton);
            QTest::qWait(250);   // the window's height follows the page in 150 ms
            const QImage image = sheet.window()->grab().toImage();
            EXPECT_EQ(image.width(), 480 * image.devicePixelRatio());
            EXPECT_GT(Screenshots::colours(image), 50) << "text and controls were drawn";
            Screenshots::keep(image, u"settings-" + name + u'-' + look);
            if (!row.isEmpty())
                sheet.window()->currentPage()->findChild<QAbstractButton *>(u"backButton"_s)->click();
        }
        sheet.hide();
    }
}

} // namespace
