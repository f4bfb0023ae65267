#pragma once

#include <QObject>
#include <QTimer>

class BlobStore;

// Removes uploads that nobody has added a byte to for the upload timeout,
// their rows and their partial bytes. Every server process sweeps; the
// upload's lock keeps two of them (or a writer) from meeting on one upload.
class UploadSweeper : public QObject
{
    Q_OBJECT

public:
    UploadSweeper(const BlobStore& store, qint64 timeoutSeconds, QObject* parent = nullptr);

    void sweep();

private:
    const BlobStore& m_store;
    qint64 m_timeout;
    QTimer m_timer;
};
