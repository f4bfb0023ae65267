#pragma once

#include <QStringList>

class Accounts;
class BlobStore;
class HttpConnection;

// GET /v1/users/<id>/avatar: a person's picture, for the people who share a
// workspace with them and for themselves; to anyone else there is none.
class Avatars
{
public:
    Avatars(const Accounts& accounts, const BlobStore& store);

    // False when the path is not an avatar's.
    bool handle(HttpConnection* c, const QStringList& path);

private:
    const Accounts& m_accounts;
    const BlobStore& m_store;
};
