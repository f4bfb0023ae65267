#pragma once

#include "sdk/store/Sha256.h"

#include <QFile>

// An upload's file that hashes what is written to it, after the bytes it
// already held: when the upload's last byte comes through it, the store
// needn't read the whole content again for its check.
class HashingFile : public QFile
{
    Q_OBJECT

public:
    HashingFile(const QString& path, QObject* parent);

    // Opens for appending, unbuffered, and hashes what the file holds so far.
    bool openForAppend();
    // The digest when the hash covered the file's first `size` bytes and no
    // others (another process may have appended too); empty otherwise.
    QByteArray digestOf(qint64 size);

protected:
    qint64 writeData(const char* data, qint64 size) override;

private:
    Sha256 m_sha;
    qint64 m_hashed = 0;
};
