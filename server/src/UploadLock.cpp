#include "UploadLock.h"

#include "Database.h"

#include <QSqlQuery>
#include <QVariant>

UploadLock* UploadLock::take(const QString& uploadId, QObject* parent)
{
    {
        QMutexLocker locked(&s_lock);
        if (s_held.contains(uploadId))
            return nullptr;
        s_held.insert(uploadId);
    }
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT pg_try_advisory_lock(hashtextextended(?, 0))"));
    query.addBindValue(uploadId);
    if (!query.exec() || !query.next() || !query.value(0).toBool()) {
        QMutexLocker locked(&s_lock);
        s_held.remove(uploadId);
        return nullptr;
    }
    return new UploadLock(uploadId, parent);
}

UploadLock::UploadLock(const QString& uploadId, QObject* parent)
    : QObject(parent)
    , m_uploadId(uploadId)
{ }

UploadLock::~UploadLock()
{
    // The file is closed before another writer may open it.
    qDeleteAll(children());
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT pg_advisory_unlock(hashtextextended(?, 0))"));
    query.addBindValue(m_uploadId);
    query.exec();
    QMutexLocker locked(&s_lock);
    s_held.remove(m_uploadId);
}
