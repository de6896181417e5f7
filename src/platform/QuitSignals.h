#pragma once

// Turns SIGTERM and SIGINT into a call on the main thread, so that the end of the desktop
// session, `kill` or Ctrl+C in a terminal quit the application the ordinary way, and a class
// that is running is finished and kept like at any other quit.
//
// At most one instance, made and destroyed on the main thread; while it lives it owns the two
// signals' handlers, and its destructor gives the default ones back.

#include <functional>
#include <memory>

class QSocketNotifier;

class QuitSignals final
{
public:
    explicit QuitSignals(std::function<void(int signal)> onSignal);
    ~QuitSignals();
    QuitSignals(const QuitSignals &) = delete;
    QuitSignals &operator=(const QuitSignals &) = delete;
    QuitSignals(QuitSignals &&) = delete;
    QuitSignals &operator=(QuitSignals &&) = delete;

private:
    void readSignal();

    std::function<void(int)> onSignal_;
    std::unique_ptr<QSocketNotifier> notifier_;
};
