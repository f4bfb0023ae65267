#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

class Database;

// The software catalogue in the database: vendors, products, installers
// with their revisions, purchases, and the installs of each machine. Names
// of vendors, products and installers are unique, so that the admin tool
// and a publisher's description can name them. Every call runs on the
// caller's connection; writes are single statements or one transaction.
class MarketStore
{
public:
    struct InstallerFields
    {
        QString name;
        QString type;
        QString description;
        QString platform;
        // A JSON array or value, as the publisher gave it.
        QString packageIdentifiers = QStringLiteral("[]");
        bool silentInstall = false;
        QString imageUrl;
        // Product identifiers, in order.
        QStringList productIds;
    };

    struct Revision
    {
        QString id;
        QString installerId;
        qint64 number = 0;
        QString version;
        QString fileName;
        QString content;
        qint64 size = 0;
    };

    struct Purchase
    {
        QString userId;
        QString productId;
        qint64 renewsAt = 0;
        bool canceled = false;
        QString paymentType = QStringLiteral("credit_card");
        // 0: no card date.
        qint64 ccExpiresOn = 0;
        QString manageUrl;
    };

    explicit MarketStore(Database& database);

    // Each answers the identifier, an existing one for a name that is taken
    // by a vendor or product; null on failure.
    QString addVendor(const QString& name);
    QString addProduct(const QString& name, const QString& vendorId, const QByteArray& image);
    QString addInstaller(const InstallerFields& fields, QString* failure);
    bool setInstallerFields(const QString& installerId, const InstallerFields& fields, QString* failure);
    bool setInstallerImage(const QString& installerId, const QByteArray& image);
    bool deleteInstaller(const QString& installerId);

    // A product by identifier or name; null when none.
    QString productId(const QString& idOrName);
    QString installerId(const QString& idOrName);
    QString installerName(const QString& installerId);
    QByteArray installerImage(const QString& installerId);

    // Copies the file into the content store and makes it the installer's
    // newest revision; its identifier, or null with the reason.
    QString publishRevision(const QString& installerId, const QString& path, const QString& version,
                            const QString& fileName, QString* failure);
    std::optional<Revision> revision(const QString& revisionId);

    // Grants or changes the user's purchase of the product.
    QString grantPurchase(const Purchase& purchase);
    // Whether a purchase of the user covers the installer.
    bool isEntitled(const QString& userId, const QString& installerId);

    bool recordInstall(const QString& userId, const QString& installerId, const QString& machineId,
                       const QString& revisionId, const QString& version);
    bool forgetInstall(const QString& userId, const QString& installerId, const QString& machineId);

private:
    QString nameTaken(const char* sql, const QString& name);
    bool linkProducts(const QString& installerId, const QStringList& productIds);

    Database& m_database;
};
