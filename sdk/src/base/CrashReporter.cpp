#include "sdk/base/CrashReporter.h"

#include "sdk/base/PrivateFiles.h"

#include <QFile>

#include <array>
#include <csignal>
#include <cstring>
#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array fatalSignals{SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};

struct CrashState
{
    int fd = -1;
    std::array<struct sigaction, fatalSignals.size()> previous{};
};

CrashState& state()
{
    static CrashState s;
    return s;
}

void writeText(int fd, const char* text)
{
    const ssize_t ignored = ::write(fd, text, std::strlen(text));
    (void)ignored;
}

// Only async-signal-safe calls here: the heap and Qt may be what broke.
void onFatalSignal(int signal)
{
    const int fd = state().fd;
    if (fd >= 0) {
        char line[64];
        const char prefix[] = "Veluria crashed: signal ";
        std::memcpy(line, prefix, sizeof prefix - 1);
        size_t length = sizeof prefix - 1;
        char digits[12];
        int count = 0;
        for (unsigned value = unsigned(signal); value > 0 || count == 0; value /= 10)
            digits[count++] = char('0' + value % 10);
        while (count > 0)
            line[length++] = digits[--count];
        line[length++] = '\n';
        line[length] = '\0';
        writeText(fd, line);
        void* frames[64];
        backtrace_symbols_fd(frames, backtrace(frames, 64), fd);
        writeText(fd, "\n");
    }
    ::raise(signal);
}

} // namespace

void CrashReporter::install(const QString& folder)
{
    CrashState& s = state();
    if (s.fd >= 0 || folder.isEmpty() || !PrivateFiles::makeFolder(folder))
        return;
    const QByteArray path = QFile::encodeName(folder + QLatin1Char('/') + logFileName());
    s.fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (s.fd < 0)
        return;
    // backtrace() loads its unwinder on first use; do that now, not in the handler.
    void* warmUp[1];
    backtrace(warmUp, 1);
    struct sigaction action
    { };
    action.sa_handler = onFatalSignal;
    action.sa_flags = SA_RESETHAND;
    sigemptyset(&action.sa_mask);
    for (size_t i = 0; i < fatalSignals.size(); ++i)
        sigaction(fatalSignals[i], &action, &s.previous[i]);
}

void CrashReporter::uninstall()
{
    CrashState& s = state();
    if (s.fd < 0)
        return;
    for (size_t i = 0; i < fatalSignals.size(); ++i)
        sigaction(fatalSignals[i], &s.previous[i], nullptr);
    ::close(s.fd);
    s.fd = -1;
}
