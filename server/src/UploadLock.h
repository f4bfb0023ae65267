#pragma once

#include <QMutex>
#include <QObject>
#include <QSet>
#include <QString>

// One writer per upload across all server processes: a PostgreSQL advisory
// lock (for the other processes) and a set of this process's own (advisory
// locks are re-entrant within one database connection, and a thread's
// connection serves many requests). Held from a PATCH's headers until its
// body ends or its connection goes; taken and let go on the same thread.
class UploadLock : public QObject
{
    Q_OBJECT

public:
    // Null when another request is writing the upload.
    static UploadLock* take(const QString& uploadId, QObject* parent);
    ~UploadLock() override;

private:
    UploadLock(const QString& uploadId, QObject* parent);

    QString m_uploadId;
    static inline QMutex s_lock;
    static inline QSet<QString> s_held;
};
