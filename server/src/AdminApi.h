#pragma once

#include "AdminCommands.h"

#include <QStringList>

class Accounts;
class BlobStore;
class HttpConnection;

// The administrators' endpoints: POST /v1/admin/<command> runs one command
// of veluria-admin and answers what the tool prints for it; POST
// /v1/admin/blobs takes the bytes of a file that a command names into the
// store first. Only an administrator's session may use either.
class AdminApi
{
public:
    AdminApi(const Accounts& accounts, const BlobStore& store);

    // Where the commands are; other parts of the server add theirs here.
    AdminCommands& commands() { return m_commands; }

    // Before the body: a blob's bytes go straight to the store's uploads.
    void headersReceived(HttpConnection* c, const QStringList& path);
    // False when the path is none of these endpoints.
    bool handle(HttpConnection* c, const QStringList& path);

    static bool isAdministrator(const QString& userId);

private:
    bool admitted(HttpConnection* c, QString* userId) const;
    void storeBlob(HttpConnection* c);
    void run(HttpConnection* c, const QString& command, const QString& userId);

    const Accounts& m_accounts;
    const BlobStore& m_store;
    AdminCommands m_commands;
};
