#include "UploadSweeper.h"

#include "BlobStore.h"
#include "Database.h"
#include "UploadLock.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSqlQuery>
#include <QVariant>

#include <memory>

UploadSweeper::UploadSweeper(const BlobStore& store, qint64 timeoutSeconds, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_timeout(timeoutSeconds)
{
    // Often enough that an abandoned upload outlives its timeout by half of it at most.
    m_timer.setInterval(int(qBound(qint64(1), m_timeout / 2, qint64(600)) * 1000));
    connect(&m_timer, &QTimer::timeout, this, &UploadSweeper::sweep);
    m_timer.start();
}

void UploadSweeper::sweep()
{
    if (!Database::available())
        return;
    // Only uploads made (or finished) before the timeout can have been idle
    // that long; the file's modification time says when its last byte came.
    QSqlQuery candidates(Database::connection());
    candidates.prepare(QStringLiteral(
        "SELECT id FROM uploads WHERE coalesce(finished_at, created_at) < now() - make_interval(secs => ?)"));
    candidates.addBindValue(double(m_timeout));
    if (!candidates.exec())
        return;
    const QDateTime idleSince = QDateTime::currentDateTimeUtc().addSecs(-m_timeout);
    while (candidates.next()) {
        const QString id = candidates.value(0).toString();
        const QFileInfo partial(m_store.uploadPath(id));
        if (partial.exists() && partial.lastModified().toUTC() > idleSince)
            continue;
        const std::unique_ptr<UploadLock> lock(UploadLock::take(id, nullptr));
        if (!lock)
            continue; // a request is writing it right now
        QSqlQuery gone(Database::connection());
        gone.prepare(QStringLiteral("DELETE FROM uploads WHERE id = ?"));
        gone.addBindValue(id);
        if (gone.exec())
            m_store.discard(id);
    }
}
