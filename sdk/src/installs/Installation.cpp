#include "sdk/installs/Installation.h"

#include "sdk/base/Clock.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/installs/Applications.h"
#include "sdk/installs/ArchiveUnpacker.h"
#include "sdk/installs/DesktopEntry.h"
#include "sdk/installs/RunningPrograms.h"
#include "sdk/store/SafeName.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 copyStep = 8 * 1024 * 1024;

bool noRoom()
{
    return errno == ENOSPC || errno == EDQUOT || errno == EFBIG;
}

QString reason()
{
    return noRoom() ? QStringLiteral("There is not enough room on the disk.")
                    : QString::fromLocal8Bit(std::strerror(errno));
}

QString stem(const QString& name)
{
    const QString base = QFileInfo(name).completeBaseName();
    return base.isEmpty() ? name : base;
}

} // namespace

Installation::Installation(Request request, std::function<bool()> shouldStop, std::function<void(double)> advanced)
    : m_request(std::move(request))
    , m_shouldStop(std::move(shouldStop))
    , m_advanced(std::move(advanced))
{ }

bool Installation::fail(const QString& failure)
{
    if (m_failure.isEmpty())
        m_failure = failure;
    return false;
}

bool Installation::isAppImage(const QString& path, const QString& fileName)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(11);
    if (!head.startsWith("\x7f"
                         "ELF"))
        return false;
    // Type 1 and 2 AppImages carry "AI" and their type after the ELF ident;
    // older ones are known by their name alone.
    return head.mid(8, 2) == "AI" || fileName.endsWith(QLatin1String(".AppImage"), Qt::CaseInsensitive);
}

bool Installation::run()
{
    const QString folder = Applications::folderOf(m_request.installerId);
    if (folder.isEmpty())
        return fail(QStringLiteral("The installer's name can't be a folder."));
    if (!PrivateFiles::makeFolder(Applications::root()))
        return fail(QStringLiteral("\"%1\" can't be made: %2").arg(Applications::root(), reason()));
    const QString staging =
        Applications::root() + QStringLiteral("/.%1.staging-%2").arg(m_request.installerId, Clock::newIdentifier());
    if (::mkdir(QFile::encodeName(staging).constData(), 0700) != 0)
        return fail(QStringLiteral("\"%1\" can't be made: %2").arg(staging, reason()));
    const QString entry = Applications::desktopEntryOf(m_request.installerId);
    bool placed = false;
    if (stage(staging)) {
        DesktopEntry desktop;
        desktop.installerId = m_request.installerId;
        desktop.name = m_request.name;
        desktop.version = m_request.version;
        desktop.launcher = folder + QLatin1Char('/') + m_launcher;
        QString iconName;
        if (writeIcon(staging, &iconName) && !iconName.isEmpty())
            desktop.icon = folder + QLatin1Char('/') + iconName;
        const QString entryPartial = desktop.writeBeside(entry);
        if (entryPartial.isEmpty())
            fail(QStringLiteral("The menu entry can't be written: %1").arg(reason()));
        else if (!(placed = putInPlace(staging, folder, entryPartial)))
            ::unlink(QFile::encodeName(entryPartial).constData());
    }
    // After a swap the staging folder holds the previous version.
    QDir(staging).removeRecursively();
    if (placed) {
        m_launcher = folder + QLatin1Char('/') + m_launcher;
        DesktopEntry::refreshMenus();
    }
    return placed;
}

bool Installation::stage(const QString& staging)
{
    if (isAppImage(m_request.package, m_request.fileName))
        return copyAppImage(staging);
    return unpackArchive(staging);
}

bool Installation::copyAppImage(const QString& staging)
{
    m_launcher = SafeName::component(stem(m_request.name)) + QStringLiteral(".AppImage");
    const int source = ::open(QFile::encodeName(m_request.package).constData(), O_RDONLY | O_CLOEXEC);
    const int target = ::open(QFile::encodeName(staging + QLatin1Char('/') + m_launcher).constData(),
                              O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0700);
    struct stat info = {};
    bool copied = source >= 0 && target >= 0 && ::fstat(source, &info) == 0;
    if (!copied)
        fail(QStringLiteral("The package can't be copied: %1").arg(reason()));
    for (qint64 done = 0; copied && done < info.st_size;) {
        if (m_shouldStop()) {
            m_stopped = true;
            copied = false;
            break;
        }
        const ssize_t moved = ::copy_file_range(source, nullptr, target, nullptr, size_t(copyStep), 0);
        if (moved > 0) {
            done += moved;
            m_advanced(double(done) / double(info.st_size));
        } else if (moved == 0 || errno != EINTR) {
            copied = fail(moved == 0 ? QStringLiteral("The package became shorter while it was installed.")
                                     : QStringLiteral("The package can't be copied: %1").arg(reason()));
        }
    }
    if (target >= 0 && ::close(target) != 0 && copied)
        copied = fail(QStringLiteral("The package can't be copied: %1").arg(reason()));
    if (source >= 0)
        ::close(source);
    return copied;
}

