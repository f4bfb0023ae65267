#include "sdk/installs/FolderArchive.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QScopeGuard>

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 chunkSize = 1024 * 1024;

// Where the stream stands: the bytes before the offset are counted and
// dropped, the rest go to the sink.
struct Position
{
    const FolderArchive::Sink& sink;
    qint64 skip = 0;
    qint64 at = 0;
    bool refused = false;
    bool closing = false;
};

la_ssize_t pass(archive*, void* client, const void* buffer, size_t length)
{
    auto* position = static_cast<Position*>(client);
    // After a failure the archive's end is written when it is freed; it goes nowhere.
    if (position->closing)
        return la_ssize_t(length);
    const qint64 dropped = std::clamp<qint64>(position->skip - position->at, 0, qint64(length));
    position->at += qint64(length);
    if (dropped < qint64(length)
        && !position->sink(static_cast<const char*>(buffer) + dropped, qint64(length) - dropped)) {
        position->refused = true;
        return -1;
    }
    return la_ssize_t(length);
}

} // namespace

FolderArchive::FolderArchive(const QString& folder, std::function<bool()> shouldStop)
    : m_folder(folder)
    , m_shouldStop(std::move(shouldStop))
{ }

QStringList FolderArchive::files() const
{
    QStringList found;
    const QDir root(m_folder);
    QDirIterator files(m_folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext())
        found.append(root.relativeFilePath(files.next()));
    std::sort(found.begin(), found.end());
    return found;
}

FolderArchive::Outcome FolderArchive::write(qint64 offset, const Sink& sink)
{
    Position position{sink, offset};
    archive* writer = archive_write_new();
    const auto release = qScopeGuard([&] {
        position.closing = true;
        archive_write_free(writer);
    });
    archive_write_set_format_pax_restricted(writer);
    // Unblocked: the stream ends with the archive's end, not padded to a block.
    archive_write_set_bytes_per_block(writer, 0);
    if (archive_write_open2(writer, &position, nullptr, pass, nullptr, nullptr) != ARCHIVE_OK) {
        m_failure = QString::fromUtf8(archive_error_string(writer));
        return Outcome::Unreadable;
    }
    // The folder itself comes first, so that even an empty one is a folder
    // with an entry to unpack.
    archive_entry* folder = archive_entry_new();
    archive_entry_set_pathname(folder, "./");
    archive_entry_set_filetype(folder, AE_IFDIR);
    archive_entry_set_perm(folder, 0755);
    archive_entry_set_mtime(folder, 0, 0);
    const int header = archive_write_header(writer, folder);
    archive_entry_free(folder);
    if (header < ARCHIVE_WARN) {
        m_failure = QString::fromUtf8(archive_error_string(writer));
        return position.refused ? Outcome::Refused : Outcome::Unreadable;
    }
    for (const QString& path : files())
        if (const Outcome outcome = writeFile(writer, path, position.refused); outcome != Outcome::Done)
            return outcome;
    if (archive_write_close(writer) != ARCHIVE_OK) {
        m_failure = QString::fromUtf8(archive_error_string(writer));
        return position.refused ? Outcome::Refused : Outcome::Unreadable;
    }
    return Outcome::Done;
}

FolderArchive::Outcome FolderArchive::writeFile(archive* writer, const QString& path, const bool& refused)
{
    const auto unreadable = [&](const QString& why) {
        m_failure = QStringLiteral("\"%1\": %2").arg(path, why);
        return Outcome::Unreadable;
    };
    const int fd =
        ::open(QFile::encodeName(m_folder + QLatin1Char('/') + path).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0)
        return unreadable(QString::fromLocal8Bit(std::strerror(errno)));
    const auto closeFile = qScopeGuard([fd] { ::close(fd); });
    struct stat status;
    if (::fstat(fd, &status) != 0)
        return unreadable(QString::fromLocal8Bit(std::strerror(errno)));

    archive_entry* entry = archive_entry_new();
    const auto freeEntry = qScopeGuard([entry] { archive_entry_free(entry); });
    archive_entry_set_pathname_utf8(entry, path.toUtf8().constData());
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_entry_set_perm(entry, 0644);
    archive_entry_set_size(entry, status.st_size);
    archive_entry_set_mtime(entry, 0, 0);
    if (archive_write_header(writer, entry) < ARCHIVE_WARN)
        return refused ? Outcome::Refused : unreadable(QString::fromUtf8(archive_error_string(writer)));

    QByteArray buffer(int(std::min<qint64>(chunkSize, std::max<qint64>(status.st_size, 1))), Qt::Uninitialized);
    for (qint64 at = 0; at < status.st_size;) {
        if (m_shouldStop())
            return Outcome::Stopped;
        const ssize_t got =
            ::pread(fd, buffer.data(), size_t(std::min<qint64>(buffer.size(), status.st_size - at)), at);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return unreadable(QString::fromLocal8Bit(std::strerror(errno)));
        if (got == 0) {
            m_failure = path;
            return Outcome::Changed;
        }
        if (archive_write_data(writer, buffer.constData(), size_t(got)) < 0)
            return refused ? Outcome::Refused : unreadable(QString::fromUtf8(archive_error_string(writer)));
        at += got;
    }
    return Outcome::Done;
}
