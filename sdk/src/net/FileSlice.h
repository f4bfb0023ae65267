#pragma once

#include <QIODevice>

// A stretch of an open file as a device of its own, from its first byte to
// its size, read with pread: a request body streamed from the disk without
// moving the file's own position or holding more than a read in memory.
class FileSlice : public QIODevice
{
    Q_OBJECT

public:
    // fd stays the caller's and must outlive the slice.
    FileSlice(int fd, qint64 offset, qint64 length, QObject* parent = nullptr);

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_length; }
    bool atEnd() const override { return pos() >= m_length; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    int m_fd;
    qint64 m_offset;
    qint64 m_length;
};
