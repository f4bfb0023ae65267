#pragma once

#include <QStringList>

class Accounts;
class BlobStore;
class HttpConnection;

// The marketplace of the signed-in user: the catalogue that the purchases
// entitle them to, the pictures of its products and installers, the
// packages of installer revisions (by range, like any content), and the
// installs of the user's machines. A user sees and downloads only what a
// purchase covers; anything else is 404.
class MarketApi
{
public:
    MarketApi(const Accounts& accounts, const BlobStore& store);

    // False when the path is none of these endpoints.
    bool handle(HttpConnection* c, const QStringList& path);

private:
    void catalogue(HttpConnection* c, const QString& userId);
    void image(HttpConnection* c, const QString& userId, const QString& table, const QString& segment);
    void package(HttpConnection* c, const QString& userId, const QString& segment);
    void recordInstall(HttpConnection* c, const QString& userId);
    void forgetInstall(HttpConnection* c, const QString& userId, const QString& segment);

    const Accounts& m_accounts;
    const BlobStore& m_store;
};
