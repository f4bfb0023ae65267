#include "DemoMarket.h"

#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/installs/PackageBuilder.h"
#include "sdk/market/InstallRun.h"
#include "sdk/market/MarketStore.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

namespace {

constexpr qint64 day = 24 * 3600 * 1000;

// A plain picture of one colour with a lighter disc: enough to tell icons
// apart without any font.
QByteArray icon(QColor colour)
{
    QImage image(128, 128, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(QRectF(4, 4, 120, 120), 24, 24);
    painter.setBrush(colour.lighter(160));
    painter.drawEllipse(QRectF(34, 34, 60, 60));
    painter.end();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

} // namespace

bool DemoMarket::seed(Database& database, const QString& userId, QString* failure)
{
    MarketStore market(database);
    QTemporaryDir folder;
    const QString lumen = market.addVendor(QStringLiteral("Lumen Labs"));
    const QString northwind = market.addVendor(QStringLiteral("Northwind Software"));
    const QString studio = market.addProduct(QStringLiteral("Studio Suite"), lumen, icon(QColor(74, 144, 226)));
    const QString notes = market.addProduct(QStringLiteral("Field Notes Pro"), northwind, icon(QColor(80, 180, 120)));
    if (lumen.isNull() || northwind.isNull() || studio.isNull() || notes.isNull())
        return false;
    const qint64 now = Clock::nowMs();
    MarketStore::Purchase suite{userId,         studio, now + 200 * day, false, QStringLiteral("credit_card"),
                                now + 20 * day, {}};
    MarketStore::Purchase fieldNotes{userId, notes, now + 60 * day, true, QStringLiteral("invoice"), 0, {}};
    if (market.grantPurchase(suite).isNull() || market.grantPurchase(fieldNotes).isNull())
        return false;

    struct Demo
    {
        QString name;
        QString command;
        QString product;
        QByteArray image;
        QStringList versions;
        // Which of the versions this machine has; -1 for none.
        int installedHere;
        bool installedElsewhere;
    };
    const QList<Demo> demos{
        {QStringLiteral("Sketchpad"),
         QStringLiteral("sketchpad"),
         studio,
         icon(QColor(233, 120, 60)),
         {QStringLiteral("1.0"), QStringLiteral("1.1")},
         0,
         false},
        {QStringLiteral("Palette Picker"),
         QStringLiteral("palette-picker"),
         studio,
         icon(QColor(160, 90, 200)),
         {QStringLiteral("2.0")},
         0,
         false},
        {QStringLiteral("Field Notes"), QStringLiteral("field-notes"), notes, {}, {QStringLiteral("3.2")}, -1, true},
        {QStringLiteral("Color Meter"),
         QStringLiteral("color-meter"),
         studio,
         icon(QColor(230, 190, 40)),
         {QStringLiteral("1.0")},
         -1,
         false},
    };
    for (const Demo& demo : demos) {
        MarketStore::InstallerFields fields;
        fields.name = demo.name;
        fields.description = QStringLiteral("%1, a demo application.").arg(demo.name);
        fields.platform = QStringLiteral("linux");
        fields.productIds = {demo.product};
        const QString id = market.addInstaller(fields, failure);
        if (id.isNull() || (!demo.image.isEmpty() && !market.setInstallerImage(id, demo.image)))
            return false;
        for (qsizetype i = 0; i < demo.versions.size(); ++i) {
            const QString version = demo.versions.at(i);
            const QString fileName = QStringLiteral("%1-%2.tar.gz").arg(demo.command, version);
            const QString path = folder.path() + QLatin1Char('/') + fileName;
            if (!PackageBuilder::write(path, PackageBuilder::demoApplication(demo.command, demo.name, version),
                                       failure))
                return false;
            const QString revision = market.publishRevision(id, path, version, fileName, failure);
            if (revision.isNull())
                return false;
            if (demo.installedHere == i) {
                if (const auto error = InstallRun(
                                           {userId, id, revision}, database, [] { return false; }, [](auto, double) {})
                                           .run()) {
                    *failure = error->localizedDescription;
                    return false;
                }
            }
            if (demo.installedElsewhere
                && !market.recordInstall(userId, id, QStringLiteral("demo-laptop"), revision, version))
                return false;
        }
    }
    return true;
}
