#include "sdk/net/FileSlice.h"

#include <cerrno>
#include <cstring>

#include <unistd.h>

FileSlice::FileSlice(int fd, qint64 offset, qint64 length, QObject* parent)
    : QIODevice(parent)
    , m_fd(fd)
    , m_offset(offset)
    , m_length(length)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 FileSlice::readData(char* data, qint64 maxSize)
{
    const qint64 wanted = std::min(maxSize, m_length - pos());
    if (wanted <= 0)
        return 0;
    for (;;) {
        const ssize_t got = ::pread(m_fd, data, size_t(wanted), off_t(m_offset + pos()));
        if (got >= 0)
            return got == 0 ? -1 : got;
        if (errno != EINTR) {
            setErrorString(QString::fromLocal8Bit(std::strerror(errno)));
            return -1;
        }
    }
}
