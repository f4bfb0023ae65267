#include "UploadLock.h"

#include "Database.h"

#include <QSqlQuery>
#include <QVariant>

UploadLock* UploadLock::take(const QString& uploadId, QObject* parent)
{
    if (s_held.contains(uploadId))
        return nullptr;
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT pg_try_advisory_lock(hashtextextended(?, 0))"));
    query.addBindValue(uploadId);
    if (!query.exec() || !query.next() || !query.value(0).toBool())
        return nullptr;
    return new UploadLock(uploadId, parent);
}

UploadLock::UploadLock(const QString& uploadId, QObject* parent)
    : QObject(parent)
    , m_uploadId(uploadId)
{
    s_held.insert(uploadId);
}

UploadLock::~UploadLock()
{
    // The file is closed before another writer may open it.
    qDeleteAll(children());
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT pg_advisory_unlock(hashtextextended(?, 0))"));
    query.addBindValue(m_uploadId);
    query.exec();
    s_held.remove(m_uploadId);
}
