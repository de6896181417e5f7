// Drives the settings sheet through its own controls, as the student would: what "完成" hands the
// coordinator and stores, which rows hide, what a refused choice says.

#include "ui/settings/SettingsSheet.h"

#include "SheetFixture.h"

#include "platform/Keychain.h"
#include "settings/UserDefaults.h"
#include "ui/settings/SettingsWindow.h"
#include "ui/subtitles/SubtitleFonts.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using SettingsSheetTest = SheetFixture;

// One change a student makes on a page and what it does to the record.
struct Edit
{
    const char *what;
    std::function<void(SheetFixture &)> change;
    std::function<void(Config &)> expect;
};

TEST_F(SettingsSheetTest, EveryPageSavesWhatItShowsAndWhatWasChanged)
{
    Config base;
    base.layout = u"horizontal"_s;
    base.theme = u"dark"_s;
    base.panelFontSize = 18;
    base.panelBackground = u"solid"_s;
    base.audioQuality = u"small"_s;
    base.storageLimitGB = 10;
    base.recognizer = u"cloud"_s;
    base.aiCorrect = false;
    base.autoClean = true;
    base.overflow = u"cloud"_s;
    base.cloudSync = true;
    base.keySource = u"own"_s;

    const QList<Edit> edits{
        {"nothing", [](auto &) {}, [](Config &) {}},
        {"main page", [](SheetFixture &s) {
             s.choose("sourcePopup", u"window"_s);
             s.get<QComboBox>("appBox")->setCurrentText(u"  zoom  "_s);
             s.choose("layoutPopup", u"vertical"_s);
             s.toggle("emailSwitch");
         }, [](Config &c) { c.sourceType = u"window"_s; c.app = u"zoom"_s; c.layout = u"vertical"_s; c.emailReport = false; }},
        {"own key page", [](SheetFixture &s) {
             s.choose("providerPopup", u"gemini"_s);
             s.get<QLineEdit>("keyField")->setText(u" sk-gemini\n"_s);
         }, [](Config &c) { c.provider = u"gemini"_s; c.model = u"gemini-2.5-pro"_s; }},
        {"models page", [](SheetFixture &s) {
             s.choose("recognizerPopup", u"local"_s);
             s.choose("cloudModelPopup", u"gpt-4o-transcribe"_s);
             s.choose("modelPopup", u"claude-haiku-4-5"_s);
             s.toggle("correctSwitch");
             s.toggle("refineSwitch");
         }, [](Config &c) {
             c.recognizer = u"local"_s;
             c.cloudModel = u"gpt-4o-transcribe"_s;
             c.model = u"claude-haiku-4-5"_s;
             c.aiCorrect = true;
             c.refineAfterClass = false;
         }},
        {"appearance page", [](SheetFixture &s) {
             s.choose("themePopup", u"system"_s);
             s.choose("panelSizePopup", 25.0);
         }, [](Config &c) { c.theme = u"system"_s; c.panelFontSize = 25; }},
        {"storage page", [](SheetFixture &s) {
             s.choose("qualityPopup", u"standard"_s);
             s.choose("limitPopup", 20.0);
             s.choose("overflowPopup", u"trimAudio"_s);
             s.toggle("cleanSwitch");
         }, [](Config &c) { c.audioQuality = u"standard"_s; c.storageLimitGB = 20; c.overflow = u"trimAudio"_s; c.autoClean = false; }},
        {"cloud page", [](SheetFixture &s) { s.toggle("cloudSwitch"); }, [](Config &c) { c.cloudSync = false; }},
    };
    QString geminiKey;
    for (const Edit &edit : edits) {
        SCOPED_TRACE(edit.what);
        reset();
        storeKey(u"claude"_s, u"sk-claude"_s);
        storeKey(u"openai"_s, u"sk-openai"_s);
        sheet.load(base);
        edit.change(*this);
        press();
        ASSERT_TRUE(saved) << alertText().toStdString();
        Config expected = base;
        expected.panelBackground = u"glass"_s;   // the only background the panel has
        edit.expect(expected);
        EXPECT_EQ(saved->first, expected);
        EXPECT_EQ(Config::load(), expected) << "the record was stored";
        EXPECT_TRUE(closed);
        EXPECT_EQ(Keychain::get(u"claude"_s), u"sk-claude"_s) << "an empty key field keeps the stored key";
        if (saved->first.provider == u"gemini")
            geminiKey = Keychain::get(u"gemini"_s).value_or(QString());
    }
    EXPECT_EQ(geminiKey, u"sk-gemini"_s) << "a typed key is stored trimmed";
}

