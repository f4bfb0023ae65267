#pragma once

#include "sdk/store/Sha256.h"

#include <QFile>

// A file that hashes what is written to it, so that an upload received in
// one piece needn't be read back to be checked.
class HashingFile : public QFile
{
    Q_OBJECT

public:
    using QFile::QFile;

    // The SHA-256 of everything written since it was opened; once.
    QByteArray hexDigest() { return m_hash.hexDigest(); }

protected:
    qint64 writeData(const char* data, qint64 size) override;

private:
    Sha256 m_hash;
};
