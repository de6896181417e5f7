#include "ui/settings/SettingsSheet.h"

#include "account/Account.h"
#include "account/Relay.h"
#include "platform/Keychain.h"
#include "session/SessionStore.h"
#include "settings/ProviderInfo.h"
#include "settings/UserDefaults.h"
#include "ui/account/MenuRow.h"
#include "ui/settings/AppChoices.h"
#include "ui/settings/AppearancePage.h"
#include "ui/settings/CloudPage.h"
#include "ui/settings/InputDevices.h"
#include "ui/settings/MainPage.h"
#include "ui/settings/ModelsPage.h"
#include "ui/settings/OwnKeyPage.h"
#include "ui/settings/SettingsGroup.h"
#include "ui/settings/SettingsRows.h"
#include "ui/settings/SettingsWindow.h"
#include "ui/settings/StoragePage.h"
#include "ui/common/ToggleSwitch.h"
#include "ui/subtitles/SubtitleFonts.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QUrl>

using namespace Qt::StringLiterals;
using SettingsRows::select;
using SettingsRows::selected;

namespace {

// A label up to its first "（": the short form the main page shows.
QString beforeBracket(const QString &text)
{
    return text.section(u'（', 0, 0);
}

QString keyPlaceholder(const QString &account, const QString &missing)
{
    return Keychain::get(account) ? u"已保存（留空就不修改）"_s : missing;
}

void openNotesFolder()
{
    const QString root = SessionStore::root();
    QDir().mkpath(root);
    QDesktopServices::openUrl(QUrl::fromLocalFile(root));
}

} // namespace

SettingsSheet::SettingsSheet(QWidget *parent)
    : window_(new SettingsWindow(parent))
    , main_(new MainPage(window_))
    , ownKey_(new OwnKeyPage(window_))
    , models_(new ModelsPage(window_))
    , appearance_(new AppearancePage(window_))
    , storage_(new StoragePage(window_))
    , cloud_(new CloudPage(window_))
{
    for (QWidget *page : std::initializer_list<QWidget *>{main_, ownKey_, models_, appearance_, storage_, cloud_})
        window_->addPage(page);
    connectPages();
    window_->onDone = [this] { saveClicked(); };
    window_->onCancel = [this] { onClose(); };
}

SettingsSheet::~SettingsSheet()
{
    delete window_.data();
}

void SettingsSheet::connectPages()
{
    const auto opens = [this](MenuRow *row, QWidget *page) { row->onClick = [this, page] { window_->showPage(page); }; };
    opens(main_->ownKeyRow, ownKey_);
    opens(main_->modelsRow, models_);
    opens(main_->appearanceRow, appearance_);
    opens(main_->storageRow, storage_);
    opens(main_->cloudRow, cloud_);
    for (SettingsPage *page : std::initializer_list<SettingsPage *>{ownKey_, models_, appearance_, storage_, cloud_})
        page->onBack = [this] { window_->showPage(main_); };

    QObject::connect(main_->signOutButton, &QPushButton::clicked, window_, [this] { onSignOut(); });
    QObject::connect(storage_->openFolderButton, &QPushButton::clicked, window_, &openNotesFolder);
    QObject::connect(ownKey_->keyLink, &QLabel::linkActivated, window_,
                     [](const QString &url) { QDesktopServices::openUrl(QUrl(url)); });
    QObject::connect(ownKey_->providerPopup, &QComboBox::currentIndexChanged, window_, [this] { providerChanged(); });
    const auto changes = [this] { sourceChanged(); };
    for (QComboBox *popup : {models_->modelPopup, main_->sourcePopup, models_->recognizerPopup})
        QObject::connect(popup, &QComboBox::currentIndexChanged, window_, changes);
    QObject::connect(ownKey_->ownSwitch, &ToggleSwitch::toggled, window_, changes);
    const auto values = [this] { refreshValues(); };
    for (QComboBox *popup : {appearance_->themePopup, appearance_->fontPopup, storage_->limitPopup})
        QObject::connect(popup, &QComboBox::currentIndexChanged, window_, values);
    for (ToggleSwitch *toggle : {storage_->cleanSwitch, models_->correctSwitch, cloud_->cloudSwitch})
        QObject::connect(toggle, &ToggleSwitch::toggled, window_, values);
}

