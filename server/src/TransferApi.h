#pragma once

#include "Publications.h"

#include <QStringList>

class Accounts;
class BlobStore;
class HttpConnection;

// Resumable uploads, ranged downloads and what a download link names. An upload is announced with its
// size and SHA-256, then its bytes come in PATCH requests at the offset the
// server reports; bytes that arrived before a cut-off stay, and the last
// byte triggers the check, the store and the revision.
class TransferApi
{
public:
    TransferApi(const Accounts& accounts, const BlobStore& store);

    // Before the body: a PATCH is made to stream into its upload's file.
    void headersReceived(HttpConnection* c, const QStringList& path);
    // False when the path is none of these endpoints.
    bool handle(HttpConnection* c, const QStringList& path);
    // How a folder's content is served: a tar stream of its files.
    static constexpr QByteArrayView folderType = "application/x-tar";
    // Answers with a content of the store, whole or the part that the
    // request's Range names, with its digest for the check at the end.
    static void serveContent(HttpConnection* c, const BlobStore& store, qint64 size, const QString& sha256,
                             const QByteArray& contentType = {});

private:
    struct Upload;
    qint64 received(const Upload& upload) const;
    bool settleDigest(HttpConnection* c, Upload* upload, QByteArray* digest);
    bool loadRevision(HttpConnection* c, const QString& userId, const QString& id, Publications::Revision* revision,
                      QString* workspaceId);
    bool loadUpload(HttpConnection* c, const QString& segment, const QString& userId, Upload* upload);
    void createUpload(HttpConnection* c, const QString& userId);
    void reportOffset(HttpConnection* c, const QString& userId, const QString& segment);
    void finishPatch(HttpConnection* c, const QString& userId, const QString& segment);
    void describeRevision(HttpConnection* c, const QString& userId, const QString& segment);
    void download(HttpConnection* c, const QString& userId, const QString& segment);

    const Accounts& m_accounts;
    const BlobStore& m_store;
};
