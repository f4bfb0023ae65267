#include "shell/TerminationSignalWatcher.h"

#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int signalPipe[2] = {-1, -1};

void writeSignal(int signalNumber)
{
    const unsigned char byte = static_cast<unsigned char>(signalNumber);
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], &byte, 1);
}

} // namespace

TerminationSignalWatcher::TerminationSignalWatcher(QObject* parent)
    : QObject(parent)
{
    if (::pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        unsigned char byte = 0;
        while (::read(signalPipe[0], &byte, 1) == 1)
            emit terminationRequested(byte);
    });
    struct sigaction action = {};
    action.sa_handler = writeSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signalNumber : {SIGTERM, SIGINT, SIGHUP})
        sigaction(signalNumber, &action, nullptr);
}

TerminationSignalWatcher::~TerminationSignalWatcher()
{
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    for (int signalNumber : {SIGTERM, SIGINT, SIGHUP})
        sigaction(signalNumber, &action, nullptr);
    if (signalPipe[0] >= 0) {
        ::close(signalPipe[0]);
        ::close(signalPipe[1]);
        signalPipe[0] = signalPipe[1] = -1;
    }
}