void SettingsSheet::load(const Config &config)
{
    config_ = config;
    loadChoices();
    loadDevices();
    models_->openaiField->clear();
    models_->openaiField->setPlaceholderText(keyPlaceholder(u"openai"_s, u"粘贴你的 OpenAI API key"_s));
    main_->appBox->clear();
    main_->appBox->addItems(AppChoices::choices(config.app));
    main_->appBox->setCurrentText(config.app);
    ownKey_->ownSwitch->setChecked(!config.usesQuilletAI(Relay::available()));
    main_->accountLabel->setText(Account::email().value_or(QString()));
    main_->aiGroup->setRowVisible(MainPage::accountRow, Account::signedIn());
    const SessionStore::Usage usage = SessionStore::usage();
    storage_->usageLabel->setText(SessionStore::format(usage.bytes) + u"（" + QString::number(usage.classes) + u" 节课）");
    ownKey_->keyField->clear();
    refreshProvider(config.model);
    sourceChanged();
    refreshValues();
    window_->showPage(main_);
}

void SettingsSheet::loadChoices()
{
    const Config &c = config_;
    {
        // The model list follows the provider only when the student changes it.
        const QSignalBlocker quiet(ownKey_->providerPopup);
        select(ownKey_->providerPopup, c.provider);
    }
    select(main_->sourcePopup, c.sourceType);
    select(main_->layoutPopup, c.layout.value_or(u"vertical"_s));
    select(models_->builtinPopup, c.builtinAI.value_or(u"claude"_s));
    select(models_->recognizerPopup, c.recognizer.value_or(u"local"_s));
    select(models_->cloudModelPopup, c.cloudModel.value_or(u"gpt-4o-mini-transcribe"_s));
    select(appearance_->themePopup, c.theme.value_or(u"system"_s));
    select(storage_->qualityPopup, c.audioQuality.value_or(u"standard"_s));
    select(storage_->overflowPopup, c.overflow.value_or(u"trimAudio"_s));
    main_->emailSwitch->setChecked(c.emailReport.value_or(true));
    models_->correctSwitch->setChecked(c.aiCorrect.value_or(true));
    models_->refineSwitch->setChecked(c.refineAfterClass.value_or(true));
    storage_->cleanSwitch->setChecked(c.autoClean.value_or(false));
    cloud_->cloudSwitch->setChecked(c.cloudSync.value_or(false));

    using namespace SettingsChoices;
    appearance_->panelSizePopup->setCurrentIndex(int(nearest(panelSizes(), c.panelFontSize.value_or(15))));
    barSizeAtLoad_ = int(nearest(barSizes(), SubtitleFonts::storedSize()));
    appearance_->barSizePopup->setCurrentIndex(barSizeAtLoad_);
    const int limit = storage_->limitPopup->findData(double(c.storageLimitGB.value_or(5)));
    storage_->limitPopup->setCurrentIndex(limit >= 0 ? limit : 2);
    select(appearance_->fontPopup, SubtitleFonts::storedID());
}

void SettingsSheet::loadDevices()
{
    QComboBox *popup = models_->devicePopup;
    popup->clear();
    for (const InputDevices::Device &device : InputDevices::list())
        popup->addItem(device.label, device.id);
    // A device unplugged since it was chosen stays the choice until the student makes another.
    const QString stored = UserDefaults::text(UserDefaults::micDevice);
    if (!stored.isEmpty() && popup->findData(stored) < 0)
        popup->addItem(stored + u"（未连接）", stored);
    select(popup, stored);
}

void SettingsSheet::refreshProvider(const QString &selectModel)
{
    const ProviderInfo &provider = ProviderInfo::find(providerID());
    QComboBox *popup = models_->modelPopup;
    {
        const QSignalBlocker quiet(popup);
        popup->clear();
        for (const ProviderInfo::Model &model : provider.models)
            popup->addItem(model.label, model.id);
        popup->addItem(SettingsChoices::customLabel.toString());
        const int row = selectModel.isEmpty() ? -1 : popup->findData(selectModel);
        if (row >= 0) {
            popup->setCurrentIndex(row);
            models_->modelField->clear();
        } else if (!selectModel.isEmpty()) {
            popup->setCurrentIndex(popup->count() - 1);
            models_->modelField->setText(selectModel);
        }
    }
    sourceChanged();
    ownKey_->keyField->setPlaceholderText(keyPlaceholder(provider.id, u"粘贴你的 API key"_s));
    const QString link = u"在 " + provider.displayName + u" 官网获取 API key ↗";
    ownKey_->keyLink->setText(u"<a href=\"" + provider.keyURL.toHtmlEscaped() + u"\">" + link.toHtmlEscaped() + u"</a>");
}

