#pragma once

// The settings sheet: edits a copy of the settings record on a main page and five sub-pages, and
// applies nothing until "完成". Then it checks the choices, stores keys in the keychain, saves the
// record and hands it to the coordinator with the chosen subtitle font; a check that fails says
// why and leaves the sheet open, with whatever was stored before it kept. Rows that don't fit the
// choices made so far hide. The chosen sound input goes to the user default "mic.device".
//
// Main thread only. The sheet owns its window unless a parent window given at construction goes
// first; beside a parent the window is modal on it.

#include "app/views/SettingsView.h"

#include <QPointer>

class AppearancePage;
class CloudPage;
class MainPage;
class ModelsPage;
class OwnKeyPage;
class QWidget;
class SettingsWindow;
class StoragePage;

class SettingsSheet final : public SettingsView
{
public:
    explicit SettingsSheet(QWidget *parent = nullptr);
    ~SettingsSheet() override;
    SettingsSheet(const SettingsSheet &) = delete;
    SettingsSheet &operator=(const SettingsSheet &) = delete;
    SettingsSheet(SettingsSheet &&) = delete;
    SettingsSheet &operator=(SettingsSheet &&) = delete;

    void load(const Config &config) override;
    void show() override;
    void hide() override;

    SettingsWindow *window() const;

private:
    void connectPages();
    void loadChoices();
    void loadDevices();
    void refreshProvider(const QString &selectModel);
    void providerChanged();
    void sourceChanged();
    void refreshValues();
    void saveClicked();
    // Fills the record from the controls and stores keys; the failure, worded, stops the save.
    std::optional<QString> collect(Config &config);
    // In own-key mode: the model is named and the provider's key is stored or typed.
    std::optional<QString> storeKeys(bool ownKey, const QString &model, Config &config);
    void finish(const Config &config);
    bool ownKeyMode() const;
    bool customModel() const;
    QString providerID() const;
    // A window-modal message on the sheet; `then` runs once it is answered.
    void alert(const QString &text, const std::function<void()> &then = [] {});

    Config config_;
    int barSizeAtLoad_ = 0;
    QPointer<SettingsWindow> window_;
    MainPage *main_;
    OwnKeyPage *ownKey_;
    ModelsPage *models_;
    AppearancePage *appearance_;
    StoragePage *storage_;
    CloudPage *cloud_;
};