// Which rows show, for a record and a relay.
struct Rows
{
    const char *what;
    std::function<void(Config &)> record;
    bool relay;
    QStringList shown;
    QStringList hidden;
};

TEST_F(SettingsSheetTest, RowsThatDoNotFitTheChoicesHide)
{
    const QList<Rows> cases{
        {"no relay: own key only", [](Config &) {}, false,
         {u"modelPopup"_s, u"providerPopup"_s, u"keyField"_s, u"recognizerPopup"_s, u"devicePopup"_s},
         {u"builtinPopup"_s, u"openaiField"_s, u"modelField"_s, u"cloudModelPopup"_s, u"appBox"_s, u"accountLabel"_s}},
        {"relay: Quillet's AI", [](Config &) {}, true, {u"builtinPopup"_s},
         {u"modelPopup"_s, u"providerPopup"_s, u"keyField"_s, u"openaiField"_s}},
        {"cloud speech on an own Claude key", [](Config &c) { c.recognizer = u"cloud"_s; }, false,
         {u"cloudModelPopup"_s, u"openaiField"_s}, {}},
        {"cloud speech on an own OpenAI key", [](Config &c) {
             c.recognizer = u"cloud"_s;
             c.provider = u"openai"_s;
             c.model = u"gpt-5"_s;
         }, false, {u"cloudModelPopup"_s}, {u"openaiField"_s}},
        {"caption window", [](Config &c) { c.sourceType = u"window"_s; }, false, {u"appBox"_s},
         {u"recognizerPopup"_s, u"devicePopup"_s}},
        {"a model of the student's own", [](Config &c) { c.model = u"claude-next"_s; }, false, {u"modelField"_s}, {}},
        {"clean-up off", [](Config &c) { c.autoClean = false; }, false, {}, {u"limitPopup"_s, u"overflowPopup"_s}},
        {"clean-up on", [](Config &c) { c.autoClean = true; }, false, {u"limitPopup"_s, u"overflowPopup"_s}, {}},
    };
    for (const Rows &row : cases) {
        SCOPED_TRACE(row.what);
        reset();
        if (row.relay)
            UserDefaults::setValue(UserDefaults::relayURL, u"http://127.0.0.1:9"_s);
        Config config;
        row.record(config);
        sheet.load(config);
        for (const QString &name : row.shown)
            EXPECT_TRUE(shown(name.toLatin1())) << name.toStdString();
        for (const QString &name : row.hidden)
            EXPECT_FALSE(shown(name.toLatin1())) << name.toStdString();
        EXPECT_EQ(get<QWidget>("ownSwitch")->isEnabled(), row.relay) << "without a relay own keys are the only way";
    }
    reset();
    Config custom;
    custom.model = u"claude-next"_s;
    sheet.load(custom);
    EXPECT_EQ(get<QComboBox>("modelPopup")->currentText(), u"自定义…"_s);
    EXPECT_EQ(get<QLineEdit>("modelField")->text(), u"claude-next"_s);
    EXPECT_EQ(get<QComboBox>("appBox")->itemText(0), u"Coursedude"_s) << "the current application comes first, installed or not";
}

// A save that is refused, and what it says.
struct Refusal
{
    const char *what;
    std::function<void(SheetFixture &)> setUp;
    QString alert;
};