void SettingsSheet::providerChanged()
{
    const ProviderInfo &provider = ProviderInfo::find(providerID());
    refreshProvider(provider.models.isEmpty() ? QString() : provider.models.first().id);
    sourceChanged();
}

void SettingsSheet::sourceChanged()
{
    const bool relay = Relay::available();
    if (!relay) {
        const QSignalBlocker quiet(ownKey_->ownSwitch);
        ownKey_->ownSwitch->setChecked(true);
    }
    ownKey_->ownSwitch->setEnabled(relay);
    const bool own = ownKeyMode();
    const bool window = selected(main_->sourcePopup) == u"window";
    const bool cloud = selected(models_->recognizerPopup) == u"cloud";
    SettingsGroup *rows = models_->modelsGroup;
    rows->setRowVisible(ModelsPage::builtinRow, !own);
    rows->setRowVisible(ModelsPage::recognizerRow, !window);
    rows->setRowVisible(ModelsPage::deviceRow, !window);
    rows->setRowVisible(ModelsPage::cloudModelRow, cloud);
    rows->setRowVisible(ModelsPage::openaiRow, cloud && own && providerID() != u"openai");
    rows->setRowVisible(ModelsPage::modelRow, own);
    rows->setRowVisible(ModelsPage::modelNameRow, own && customModel());
    ownKey_->ownGroup->setRowVisible(OwnKeyPage::providerRow, own);
    ownKey_->ownGroup->setRowVisible(OwnKeyPage::keyRow, own);
    main_->captionGroup->setRowVisible(MainPage::appRow, window);

    QString note;
    if (cloud)
        note = u"云端识别更准，几种语言混着说也能分清；声音会发送到 OpenAI 识别"_s
               + (own ? u"，费用记在你自己的 OpenAI 账户上。"_s : u"。"_s) + u"没有网络时请切回本机。\n"_s;
    models_->captionNote->setText(note + u"AI 纠错和精准翻译：每句话出来后由 AI 改正听错的词并重新翻译。下课后精修：保存后用整段录音再识别一遍。"_s);
    refreshValues();
    window_->fit();
}

void SettingsSheet::refreshValues()
{
    main_->appearanceRow->setValue(appearance_->themePopup->currentText() + u" · "
                                   + beforeBracket(appearance_->fontPopup->currentText()));
    main_->aiServiceLabel->setText(ownKeyMode() ? u"自己的 key · " + ProviderInfo::find(providerID()).displayName
                                                : u"Quillet 提供"_s);
    main_->modelsRow->setValue((selected(models_->recognizerPopup) == u"cloud" ? u"云端识别"_s : u"本机识别"_s)
                               + (models_->correctSwitch->isChecked() ? u" · AI 精准翻译"_s : QString()));
    main_->cloudRow->setValue(cloud_->cloudSwitch->isChecked() ? u"已打开（即将推出）"_s : u"即将推出"_s);
    const bool clean = storage_->cleanSwitch->isChecked();
    main_->storageRow->setValue(beforeBracket(storage_->usageLabel->text())
                                + (clean ? u" / " + storage_->limitPopup->currentText() : QString()));
    storage_->storageGroup->setRowVisible(StoragePage::limitRow, clean);
    storage_->storageGroup->setRowVisible(StoragePage::overflowRow, clean);
    if (window_->currentPage() == storage_)
        window_->fit();
}

void SettingsSheet::saveClicked()
{
    Config config = config_;
    if (const auto problem = collect(config)) {
        alert(*problem);
        return;
    }
    finish(config);
}

