#include "platform/VLRRunningApplication.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <unistd.h>

VLRRunningApplication::VLRRunningApplication(pid_t processIdentifier)
    : m_processIdentifier(processIdentifier)
{ }

QList<VLRRunningApplication> VLRRunningApplication::runningApplicationsWithExecutableName(const QString& name)
{
    QList<VLRRunningApplication> found;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    const uid_t me = getuid();
    for (const QString& entry : entries) {
        bool isNumber = false;
        const pid_t pid = entry.toInt(&isNumber);
        if (!isNumber || pid == getpid())
            continue;
        const QFileInfo process(QStringLiteral("/proc/") + entry);
        if (process.ownerId() != me)
            continue;
        // The link to the executable is readable for our own processes; the
        // command line's first word covers programs started through a script.
        QString executable = QFileInfo(process.filePath() + QStringLiteral("/exe")).symLinkTarget();
        if (QFileInfo(executable).fileName() != name) {
            QFile cmdline(process.filePath() + QStringLiteral("/cmdline"));
            if (!cmdline.open(QIODevice::ReadOnly))
                continue;
            executable = QString::fromLocal8Bit(cmdline.readAll().split('\0').value(0));
            if (QFileInfo(executable).fileName() != name)
                continue;
        }
        found.append(VLRRunningApplication(pid));
    }
    return found;
}

bool VLRRunningApplication::terminate() const
{
    return ::kill(m_processIdentifier, SIGTERM) == 0;
}