TEST_F(SettingsSheetTest, ARefusedSaveSaysWhyAndKeepsTheSheetOpen)
{
    const QList<Refusal> cases{
        {"no key anywhere", [](auto &) {}, u"请填写 API key（设置 › 使用自己的 API key）。"_s},
        {"no model name", [](SheetFixture &s) {
             s.storeKey(u"claude"_s, u"sk"_s);
             s.get<QComboBox>("modelPopup")->setCurrentIndex(s.get<QComboBox>("modelPopup")->count() - 1);
         }, u"请填写模型名。"_s},
        {"the keyring refuses the key", [](SheetFixture &s) {
             s.store->refuse = true;
             s.get<QLineEdit>("keyField")->setText(u"sk-new"_s);
         }, u"API key 保存到密钥环失败。"_s},
        {"cloud speech without an OpenAI key", [](SheetFixture &s) {
             s.storeKey(u"claude"_s, u"sk"_s);
             s.choose("recognizerPopup", u"cloud"_s);
         }, u"云端识别需要 OpenAI 的 API key（设置 › AI 模型分配）。"_s},
        {"the keyring refuses the OpenAI key", [](SheetFixture &s) {
             s.storeKey(u"claude"_s, u"sk"_s);
             s.choose("recognizerPopup", u"cloud"_s);
             s.get<QLineEdit>("openaiField")->setText(u"sk-openai"_s);
             s.store->refuse = true;
         }, u"OpenAI key 保存到密钥环失败。"_s},
        {"caption window without an application", [](SheetFixture &s) {
             s.get<QLineEdit>("keyField")->setText(u"sk-typed"_s);
             s.choose("sourcePopup", u"window"_s);
             s.get<QComboBox>("appBox")->setCurrentText(u" "_s);
         }, u"请选择要读取字幕的翻译软件。"_s},
    };
    for (const Refusal &refusal : cases) {
        SCOPED_TRACE(refusal.what);
        reset();
        sheet.load(Config());
        refusal.setUp(*this);
        press();
        EXPECT_EQ(alertText(), refusal.alert);
        EXPECT_FALSE(saved);
        EXPECT_FALSE(closed);
        EXPECT_FALSE(QFile::exists(Config::path()));
    }
    EXPECT_EQ(Keychain::get(u"claude"_s), u"sk-typed"_s) << "a key stored before the refusal stays stored";
}

TEST_F(SettingsSheetTest, FontAndBarSizeGoToTheCoordinatorAndAFailedWriteIsTold)
{
    storeKey(u"claude"_s, u"sk"_s);
    UserDefaults::setValue(SubtitleFonts::fontKey, u"wenkai"_s);
    UserDefaults::setValue(SubtitleFonts::sizeKey, 22);
    Config config;
    config.storageLimitGB = 3;
    sheet.load(config);
    EXPECT_EQ(get<QComboBox>("fontPopup")->currentText(), u"霞鹜文楷"_s);
    EXPECT_EQ(get<QComboBox>("barSizePopup")->currentText(), u"标准"_s) << "20 and 24 are as near to 22; the first wins";
    EXPECT_EQ(get<QComboBox>("limitPopup")->currentText(), u"5 GB"_s);
    press();
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->second, u"wenkai"_s);
    EXPECT_EQ(saved->first.storageLimitGB, 5);
    EXPECT_FALSE(barSize) << "an untouched size leaves 22 alone";

    reset();
    storeKey(u"claude"_s, u"sk"_s);
    sheet.load(config);
    choose("fontPopup", u"smiley"_s);
    choose("barSizePopup", 24.0);
    ASSERT_TRUE(QDir().mkpath(Config::path()));   // a folder where the record goes: the write fails
    press();
    ASSERT_TRUE(saved) << "the choices hold for this run";
    EXPECT_EQ(saved->second, u"smiley"_s);
    EXPECT_EQ(barSize, 24.0);
    EXPECT_FALSE(closed);
    EXPECT_EQ(alertText(), u"设置没能写进文件（磁盘可能满了）：这次的改动在退出后不会保留。"_s);
    EXPECT_TRUE(closed) << "the sheet closes once the message is read";
}

} // namespace
