#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// The log file, capped in size: when a line would take it past the cap it is
// renamed to <path>.1 (which moves to <path>.2, and so on) and a fresh file is
// begun; <path>.<keep - 1> is the oldest kept. Files are the user's alone
// (0600), their folder too (0700). Not thread-safe: one writer at a time.
class VLRLogFile
{
public:
    explicit VLRLogFile(QString path, qint64 maxBytes = 5 * 1024 * 1024, int keep = 3);

    // Writes the whole line, or nothing: false when the folder or the file
    // can't be written (the line is then lost to the file alone). The next
    // call tries again.
    bool append(const QByteArray& line);

    QString path() const { return m_path; }

private:
    bool open();
    void rotate();

    QString m_path;
    qint64 m_maxBytes;
    int m_keep;
    QFile m_file;
};
