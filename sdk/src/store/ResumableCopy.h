#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class Sha256;

// Copies one file into a partial file in chunks, hashing what it copies. A
// partial file left by an earlier, interrupted copy is kept as far as it
// agrees with the source, and the copy goes on from there. When the copy is
// done, the partial file is complete, ready to be renamed into place by the
// caller once it is on disk.
class ResumableCopy
{
public:
    // Own: a file that stands alone; the kernel copies while a second thread
    // hashes, and the partial file is synced before the copy counts as done.
    // Deferred: one file of many that a pool copies at once; it is hashed as
    // it is copied, on the calling thread, and left to the caller's one sync
    // of the store for all of them.
    enum class Durability { Own, Deferred };
    static constexpr qint64 chunkSize = 256 * 1024;
    static constexpr qint64 kernelStep = 8 * 1024 * 1024;
    static constexpr qint64 hashBlockSize = 1024 * 1024;

    enum class Outcome { Done, Stopped, Failed };

    // shouldStop is asked between chunks; advanced hears of every chunk's
    // bytes, the verified ones of a resumed copy included.
    ResumableCopy(const QString& source, const QString& partial, std::function<bool()> shouldStop,
                  std::function<void(qint64 bytes)> advanced, Durability durability = Durability::Own);

    Outcome run();

    // After Done: the content's SHA-256 and size.
    const QByteArray& digest() const { return m_digest; }
    qint64 size() const { return m_size; }
    // After Failed: what went wrong, for the user; sourceChanged() tells a
    // source that changed under the copy from other failures.
    const QString& failure() const { return m_failure; }
    bool sourceChanged() const { return m_sourceChanged; }
    bool failedOnSource() const { return m_failedOnSource; }

private:
    Outcome copyRest(int source, int partial, qint64* offset, char* buffer);
    Outcome copyAndHashRest(int source, int partial, qint64* offset, char* buffer, qint64 bufferSize, Sha256& hash);
    Outcome copyAndHashInParallel(int source, int partial, qint64 sourceSize, qint64* offset, char* buffer,
                                  Sha256& hash);
    Outcome fail(const QString& path, int error, bool onSource);

    QString m_source;
    QString m_partial;
    std::function<bool()> m_shouldStop;
    std::function<void(qint64)> m_advanced;
    Durability m_durability;
    QByteArray m_digest;
    qint64 m_size = 0;
    QString m_failure;
    bool m_sourceChanged = false;
    bool m_failedOnSource = false;
};
