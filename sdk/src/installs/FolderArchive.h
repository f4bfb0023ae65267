#pragma once

#include <QString>
#include <QStringList>

#include <functional>

struct archive;

// A folder as one tar stream (POSIX pax) of its regular files, the same byte
// for byte each time it is made from the same files: an entry "./" for the
// folder, then the files in the order of their paths, named relative to
// the folder, each with mode 0644, time 0 and no owner. Links and other special files are left out, as from any
// upload of a folder. So an upload hashes the stream once and later sends
// it, or the rest of it after a cut-off, without keeping a copy.
class FolderArchive
{
public:
    enum class Outcome { Done, Stopped, Refused, Unreadable, Changed };
    // Takes the next bytes of the stream; false ends the stream (Refused).
    using Sink = std::function<bool(const char* data, qint64 size)>;

    FolderArchive(const QString& folder, std::function<bool()> shouldStop);

    // The stream from the byte at offset on. Changed when a file ends before
    // the size its entry began with.
    Outcome write(qint64 offset, const Sink& sink);
    // After Unreadable or Changed: which file, and why, for the user.
    const QString& failure() const { return m_failure; }

private:
    QStringList files() const;
    Outcome writeFile(struct archive* writer, const QString& path, const bool& refused);

    QString m_folder;
    std::function<bool()> m_shouldStop;
    QString m_failure;
};
