#pragma once

#include <QObject>
#include <QSet>
#include <QString>

// One writer per upload across all server processes: a PostgreSQL advisory
// lock (for the other processes) and a set of this process's own (advisory
// locks are re-entrant within the one connection a process has). Held from a
// PATCH's headers until its body ends or its connection goes.
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
    static inline QSet<QString> s_held;
};