std::optional<QString> SettingsSheet::collect(Config &config)
{
    const bool own = ownKeyMode();
    const QString model = customModel() ? models_->modelField->text().trimmed() : selected(models_->modelPopup);
    if (const auto problem = storeKeys(own, model, config))
        return problem;
    config.builtinAI = selected(models_->builtinPopup);
    config.provider = providerID();
    config.model = model;
    config.sourceType = selected(main_->sourcePopup);
    config.recognizer = selected(models_->recognizerPopup);
    config.cloudModel = selected(models_->cloudModelPopup);
    config.refineAfterClass = models_->refineSwitch->isChecked();
    config.emailReport = main_->emailSwitch->isChecked();
    config.aiCorrect = models_->correctSwitch->isChecked();
    if (own && config.sourceType == u"mic" && config.recognizer == u"cloud" && config.provider != u"openai") {
        const QString key = models_->openaiField->text().trimmed();
        if (key.isEmpty() && !Keychain::get(u"openai"_s))
            return u"云端识别需要 OpenAI 的 API key（设置 › AI 模型分配）。"_s;
        if (!key.isEmpty() && !Keychain::set(u"openai"_s, key))
            return u"OpenAI key 保存到密钥环失败。"_s;
    }
    config.app = main_->appBox->currentText().trimmed();
    config.layout = selected(main_->layoutPopup);
    config.theme = selected(appearance_->themePopup);
    config.panelBackground = u"glass"_s;
    config.panelFontSize = SettingsRows::selectedSize(appearance_->panelSizePopup);
    if (appearance_->barSizePopup->currentIndex() != barSizeAtLoad_)
        onBarSize(SettingsRows::selectedSize(appearance_->barSizePopup));
    config.cloudSync = cloud_->cloudSwitch->isChecked();
    config.autoClean = storage_->cleanSwitch->isChecked();
    config.audioQuality = selected(storage_->qualityPopup);
    config.storageLimitGB = qint64(SettingsRows::selectedSize(storage_->limitPopup));
    config.overflow = selected(storage_->overflowPopup);
    if (config.sourceType == u"window" && config.app.isEmpty())
        return u"请选择要读取字幕的翻译软件。"_s;
    return std::nullopt;
}

std::optional<QString> SettingsSheet::storeKeys(bool ownKey, const QString &model, Config &config)
{
    config.keySource = ownKey ? u"own"_s : u"quillet"_s;
    if (!ownKey)
        return std::nullopt;
    if (model.isEmpty())
        return u"请填写模型名。"_s;
    const QString key = ownKey_->keyField->text().trimmed();
    if (!key.isEmpty())
        return Keychain::set(providerID(), key) ? std::nullopt : std::optional(u"API key 保存到密钥环失败。"_s);
    if (!Keychain::get(providerID()))
        return u"请填写 API key（设置 › 使用自己的 API key）。"_s;
    return std::nullopt;
}

void SettingsSheet::finish(const Config &config)
{
    UserDefaults::setValue(UserDefaults::micDevice, selected(models_->devicePopup));
    const bool saved = config.save();
    onSave(config, selected(appearance_->fontPopup));
    if (saved) {
        onClose();
        return;
    }
    // The choices hold for this run; the sheet closes once the student has read why they won't last.
    alert(u"设置没能写进文件（磁盘可能满了）：这次的改动在退出后不会保留。"_s, [this] { onClose(); });
}

bool SettingsSheet::ownKeyMode() const
{
    return ownKey_->ownSwitch->isChecked() || !Relay::available();
}

bool SettingsSheet::customModel() const
{
    return models_->modelPopup->currentIndex() == models_->modelPopup->count() - 1;
}

QString SettingsSheet::providerID() const
{
    return selected(ownKey_->providerPopup);
}

void SettingsSheet::alert(const QString &text, const std::function<void()> &then)
{
    auto *box = new QMessageBox(QMessageBox::Warning, u"设置"_s, text, QMessageBox::Ok, window_);
    box->setObjectName(u"alert"_s);
    box->setWindowModality(Qt::WindowModal);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(box, &QMessageBox::finished, window_, [then] { then(); });
    box->open();
}

void SettingsSheet::show()
{
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void SettingsSheet::hide()
{
    window_->hide();
}

SettingsWindow *SettingsSheet::window() const
{
    return window_;
}
