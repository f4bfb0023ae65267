#include "AdminTool.h"

#include "AdminCommandLine.h"

#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/installs/Applications.h"
#include "sdk/market/MarketSnapshot.h"
#include "sdk/market/MarketStore.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>

namespace {

// YYYY-MM-DD at noon UTC, or a number of days from now; 0 when neither.
qint64 dateOption(const QString& text)
{
    if (text.startsWith(QLatin1Char('+')) || text.startsWith(QLatin1Char('-'))) {
        bool ok = false;
        const qint64 days = text.toLongLong(&ok);
        return ok ? Clock::nowMs() + days * 24 * 3600 * 1000 : 0;
    }
    const QDate date = QDate::fromString(text, Qt::ISODate);
    return date.isValid() ? QDateTime(date, QTime(12, 0), Qt::UTC).toMSecsSinceEpoch() : 0;
}

} // namespace

int AdminTool::runMarket(const QString& command, QStringList arguments)
{
    if (command == QLatin1String("add-vendor"))
        return addVendor(arguments);
    if (command == QLatin1String("add-product"))
        return addProduct(arguments);
    if (command == QLatin1String("add-installer"))
        return addInstaller(arguments);
    if (command == QLatin1String("publish-installer"))
        return publishInstaller(arguments);
    if (command == QLatin1String("grant-purchase"))
        return grantPurchase(arguments);
    if (command == QLatin1String("installers"))
        return listInstallers(arguments);
    return -1;
}

int AdminTool::addVendor(const QStringList& arguments)
{
    if (arguments.size() != 1 || arguments.at(0).trimmed().isEmpty())
        return usage(2);
    const QString id = MarketStore(*m_database).addVendor(arguments.at(0).trimmed());
    if (id.isNull())
        return fail(m_database->errorMessage());
    m_out << id << "\n";
    return 0;
}

int AdminTool::addProduct(QStringList arguments)
{
    const QString vendor = AdminCommandLine::takeOption(arguments, QStringLiteral("--vendor"));
    const QString imagePath = AdminCommandLine::takeOption(arguments, QStringLiteral("--image"));
    if (arguments.size() != 1 || arguments.at(0).trimmed().isEmpty())
        return usage(2);
    MarketStore market(*m_database);
    const QString vendorId = vendor.isEmpty() ? QString() : market.addVendor(vendor);
    QByteArray image;
    if (!imagePath.isEmpty()) {
        QFile file(imagePath);
        if (!file.open(QIODevice::ReadOnly) || QImage::fromData(image = file.readAll()).isNull())
            return fail(QStringLiteral("%1 is not a picture").arg(imagePath));
    }
    const QString id = market.addProduct(arguments.at(0).trimmed(), vendorId, image);
    if (id.isNull())
        return fail(m_database->errorMessage());
    m_out << id << "\n";
    return 0;
}

int AdminTool::addInstaller(QStringList arguments)
{
    MarketStore market(*m_database);
    MarketStore::InstallerFields fields;
    fields.description = AdminCommandLine::takeOption(arguments, QStringLiteral("--description"));
    fields.platform = AdminCommandLine::takeOption(arguments, QStringLiteral("--platform"));
    const QString imagePath = AdminCommandLine::takeOption(arguments, QStringLiteral("--image"));
    for (QString product;
         !(product = AdminCommandLine::takeOption(arguments, QStringLiteral("--product"))).isEmpty();) {
        const QString id = market.productId(product);
        if (id.isNull())
            return fail(QStringLiteral("no product is called %1").arg(product));
        fields.productIds.append(id);
    }
    if (arguments.size() != 1 || arguments.at(0).trimmed().isEmpty() || fields.productIds.isEmpty())
        return usage(2);
    fields.name = arguments.at(0).trimmed();
    QByteArray image;
    if (!imagePath.isEmpty()) {
        QFile file(imagePath);
        if (!file.open(QIODevice::ReadOnly) || QImage::fromData(image = file.readAll()).isNull())
            return fail(QStringLiteral("%1 is not a picture").arg(imagePath));
    }
    QString failure;
    const QString id = market.addInstaller(fields, &failure);
    if (id.isNull() || (!image.isEmpty() && !market.setInstallerImage(id, image)))
        return fail(failure.isEmpty() ? m_database->errorMessage() : failure);
    m_out << id << "\n";
    return 0;
}

int AdminTool::publishInstaller(QStringList arguments)
{
    const QString version = AdminCommandLine::takeOption(arguments, QStringLiteral("--version"));
    if (arguments.size() != 2)
        return usage(2);
    MarketStore market(*m_database);
    const QString installerId = market.installerId(arguments.at(0));
    if (installerId.isNull())
        return fail(QStringLiteral("no installer is called %1").arg(arguments.at(0)));
    const QFileInfo package(arguments.at(1));
    if (!package.isFile())
        return fail(QStringLiteral("%1 is not a file").arg(arguments.at(1)));
    QString failure;
    const QString id =
        market.publishRevision(installerId, package.absoluteFilePath(), version, package.fileName(), &failure);
    if (id.isNull())
        return fail(failure);
    m_out << id << "\n";
    return 0;
}

int AdminTool::grantPurchase(QStringList arguments)
{
    MarketStore::Purchase purchase;
    const QString renews = AdminCommandLine::takeOption(arguments, QStringLiteral("--renews"));
    const QString card = AdminCommandLine::takeOption(arguments, QStringLiteral("--card-expires"));
    const QString payment = AdminCommandLine::takeOption(arguments, QStringLiteral("--payment"));
    purchase.manageUrl = AdminCommandLine::takeOption(arguments, QStringLiteral("--manage-url"));
    purchase.canceled = flag(arguments, QStringLiteral("--canceled"));
    if (arguments.size() != 2 || renews.isEmpty())
        return usage(2);
    purchase.renewsAt = dateOption(renews);
    purchase.ccExpiresOn = card.isEmpty() ? 0 : dateOption(card);
    if (!purchase.renewsAt || (!card.isEmpty() && !purchase.ccExpiresOn))
        return fail(QStringLiteral("a date is YYYY-MM-DD, or +N or -N days"));
    if (!payment.isEmpty())
        purchase.paymentType = payment;
    const auto buyer = account(arguments.at(0));
    if (!buyer)
        return 1;
    MarketStore market(*m_database);
    purchase.userId = buyer->id;
    purchase.productId = market.productId(arguments.at(1));
    if (purchase.productId.isNull())
        return fail(QStringLiteral("no product is called %1").arg(arguments.at(1)));
    const QString id = market.grantPurchase(purchase);
    if (id.isNull())
        return fail(m_database->errorMessage());
    m_out << id << "\n";
    return 0;
}

int AdminTool::listInstallers(const QStringList& arguments)
{
    if (arguments.size() != 1)
        return usage(2);
    const auto buyer = account(arguments.at(0));
    if (!buyer)
        return 1;
    const auto snapshot = MarketSnapshot::read(*m_database, buyer->id, Applications::thisMachine());
    if (!snapshot)
        return fail(m_database->errorMessage());
    for (const MarketSnapshot::Installer& installer : snapshot->installers)
        m_out << installer.id << "  " << installer.name << "  "
              << (installer.version.isEmpty() ? QStringLiteral("-") : installer.version) << "  "
              << (installer.installedHere           ? QStringLiteral("installed %1").arg(installer.installedVersion)
                      : installer.installedAnywhere ? QStringLiteral("installed elsewhere")
                                                    : QStringLiteral("new"))
              << "\n";
    return 0;
}
