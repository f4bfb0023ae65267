#include "sdk/installs/ArchiveUnpacker.h"

#include <QFile>

#include <archive.h>
#include <archive_entry.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr size_t readBlockSize = 1024 * 1024;

// An entry's name as parts; empty when it is absolute or climbs with "..".
QStringList partsOf(const QString& name)
{
    if (name.startsWith(QLatin1Char('/')))
        return {};
    QStringList parts;
    for (const QString& part : name.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (part == QLatin1String(".."))
            return {};
        if (part != QLatin1String("."))
            parts.append(part);
    }
    return parts;
}

// Whether a link's target, read from the folder of the link at the given
// depth, stays inside the root.
bool linkStaysInside(const QString& target, qsizetype depth)
{
    if (target.isEmpty() || target.startsWith(QLatin1Char('/')))
        return false;
    for (const QString& part : target.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (part == QLatin1String(".."))
            --depth;
        else if (part != QLatin1String("."))
            ++depth;
        if (depth < 0)
            return false;
    }
    return true;
}

} // namespace

ArchiveUnpacker::ArchiveUnpacker(const QString& archive, const QString& folder, std::function<bool()> shouldStop,
                                 std::function<void(qint64)> advanced)
    : m_archive(archive)
    , m_folder(folder)
    , m_shouldStop(std::move(shouldStop))
    , m_advanced(std::move(advanced))
{ }

bool ArchiveUnpacker::fail(const QString& failure)
{
    if (m_failure.isEmpty())
        m_failure = failure;
    return false;
}

bool ArchiveUnpacker::failErrno(const QString& name)
{
    if (m_failure.isEmpty())
        m_failedOnDisk = true;
    if (errno == ENOSPC || errno == EDQUOT || errno == EFBIG)
        return fail(QStringLiteral("There is not enough room on the disk."));
    return fail(
        QStringLiteral("\"%1\" could not be written: %2").arg(name, QString::fromLocal8Bit(std::strerror(errno))));
}

