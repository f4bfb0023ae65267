#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>

// One user's marketplace as the server keeps it: the purchases, the
// installers that they cover with each newest revision, the products and
// vendors that those name, and which machines installed what. Read on the
// calling thread's connection.
class MarketCatalogue
{
public:
    // SQL selecting the installers that the purchases of the user bound to
    // its one placeholder cover.
    static QString coveredInstallers();
    // SQL selecting the users whose purchases cover the installer bound to
    // its one placeholder.
    static QString buyersOfInstaller();

    // The catalogue's JSON for the user; machineId says which installs are
    // this machine's. A purchase without a page of its own is managed at
    // https://<host>/purchases/<id>. Nullopt when the database failed.
    static std::optional<QJsonObject> read(const QString& userId, const QString& machineId, const QString& host);

    // The MIME type of a picture from its first bytes; empty when the bytes
    // are no picture the catalogue takes (PNG, JPEG, GIF, WebP).
    static QByteArray imageType(const QByteArray& bytes);

    // Tells the users concerned that their catalogue changed (a catalog
    // event). Returns false when the database failed.
    static bool changedFor(const QString& userId);
    static bool changedForBuyersOf(const QString& installerId);
};
