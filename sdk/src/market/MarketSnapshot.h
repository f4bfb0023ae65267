#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class Database;

// What one user's marketplace holds at one moment, on this machine: the
// purchases, the installers that they cover with their newest revisions,
// and what is installed here and elsewhere.
struct MarketSnapshot
{
    struct Vendor
    {
        QString id;
        QString name;
    };
    struct Product
    {
        QString id;
        QString name;
        QString vendorId;
        QByteArray image;
    };
    struct Installer
    {
        QString id;
        QString name;
        QString imageUrl;
        QByteArray image;
        QStringList productIds;
        // The newest revision; revisionId is null when there is none.
        QString revisionId;
        QString version;
        // This machine's install, when its folder is still there; null
        // otherwise.
        QString installedRevisionId;
        QString installedVersion;
        bool installedHere = false;
        bool installedAnywhere = false;
    };
    struct Purchase
    {
        QString id;
        QString productId;
        qint64 renewsAt = 0;
        bool canceled = false;
        QString paymentType;
        qint64 ccExpiresOn = 0;
        QString manageUrl;

        bool operator==(const Purchase&) const = default;
    };

    QList<Vendor> vendors;
    QList<Product> products;
    QList<Installer> installers;
    QList<Purchase> purchases;

    // Reads it inside the caller's transaction; nullopt when the database
    // failed. A purchase without a page of its own gets the local one
    // (MarketPages).
    static std::optional<MarketSnapshot> read(Database& database, const QString& userId, const QString& machineId);
};
