#include "sdk/installs/RunningPrograms.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

qint64 RunningPrograms::runningFrom(const QString& folder)
{
    const QString prefix = QFileInfo(folder).canonicalFilePath() + QLatin1Char('/');
    if (prefix.size() == 1)
        return 0;
    const qint64 self = ::getpid();
    const QStringList pids = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : pids) {
        bool isPid = false;
        const qint64 pid = name.toLongLong(&isPid);
        if (!isPid || pid == self)
            continue;
        const QString base = QStringLiteral("/proc/") + name;
        if (QFileInfo(base + QStringLiteral("/exe")).symLinkTarget().startsWith(prefix))
            return pid;
        QFile cmdline(base + QStringLiteral("/cmdline"));
        if (!cmdline.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& argument : cmdline.readAll().split('\0'))
            if (!argument.isEmpty() && QFile::decodeName(argument).startsWith(prefix))
                return pid;
    }
    return 0;
}
