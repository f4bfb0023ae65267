#include "installer/ClientRestart.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QList>
#include <QProcess>
#include <QThread>

#include <csignal>
#include <unistd.h>

namespace {

QList<pid_t> clientsUnder(const QString& root)
{
    QList<pid_t> found;
    const QString prefix = root + QLatin1Char('/');
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& entry : entries) {
        bool isNumber = false;
        const pid_t pid = entry.toInt(&isNumber);
        if (!isNumber || pid == getpid())
            continue;
        // The link names the program as it was when it started, also after
        // "current" has moved on.
        const QString program = QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid)).symLinkTarget();
        if (program.startsWith(prefix) && QFileInfo(program).fileName() == QLatin1String("veluria"))
            found.append(pid);
    }
    return found;
}

} // namespace

void ClientRestart::restart(const QString& bundleRoot)
{
    const QList<pid_t> running = clientsUnder(bundleRoot);
    for (pid_t pid : running)
        ::kill(pid, SIGTERM);
    // The new client can only take over the desktop session's name once the
    // old one has let it go.
    QDeadlineTimer deadline(GraceMilliseconds);
    while (!running.isEmpty() && !clientsUnder(bundleRoot).isEmpty() && !deadline.hasExpired())
        QThread::msleep(100);
    QProcess::startDetached(bundleRoot + QStringLiteral("/current/bin/veluria"), {});
}
