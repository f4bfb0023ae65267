#pragma once

#include <QString>

// The server's file contents, each kept once under its SHA-256
// (<store>/ab/abcdef...). Uploads under way grow in <store>/uploads/<id>;
// a finished one is checked, synced and renamed into place, so that no
// name ever holds half a content. Every process of one installation may
// share the folder: the rename is atomic and the same bytes give one name.
class BlobStore
{
public:
    explicit BlobStore(const QString& root);

    bool prepare(QString* failure) const;
    // Identifiers come from the database (UUIDs), never from a request path.
    QString uploadPath(const QString& uploadId) const;
    QString contentPath(const QString& sha256) const;

    enum class Commit { Stored, Mismatch, Failed };
    // Moves a complete upload into place when its bytes have this digest;
    // Mismatch (and the upload removed) when they don't, Failed (the upload
    // kept) when the store can't take it. The bytes are read back to be
    // hashed unless their digest is known (hashed as received).
    Commit commit(const QString& uploadId, const QString& sha256, QString* failure,
                  const QByteArray& knownDigest = {}) const;
    void discard(const QString& uploadId) const;

    // Whether the store's disk can take this many more bytes now.
    bool hasRoomFor(qint64 bytes) const;

    static bool isDigest(const QString& text);

private:
    QString m_root;
};
