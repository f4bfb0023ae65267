#pragma once

#include <QSet>
#include <QString>

#include <functional>

// Unpacks a self-contained archive (tar, compressed or not, or zip; read by
// libarchive) into an empty folder. Every name must stay inside the
// folder: an absolute name, a ".." part, a link pointing outside or a path
// through a link ends the unpacking with a failure, as does any write that
// fails (a full disk). Files are private (0600, 0700 when executable),
// folders 0700. On failure or stop the folder holds a partial result that
// the caller throws away.
class ArchiveUnpacker
{
public:
    enum class Outcome { Done, Stopped, Failed };

    // shouldStop is asked between blocks; advanced hears of the archive
    // bytes read so far.
    ArchiveUnpacker(const QString& archive, const QString& folder, std::function<bool()> shouldStop,
                    std::function<void(qint64 bytesRead)> advanced);

    Outcome run();

    // After Failed: what went wrong, for the user, and whether it was the
    // disk (a write refused) rather than the archive.
    const QString& failure() const { return m_failure; }
    bool failedOnDisk() const { return m_failedOnDisk; }
    // After Done: the regular files that are executable, relative to the
    // folder.
    const QStringList& executables() const { return m_executables; }

private:
    Outcome unpack(struct archive* reader, int root);
    bool fail(const QString& failure);
    bool failErrno(const QString& name);
    // Opens the folder that holds the entry's last part, making missing
    // folders on the way; -1 (failure set) when the path leaves the root.
    int openParent(int root, const QStringList& parts);
    bool writeEntry(struct archive* reader, struct archive_entry* entry, int root);

    QString m_archive;
    QString m_folder;
    std::function<bool()> m_shouldStop;
    std::function<void(qint64)> m_advanced;
    QString m_failure;
    QStringList m_executables;
    bool m_stopped = false;
    bool m_failedOnDisk = false;
};
