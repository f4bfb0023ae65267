#include "HashingFile.h"

#include <QFileInfo>

HashingFile::HashingFile(const QString& path, QObject* parent)
    : QFile(path, parent)
{ }

bool HashingFile::openForAppend()
{
    QFile held(fileName());
    if (held.open(QIODevice::ReadOnly)) {
        QByteArray chunk(1 << 20, Qt::Uninitialized);
        for (qint64 n; (n = held.read(chunk.data(), chunk.size())) > 0;) {
            m_sha.add(chunk.constData(), n);
            m_hashed += n;
        }
    }
    return open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

QByteArray HashingFile::digestOf(qint64 size)
{
    return m_hashed == size && QFileInfo(fileName()).size() == size ? m_sha.hexDigest() : QByteArray();
}

qint64 HashingFile::writeData(const char* data, qint64 size)
{
    const qint64 written = QFile::writeData(data, size);
    if (written > 0) {
        m_sha.add(data, written);
        m_hashed += written;
    }
    return written;
}
