#include "platform/QuitSignals.h"

#include <QSocketNotifier>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

// The handler may only write to a pipe; the main thread's event loop reads the other end.
int pipeEnds[2] = {-1, -1};

void handle(int signal)
{
    const char number = char(signal);
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &number, 1);
}

void install(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}

} // namespace

QuitSignals::QuitSignals(std::function<void(int signal)> onSignal)
    : onSignal_(std::move(onSignal))
{
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;   // without the pipe the default handlers stay: the signals still end the process
    notifier_ = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { readSignal(); });
    install(handle);
}

QuitSignals::~QuitSignals()
{
    if (!notifier_)
        return;
    install(SIG_DFL);
    notifier_.reset();
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds[0] = pipeEnds[1] = -1;
}

void QuitSignals::readSignal()
{
    char number = 0;
    while (::read(pipeEnds[0], &number, 1) == 1)
        onSignal_(int(number));
}
