#include "sdk/remote/PushPosition.h"

#include "sdk/base/DatabaseLocation.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/remote/RemoteLog.h"

#include <QCryptographicHash>
#include <QFile>

PushPosition::PushPosition(const QUrl& server, const QString& userId)
{
    const QUrl folder = DatabaseLocation::current();
    if (!folder.isLocalFile())
        return;
    // The name says nothing about the server or the user to who lists it.
    const QByteArray key =
        QCryptographicHash::hash((server.authority() + QLatin1Char('\n') + userId).toUtf8(), QCryptographicHash::Sha256)
            .toHex();
    m_path = folder.toLocalFile() + QStringLiteral("/PushPositions/") + QString::fromLatin1(key);
}

qint64 PushPosition::load() const
{
    QFile file(m_path);
    if (m_path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return -1;
    bool ok = false;
    const qint64 id = file.read(32).trimmed().toLongLong(&ok);
    return ok && id >= 0 ? id : -1;
}

void PushPosition::save(qint64 eventId) const
{
    if (m_path.isEmpty() || eventId < 0)
        return;
    const QString folder = m_path.section(QLatin1Char('/'), 0, -2);
    if (!PrivateFiles::makeFolder(folder) || !PrivateFiles::writeUnlessSame(m_path, QByteArray::number(eventId)))
        qCWarning(lcRemote, "The push position could not be kept in %s", qUtf8Printable(folder));
}
