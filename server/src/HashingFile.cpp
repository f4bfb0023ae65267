#include "HashingFile.h"

qint64 HashingFile::writeData(const char* data, qint64 size)
{
    const qint64 written = QFile::writeData(data, size);
    if (written > 0)
        m_hash.add(data, written);
    return written;
}
