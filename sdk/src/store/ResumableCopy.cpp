#include "sdk/store/ResumableCopy.h"

#include "sdk/base/PrivateFiles.h"
#include "sdk/store/Sha256.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

class FileDescriptor
{
public:
    explicit FileDescriptor(int fd)
        : m_fd(fd)
    { }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    int get() const { return m_fd; }

private:
    int m_fd;
};

// Reads until the buffer is full or the file ends; -1 on failure.
qint64 readFully(int fd, char* buffer, qint64 size, qint64 offset)
{
    qint64 done = 0;
    while (done < size) {
        const ssize_t got = ::pread(fd, buffer + done, size_t(size - done), offset + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

bool writeFully(int fd, const char* buffer, qint64 size)
{
    while (size > 0) {
        const ssize_t put = ::write(fd, buffer, size_t(size));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return false;
        buffer += put;
        size -= put;
    }
    return true;
}

bool sameFile(const struct stat& a, const struct stat& b)
{
    return a.st_size == b.st_size && a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec
        && a.st_ino == b.st_ino;
}

} // namespace

ResumableCopy::ResumableCopy(const QString& source, const QString& partial, std::function<bool()> shouldStop,
                             std::function<void(qint64 bytes)> advanced, Durability durability)
    : m_source(source)
    , m_partial(partial)
    , m_shouldStop(std::move(shouldStop))
    , m_advanced(std::move(advanced))
    , m_durability(durability)
{ }

ResumableCopy::Outcome ResumableCopy::fail(const QString& path, int error, bool onSource)
{
    m_failure =
        QStringLiteral("\"%1\": %2").arg(QFileInfo(path).fileName(), QString::fromLocal8Bit(std::strerror(error)));
    m_failedOnSource = onSource;
    return Outcome::Failed;
}

// Copies from the offset to the end of the source: copy_file_range in steps
// of a few MiB where the file systems allow it, otherwise reads and writes
// of one chunk.
ResumableCopy::Outcome ResumableCopy::copyRest(int source, int partial, qint64* offset, char* buffer)
{
    bool kernelCopy = true;
    for (;;) {
        if (m_shouldStop())
            return Outcome::Stopped;
        ssize_t moved = -1;
        if (kernelCopy) {
            loff_t in = *offset;
            moved = ::copy_file_range(source, &in, partial, nullptr, size_t(kernelStep), 0);
            if (moved < 0 && errno == EINTR)
                continue;
            if (moved < 0 && (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP)) {
                kernelCopy = false;
                continue;
            }
            if (moved < 0)
                return fail(errno == ENOSPC || errno == EDQUOT || errno == EIO ? m_partial : m_source, errno,
                            errno != ENOSPC && errno != EDQUOT && errno != EIO);
        } else {
            const qint64 got = readFully(source, buffer, chunkSize, *offset);
            if (got < 0)
                return fail(m_source, errno, true);
            if (got > 0 && !writeFully(partial, buffer, got))
                return fail(m_partial, errno ? errno : ENOSPC, false);
            moved = ssize_t(got);
        }
        if (moved == 0)
            return Outcome::Done;
        // Writing back starts now, not at the final sync: the disk works
        // while the copy goes on.
        ::sync_file_range(partial, *offset, moved, SYNC_FILE_RANGE_WRITE);
        *offset += moved;
        m_advanced(moved);
    }
}

// The rest is copied by the kernel while another thread hashes the source
// from the page cache: hashing, not the disk, is the slower of the two, and
// both cores are put to work. A source that comes up short for the hasher
// has changed under the copy.
ResumableCopy::Outcome ResumableCopy::copyAndHashInParallel(int source, int partial, qint64 sourceSize, qint64* offset,
                                                            char* buffer, Sha256& hash)
{
    std::atomic_bool abandon{false};
    bool hashed = true;
    const qint64 hashFrom = *offset;
    std::thread hasher([&] {
        const std::unique_ptr<char[]> block(new char[hashBlockSize]);
        for (qint64 at = hashFrom; at < sourceSize && !abandon;) {
            const qint64 got = readFully(source, block.get(), std::min(hashBlockSize, sourceSize - at), at);
            if (got <= 0) {
                hashed = false;
                return;
            }
            hash.add(block.get(), got);
            at += got;
        }
    });
    const Outcome copied = copyRest(source, partial, offset, buffer);
    if (copied != Outcome::Done) {
        abandon = true;
        hasher.join();
        return copied;
    }
    // The sync runs while the hash may still be catching up.
    const bool synced = ::fsync(partial) == 0;
    const int syncError = errno;
    hasher.join();
    if (!synced)
        return fail(m_partial, syncError, false);
    m_sourceChanged = !hashed;
    return Outcome::Done;
}

// One pass of reads, each hashed and written at once: no second reading of
// the source and no thread of its own.
ResumableCopy::Outcome ResumableCopy::copyAndHashRest(int source, int partial, qint64* offset, char* buffer,
                                                      qint64 bufferSize, Sha256& hash)
{
    for (;;) {
        if (m_shouldStop())
            return Outcome::Stopped;
        const qint64 got = readFully(source, buffer, bufferSize, *offset);
        if (got < 0)
            return fail(m_source, errno, true);
        if (got == 0)
            return Outcome::Done;
        hash.add(buffer, got);
        if (!writeFully(partial, buffer, got))
            return fail(m_partial, errno ? errno : ENOSPC, false);
        *offset += got;
        m_advanced(got);
    }
}

ResumableCopy::Outcome ResumableCopy::run()
{
    // Without O_NONBLOCK, opening a named pipe would wait for a writer
    // forever; it changes nothing for a regular file.
    FileDescriptor source(::open(QFile::encodeName(m_source).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (source.get() < 0)
        return fail(m_source, errno, true);
    struct stat before;
    if (::fstat(source.get(), &before) != 0)
        return fail(m_source, errno, true);
    if (!S_ISREG(before.st_mode)) {
        m_failure = QStringLiteral("\"%1\": not a regular file or folder").arg(QFileInfo(m_source).fileName());
        m_failedOnSource = true;
        return Outcome::Failed;
    }
    ::posix_fadvise(source.get(), 0, 0, POSIX_FADV_SEQUENTIAL);

    FileDescriptor partial(::open(QFile::encodeName(m_partial).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (partial.get() < 0)
        return fail(m_partial, errno, false);
    PrivateFiles::restrict(m_partial, false);
    // Held while it is written, so that a sweep of leftovers, in this or
    // another process, leaves it alone.
    PrivateFiles::markInUse(partial.get());
    struct stat partialInfo;
    if (::fstat(partial.get(), &partialInfo) != 0)
        return fail(m_partial, errno, false);

    Sha256 hash;
    // A small file of a folder gets buffers of its own size, not a chunk's.
    const qint64 bufferSize =
        m_durability == Durability::Own ? chunkSize : std::clamp<qint64>(before.st_size + 1, 1, chunkSize);
    const std::unique_ptr<char[]> buffer(new char[size_t(bufferSize)]);
    qint64 offset = 0;

    // What an interrupted copy left counts only as far as it matches the
    // source, chunk by chunk; the rest is cut off and written again.
    const qint64 resumable = std::min<qint64>(partialInfo.st_size, before.st_size);
    const std::unique_ptr<char[]> kept(resumable > 0 ? new char[size_t(bufferSize)] : nullptr);
    while (offset < resumable) {
        if (m_shouldStop())
            return Outcome::Stopped;
        const qint64 length = std::min(bufferSize, resumable - offset);
        const qint64 fromSource = readFully(source.get(), buffer.get(), length, offset);
        const qint64 fromPartial = readFully(partial.get(), kept.get(), length, offset);
        if (fromSource < 0)
            return fail(m_source, errno, true);
        if (fromPartial < 0)
            return fail(m_partial, errno, false);
        if (fromSource != length || fromPartial != length || std::memcmp(buffer.get(), kept.get(), size_t(length)) != 0)
            break;
        hash.add(buffer.get(), length);
        offset += length;
        m_advanced(length);
    }
    if (::ftruncate(partial.get(), offset) != 0 || ::lseek(partial.get(), offset, SEEK_SET) != offset)
        return fail(m_partial, errno, false);

    const Outcome copied = m_durability == Durability::Own
        ? copyAndHashInParallel(source.get(), partial.get(), before.st_size, &offset, buffer.get(), hash)
        : copyAndHashRest(source.get(), partial.get(), &offset, buffer.get(), bufferSize, hash);
    if (copied != Outcome::Done)
        return copied;

    struct stat after;
    if (::fstat(source.get(), &after) != 0)
        return fail(m_source, errno, true);
    struct stat now;
    if (::stat(QFile::encodeName(m_source).constData(), &now) != 0 || !sameFile(before, after) || !sameFile(after, now)
        || offset != after.st_size || m_sourceChanged) {
        m_sourceChanged = true;
        m_failure = QFileInfo(m_source).fileName();
        return Outcome::Failed;
    }
    m_digest = hash.hexDigest();
    m_size = offset;
    return Outcome::Done;
}