bool Installation::unpackArchive(const QString& staging)
{
    const qint64 size = QFileInfo(m_request.package).size();
    ArchiveUnpacker unpacker(m_request.package, staging, m_shouldStop, [&](qint64 read) {
        if (size > 0)
            m_advanced(std::min(1.0, double(read) / double(size)));
    });
    switch (unpacker.run()) {
    case ArchiveUnpacker::Outcome::Stopped:
        m_stopped = true;
        return false;
    case ArchiveUnpacker::Outcome::Failed:
        return fail(unpacker.failure());
    case ArchiveUnpacker::Outcome::Done:
        break;
    }
    m_launcher = chooseLauncher(unpacker.executables());
    return !m_launcher.isEmpty() || fail(QStringLiteral("The package holds no program to start."));
}

QString Installation::chooseLauncher(const QStringList& executables) const
{
    // The program named like the application, else an AppDir's AppRun, else
    // the one nearest the top.
    const QString wanted = stem(m_request.name).toLower().replace(QLatin1Char(' '), QLatin1Char('-'));
    const QString* nearest = nullptr;
    const QString* appRun = nullptr;
    for (const QString& path : executables) {
        if (path.contains(QLatin1Char('\n')))
            continue;
        const QString file = QFileInfo(path).fileName();
        if (file.toLower() == wanted)
            return path;
        if (file == QLatin1String("AppRun")
            && (!appRun || path.count(QLatin1Char('/')) < appRun->count(QLatin1Char('/'))))
            appRun = &path;
        if (!nearest || path.count(QLatin1Char('/')) < nearest->count(QLatin1Char('/')))
            nearest = &path;
    }
    return appRun ? *appRun : nearest ? *nearest : QString();
}

bool Installation::writeIcon(const QString& staging, QString* iconName)
{
    const QImage icon = QImage::fromData(m_request.icon);
    if (icon.isNull())
        return true;
    *iconName = QStringLiteral(".veluria-icon.png");
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    icon.save(&buffer, "PNG");
    const int fd = PrivateFiles::createFile(staging + QLatin1Char('/') + *iconName, true);
    const bool written = fd >= 0 && ::write(fd, png.constData(), size_t(png.size())) == png.size();
    if (fd >= 0)
        ::close(fd);
    if (!written)
        iconName->clear();
    return written;
}

bool Installation::putInPlace(const QString& staging, const QString& folder, const QString& entryPartial)
{
    if (m_shouldStop()) {
        m_stopped = true;
        return false;
    }
    if (const qint64 pid = RunningPrograms::runningFrom(folder))
        return fail(
            QStringLiteral("%1 is running (process %2). Quit it, then try again.").arg(stem(m_request.name)).arg(pid));
    const QByteArray from = QFile::encodeName(staging);
    const QByteArray to = QFile::encodeName(folder);
    PrivateFiles::syncFolder(staging);
    // The previous version and the new one change places in one step, so
    // that the application's folder is never missing or half there.
    bool swapped = ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE) == 0
        || (errno == ENOENT && ::rename(from.constData(), to.constData()) == 0);
    if (!swapped && errno == EINVAL) {
        // A file system without exchange: the previous version steps aside
        // under the staging name's twin and comes back if the new one can't
        // take its place.
        const QByteArray aside = from + ".previous";
        if (::rename(to.constData(), aside.constData()) == 0) {
            swapped = ::rename(from.constData(), to.constData()) == 0;
            ::rename(aside.constData(), swapped ? from.constData() : to.constData());
        }
    }
    if (!swapped)
        return fail(QStringLiteral("\"%1\" can't be replaced: %2").arg(folder, reason()));
    PrivateFiles::syncFolder(Applications::root());
    const QString entry = Applications::desktopEntryOf(m_request.installerId);
    ::rename(QFile::encodeName(entryPartial).constData(), QFile::encodeName(entry).constData());
    return true;
}

bool Installation::remove(const QString& installerId)
{
    const QString folder = Applications::folderOf(installerId);
    if (folder.isEmpty())
        return false;
    QFile::remove(Applications::desktopEntryOf(installerId));
    const bool removed = !QFileInfo::exists(folder) || QDir(folder).removeRecursively();
    DesktopEntry::refreshMenus();
    return removed;
}
