#pragma once

// The main panel: the window that stands for the application. Closing it ends the application.
// Main thread only.

#include <QMainWindow>

class QLabel;
class QWebEngineView;

class Panel final : public QMainWindow
{
    Q_OBJECT

public:
    explicit Panel(QWidget *parent = nullptr);

    void setStatus(const QString &text);
    QString status() const;

    // Called once the feed page has loaded (true) or failed to load (false).
    std::function<void(bool)> onFeedLoaded = [](bool) {};

private:
    QLabel *status_;
    QWebEngineView *feed_;
};