ArchiveUnpacker::Outcome ArchiveUnpacker::run()
{
    const int root = ::open(QFile::encodeName(m_folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    if (root < 0) {
        failErrno(m_folder);
        return Outcome::Failed;
    }
    archive* reader = archive_read_new();
    archive_read_support_filter_all(reader);
    archive_read_support_format_tar(reader);
    archive_read_support_format_gnutar(reader);
    archive_read_support_format_zip(reader);
    Outcome outcome = Outcome::Failed;
    if (archive_read_open_filename(reader, QFile::encodeName(m_archive).constData(), readBlockSize) != ARCHIVE_OK)
        fail(QStringLiteral("The package is damaged or is not an archive that can be installed."));
    else
        outcome = unpack(reader, root);
    archive_read_free(reader);
    ::close(root);
    return outcome;
}

ArchiveUnpacker::Outcome ArchiveUnpacker::unpack(archive* reader, int root)
{
    archive_entry* entry = nullptr;
    int entries = 0;
    for (;;) {
        const int status = archive_read_next_header(reader, &entry);
        if (status == ARCHIVE_EOF)
            break;
        if (status < ARCHIVE_WARN) {
            fail(QStringLiteral("The package is damaged: %1").arg(QString::fromUtf8(archive_error_string(reader))));
            return Outcome::Failed;
        }
        if (m_shouldStop()) {
            m_stopped = true;
            return Outcome::Stopped;
        }
        if (!writeEntry(reader, entry, root))
            return m_stopped ? Outcome::Stopped : Outcome::Failed;
        ++entries;
        m_advanced(archive_filter_bytes(reader, -1));
    }
    if (entries == 0) {
        fail(QStringLiteral("The package is damaged or empty."));
        return Outcome::Failed;
    }
    return Outcome::Done;
}

int ArchiveUnpacker::openParent(int root, const QStringList& parts)
{
    int folder = ::dup(root);
    for (qsizetype i = 0; i + 1 < parts.size() && folder >= 0; ++i) {
        const QByteArray part = QFile::encodeName(parts.at(i));
        if (::mkdirat(folder, part.constData(), 0700) != 0 && errno != EEXIST) {
            failErrno(parts.at(i));
            ::close(folder);
            return -1;
        }
        // O_NOFOLLOW: a path through a link that an earlier entry made would
        // lead out of the folder.
        const int next = ::openat(folder, part.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
        ::close(folder);
        folder = next;
    }
    if (folder < 0)
        fail(QStringLiteral("The package's entry \"%1\" would land outside its folder.")
                 .arg(parts.join(QLatin1Char('/'))));
    return folder;
}

bool ArchiveUnpacker::writeEntry(archive* reader, archive_entry* entry, int root)
{
    const QString name = QString::fromUtf8(archive_entry_pathname_utf8(entry) ? archive_entry_pathname_utf8(entry)
                                                                              : archive_entry_pathname(entry));
    const QStringList parts = partsOf(name);
    const auto escapes = [&] {
        return fail(QStringLiteral("The package's entry \"%1\" would land outside its folder.").arg(name));
    };
    if (parts.isEmpty())
        return name.startsWith(QLatin1Char('/')) || name.contains(QLatin1String("..")) ? escapes() : true;
    const int parent = openParent(root, parts);
    if (parent < 0)
        return false;
    const QByteArray last = QFile::encodeName(parts.last());
    const mode_t type = archive_entry_filetype(entry);
    bool written = true;
    if (const char* hardlink = archive_entry_hardlink(entry)) {
        const QStringList source = partsOf(QString::fromUtf8(hardlink));
        const int sourceParent = source.isEmpty() ? -1 : openParent(root, source);
        written = sourceParent >= 0
            ? ::linkat(sourceParent, QFile::encodeName(source.last()).constData(), parent, last.constData(), 0) == 0
                || failErrno(name)
            : escapes();
        if (sourceParent >= 0)
            ::close(sourceParent);
    } else if (type == AE_IFDIR) {
        written = ::mkdirat(parent, last.constData(), 0700) == 0 || errno == EEXIST || failErrno(name);
    } else if (type == AE_IFLNK) {
        const QString target = QString::fromUtf8(archive_entry_symlink(entry));
        written = linkStaysInside(target, parts.size() - 1)
            ? ::symlinkat(QFile::encodeName(target).constData(), parent, last.constData()) == 0 || failErrno(name)
            : escapes();
    } else if (type == AE_IFREG) {
        const bool executable = (archive_entry_perm(entry) & 0111) != 0;
        const int fd = ::openat(parent, last.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                executable ? 0700 : 0600);
        written = fd >= 0 || failErrno(name);
        const void* block = nullptr;
        size_t size = 0;
        la_int64_t offset = 0;
        la_int64_t end = 0;
        while (written) {
            const int status = archive_read_data_block(reader, &block, &size, &offset);
            if (status == ARCHIVE_EOF)
                break;
            if (status < ARCHIVE_WARN) {
                written = fail(
                    QStringLiteral("The package is damaged: %1").arg(QString::fromUtf8(archive_error_string(reader))));
                break;
            }
            if (m_shouldStop()) {
                m_stopped = true;
                written = false;
                break;
            }
            for (size_t done = 0; done < size && written;) {
                const ssize_t wrote =
                    ::pwrite(fd, static_cast<const char*>(block) + done, size - done, offset + la_int64_t(done));
                if (wrote > 0)
                    done += size_t(wrote);
                else if (wrote < 0 && errno != EINTR)
                    written = failErrno(name);
            }
            end = offset + la_int64_t(size);
        }
        // Sparse files end in a hole that no block wrote.
        if (written && end < archive_entry_size(entry) && ::ftruncate(fd, archive_entry_size(entry)) != 0)
            written = failErrno(name);
        if (fd >= 0 && ::close(fd) != 0 && written)
            written = failErrno(name);
        if (written && executable)
            m_executables.append(parts.join(QLatin1Char('/')));
    }
    // Devices, sockets and fifos have no place in an application: skipped.
    ::close(parent);
    return written;
}
