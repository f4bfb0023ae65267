#pragma once

#include <QFile>
#include <QString>

#include <fcntl.h>
#include <random>
#include <unistd.h>
#include <vector>

// A file of that many random bytes, on disk before this returns, so that a
// measurement starts with nothing left to flush. The same seed gives the
// same bytes.
inline QString writeRandomFile(const QString& path, qint64 size, quint64 seed)
{
    std::mt19937_64 random(seed);
    std::vector<quint64> block(8 * 1024 * 1024 / sizeof(quint64));
    const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    for (qint64 written = 0; written < size; written += qint64(block.size() * sizeof(quint64))) {
        for (quint64& word : block)
            word = random();
        if (::write(fd, block.data(), block.size() * sizeof(quint64)) < 0)
            break;
    }
    ::fsync(fd);
    ::close(fd);
    return path;
}
