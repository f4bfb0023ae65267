#include "service/VLRLogFile.h"

#include "service/VLRPrivateFiles.h"

#include <QDir>
#include <QFileInfo>

namespace {

constexpr QFileDevice::Permissions OwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

QString numbered(const QString& path, int n)
{
    return n == 0 ? path : path + QLatin1Char('.') + QString::number(n);
}

} // namespace

VLRLogFile::VLRLogFile(QString path, qint64 maxBytes, int keep)
    : m_path(std::move(path))
    , m_maxBytes(maxBytes)
    , m_keep(std::max(keep, 1))
{ }

bool VLRLogFile::open()
{
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!VLRPrivateFiles::makeFolder(folder, true))
        return false;
    m_file.setFileName(m_path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered, OwnerOnly))
        return false;
    // The mode given to open passes through the umask; a file left by an
    // older version may be wider still.
    VLRPrivateFiles::restrictFile(m_path);
    return true;
}

void VLRLogFile::rotate()
{
    m_file.close();
    QFile::remove(numbered(m_path, m_keep - 1));
    for (int n = m_keep - 2; n >= 0; --n)
        QFile::rename(numbered(m_path, n), numbered(m_path, n + 1));
    QFile::remove(m_path); // keep == 1: the only file starts over
}

bool VLRLogFile::append(const QByteArray& line)
{
    if (!m_file.isOpen() && !open())
        return false;
    if (m_file.size() > 0 && m_file.size() + line.size() > m_maxBytes) {
        rotate();
        if (!open())
            return false;
    }
    const qint64 before = m_file.size();
    if (m_file.write(line) == line.size())
        return true;
    // A short write (disk full) leaves no part of a line behind.
    m_file.resize(before);
    m_file.close();
    return false;
}
