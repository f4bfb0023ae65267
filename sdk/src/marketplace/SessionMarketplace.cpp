#include "sdk/marketplace/SessionMarketplace.h"

#include "sdk/base/Clock.h"
#include "sdk/base/Database.h"
#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/base/ServiceThread.h"
#include "sdk/market/InstallRun.h"
#include "sdk/market/LocalProduct.h"
#include "sdk/market/LocalPurchase.h"
#include "sdk/market/LocalRevision.h"
#include "sdk/market/LocalVendor.h"
#include "sdk/market/MarketError.h"
#include "sdk/marketplace/WebPictures.h"
#include "sdk/transfers/Reaper.h"
#include "sdk/transfers/TransferWorker.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

namespace {

// Fraction of an installation's progress that the download stands for.
constexpr double downloadShare = 0.8;

template <typename Record> QList<QString> identifiersOf(const QList<std::shared_ptr<Record>>& list)
{
    QList<QString> ids;
    for (const auto& record : list)
        ids.append(static_cast<const LocalInstaller*>(record.get())->identifier());
    return ids;
}

QByteArray readImage(const QUrl& url)
{
    if (!url.isLocalFile())
        return {};
    QFile file(url.toLocalFile());
    if (!file.open(QIODevice::ReadOnly) || file.size() > 8 * 1024 * 1024)
        return {};
    const QByteArray bytes = file.readAll();
    return QImage::fromData(bytes).isNull() ? QByteArray() : bytes;
}

} // namespace

SessionMarketplace::SessionMarketplace(std::shared_ptr<MarketSource> source, const QString& userId, Hooks hooks)
    : m_source(std::move(source))
    , m_userId(userId)
    , m_hooks(std::move(hooks))
    , m_updater(std::make_shared<LocalInstallerUpdater>())
    , m_installThread(std::make_unique<ServiceThread>())
    , m_writeThread(std::make_unique<ServiceThread>())
    , m_pictures(std::make_unique<WebPictures>())
{ }

SessionMarketplace::~SessionMarketplace()
{
    end();
}

void SessionMarketplace::end()
{
    if (m_ended)
        return;
    m_ended = true;
    for (const Install& install : std::as_const(m_installs))
        install.stop->store(true);
    Reaper::retire([installs = std::shared_ptr<ServiceThread>(std::move(m_installThread)),
                    writes = std::shared_ptr<ServiceThread>(std::move(m_writeThread))] {
        installs->finishAndStop();
        writes->finishAndStop();
    });
}

void SessionMarketplace::apply(const MarketSnapshot& snapshot)
{
    if (m_ended)
        return;
    applyProducts(snapshot);
    applyPurchases(snapshot);
    applyInstallers(snapshot);
    applyGroups();
}

void SessionMarketplace::applyProducts(const MarketSnapshot& snapshot)
{
    for (const MarketSnapshot::Vendor& vendor : snapshot.vendors) {
        auto& record = m_vendors[vendor.id];
        if (!record)
            record = std::make_shared<LocalVendor>();
        if (record->name() != vendor.name)
            record->setName(vendor.name);
    }
    for (const MarketSnapshot::Product& product : snapshot.products) {
        auto& record = m_products[product.id];
        if (!record)
            record = std::make_shared<LocalProduct>();
        if (record->name() != product.name)
            record->setName(product.name);
        record->setVendor(m_vendors.value(product.vendorId));
        const QImage image = QImage::fromData(product.image);
        if (record->image() != image)
            record->setImage(image);
    }
}

void SessionMarketplace::applyPurchases(const MarketSnapshot& snapshot)
{
    VLRPurchaseList list;
    QHash<QString, std::shared_ptr<LocalPurchase>> kept;
    for (const MarketSnapshot::Purchase& purchase : snapshot.purchases) {
        auto record = m_purchases.value(purchase.id);
        if (!record)
            record = std::make_shared<LocalPurchase>();
        record->setProduct(m_products.value(purchase.productId));
        record->setCanceled(purchase.canceled);
        record->setPaymentType(purchase.paymentType);
        record->setCcExpiresOn(purchase.ccExpiresOn ? Clock::toDateTime(purchase.ccExpiresOn) : QDateTime());
        record->setManageURL(QUrl(purchase.manageUrl));
        if (record->renewsAt() != Clock::toDateTime(purchase.renewsAt))
            record->setRenewsAt(Clock::toDateTime(purchase.renewsAt));
        kept.insert(purchase.id, record);
        list.append(record);
    }
    m_purchases = kept;
    // A purchase's fields but its date are not observed: the list is handed
    // over again when any of them changed, so that the pages read them anew.
    if (list != m_purchaseList || snapshot.purchases != m_shownPurchases) {
        m_purchaseList = list;
        m_shownPurchases = snapshot.purchases;
        m_hooks.purchasesChanged(list);
    }
}

void SessionMarketplace::applyInstallers(const MarketSnapshot& snapshot)
{
    VLRInstallerList list;
    QHash<QString, LocalInstallerPtr> kept;
    for (const MarketSnapshot::Installer& installer : snapshot.installers) {
        LocalInstallerPtr record = m_installers.value(installer.id);
        if (!record)
            record = std::make_shared<LocalInstaller>(installer.id, weakSelf());
        record->setName(installer.name);
        record->setImageURL(installer.imageUrl.isEmpty() ? QUrl() : QUrl(installer.imageUrl));
        record->setFirstProduct(installer.productIds.isEmpty() ? nullptr
                                                               : m_products.value(installer.productIds.first()));
        if (record->revisionId() != installer.revisionId || !record->currentRevision()) {
            record->setRevisionId(installer.revisionId);
            record->setCurrentRevision(std::make_shared<LocalRevision>(installer.revisionId, installer.version));
        }
        if (record->imageBytes() != installer.image) {
            record->setImageBytes(installer.image);
            record->setImage(QImage::fromData(installer.image));
        }
        // A picture named only by its web address comes from there.
        if (installer.image.isEmpty())
            m_pictures->want(record->imageURL(),
                             [shown = std::weak_ptr<LocalInstaller>(record)](const QImage& picture) {
                                 if (auto record = shown.lock(); record && record->imageBytes().isEmpty())
                                     record->setImage(picture);
                             });
        record->setInstalledRevisionId(installer.installedRevisionId);
        record->setInstalledAnywhere(installer.installedAnywhere);
        const QString installed = !installer.installedHere ? QString()
            : installer.installedVersion.isNull()          ? QStringLiteral("")
                                                           : installer.installedVersion;
        if (record->installedVersionString() != installed
            || record->installedVersionString().isNull() != installed.isNull())
            record->setInstalledVersionString(installed);
        kept.insert(installer.id, record);
        list.append(record);
    }
    m_installers = kept;
    if (list != m_installerList) {
        m_installerList = list;
        m_hooks.installersChanged(list);
    }
}

void SessionMarketplace::applyGroups()
{
    VLRInstallerList updates;
    VLRInstallerList never;
    VLRInstallerList notHere;
    for (const VLRInstallerPtr& record : std::as_const(m_installerList)) {
        const auto* installer = static_cast<const LocalInstaller*>(record.get());
        if (!installer->installedAnywhere())
            never.append(record);
        else if (installer->installedVersionString().isNull())
            notHere.append(record);
        else if (!installer->revisionId().isNull() && installer->installedRevisionId() != installer->revisionId())
            updates.append(record);
    }
    if (identifiersOf(updates) != identifiersOf(m_updater->installerUpdates()))
        m_updater->setInstallerUpdates(updates);
    if (identifiersOf(never) != identifiersOf(m_updater->neverInstalled()))
        m_updater->setNeverInstalled(never);
    if (identifiersOf(notHere) != identifiersOf(m_updater->notInstalled()))
        m_updater->setNotInstalled(notHere);
}

void SessionMarketplace::announceGroups()
{
    m_updater->setNotInstalled(VLRInstallerList(m_updater->notInstalled()));
    m_updater->setNeverInstalled(VLRInstallerList(m_updater->neverInstalled()));
    m_updater->setInstallerUpdates(VLRInstallerList(m_updater->installerUpdates()));
}

VLRInstallerOperationPtr SessionMarketplace::downloadAndInstall(const LocalInstallerPtr& installer)
{
    if (installer->overallOperation())
        return installer->overallOperation();
    auto refused = [](const vlr::Error& error) {
        auto operation = std::make_shared<LocalInstallerOperation>();
        operation->setError(error);
        return operation;
    };
    if (m_ended)
        return refused(ServiceError::make(ServiceError::SignedOut));
    if (installer->revisionId().isNull())
        return refused(MarketError::make(MarketError::NoRevision, InstallRun::shownName(installer->name())));

    Install install;
    install.installer = installer;
    install.stop = std::make_shared<std::atomic_bool>(false);
    install.overall = std::make_shared<LocalInstallerOperation>([stop = install.stop] { stop->store(true); });
    install.download = std::make_shared<LocalInstallerOperation>();
    m_installs.append(install);
    installer->setOverallOperation(install.overall);
    installer->setDownloadOperation(install.download);
    publishDownloads();

    const auto weak = weakSelf();
    const InstallRun::Job job{m_userId, installer->identifier(), installer->revisionId()};
    m_installThread->post([weak, source = m_source, job, stop = install.stop](ServiceThread& thread) {
        auto lastReport = std::chrono::steady_clock::now() - TransferWorker::reportInterval;
        bool installing = false;
        auto progress = [&](InstallRun::Phase phase, double fraction) {
            const auto now = std::chrono::steady_clock::now();
            const bool phaseChanged = (phase == InstallRun::Phase::Install) != installing;
            if (!phaseChanged && now - lastReport < TransferWorker::reportInterval)
                return;
            installing = phase == InstallRun::Phase::Install;
            lastReport = now;
            MainThread::post([weak, id = job.installerId, installing, fraction] {
                if (auto self = weak.lock())
                    self->progressed(id, installing, fraction);
            });
        };
        const vlr::OptionalError error = source->install(
            thread, job, [stop] { return stop->load(); }, progress);
        const auto snapshot = source->snapshot(thread, nullptr);
        MainThread::post([weak, job, error, snapshot] {
            if (auto self = weak.lock())
                self->finished(job.installerId, error, snapshot);
        });
    });
    return install.overall;
}

void SessionMarketplace::publishDownloads()
{
    VLRObjectList downloads;
    VLRObjectPtr current;
    for (const Install& install : std::as_const(m_installs)) {
        if (install.install)
            current = install.install;
        else
            downloads.append(install.download);
    }
    m_updater->setDownloadOperations(downloads);
    m_updater->setCurrentInstall(current);
    m_updater->overallOperationsDidChange();
}

void SessionMarketplace::progressed(const QString& installerId, bool installing, double fraction)
{
    for (Install& install : m_installs) {
        if (install.installer->identifier() != installerId)
            continue;
        if (installing && !install.install) {
            install.download->setFractionCompleted(1);
            install.download->setFinished(true);
            install.install = std::make_shared<LocalInstallerOperation>();
            install.installer->setInstallOperation(install.install);
            publishDownloads();
        }
        (installing ? install.install : install.download)->setFractionCompleted(fraction);
        install.overall->setFractionCompleted(installing ? downloadShare + (1 - downloadShare) * fraction
                                                         : downloadShare * fraction);
        return;
    }
}

void SessionMarketplace::finished(const QString& installerId, const vlr::OptionalError& error,
                                  const std::optional<MarketSnapshot>& snapshot)
{
    const auto at = std::find_if(m_installs.begin(), m_installs.end(), [&](const Install& install) {
        return install.installer->identifier() == installerId;
    });
    if (at == m_installs.end())
        return;
    const Install install = *at;
    m_installs.erase(at);
    if (snapshot && !m_ended)
        apply(*snapshot);
    install.installer->setDownloadOperation(nullptr);
    install.installer->setInstallOperation(nullptr);
    install.installer->setOverallOperation(nullptr);
    publishDownloads();
    if (error) {
        install.overall->setError(error);
        return;
    }
    if (m_hooks.catalogueWritten)
        m_hooks.catalogueWritten();
    install.overall->setFractionCompleted(1);
    install.overall->setFinished(true);
}

void SessionMarketplace::refresh()
{
    if (m_ended)
        return;
    m_writeThread->post([weak = weakSelf(), source = m_source](ServiceThread& thread) {
        QString failure;
        const auto snapshot = source->snapshot(thread, &failure);
        if (!snapshot)
            qWarning("The marketplace's catalogue can't be read: %s", qUtf8Printable(failure));
        MainThread::post([weak, snapshot] {
            auto self = weak.lock();
            if (self && snapshot && !self->m_ended)
                self->apply(*snapshot);
        });
    });
}

void SessionMarketplace::write(std::function<vlr::OptionalError(MarketSource&, ServiceThread&, QString*)> task,
                               std::function<void(const vlr::OptionalError&, const QString&)> answer)
{
    if (m_ended) {
        MainThread::post([answer] { answer(ServiceError::make(ServiceError::SignedOut), QString()); });
        return;
    }
    const auto weak = weakSelf();
    m_writeThread->post([weak, source = m_source, task, answer](ServiceThread& thread) {
        QString installerId;
        const vlr::OptionalError error = task(*source, thread, &installerId);
        const auto snapshot = error ? std::nullopt : source->snapshot(thread, nullptr);
        MainThread::post([weak, error, installerId, snapshot, answer] {
            auto self = weak.lock();
            if (self && snapshot && !self->m_ended) {
                self->apply(*snapshot);
                if (self->m_hooks.catalogueWritten)
                    self->m_hooks.catalogueWritten();
            }
            answer(error, installerId);
        });
    });
}

void SessionMarketplace::edit(MarketSource::Edit change,
                              std::function<void(const vlr::OptionalError&, const QString&)> answer)
{
    write([change](MarketSource& source, ServiceThread& thread,
                   QString* installerId) { return source.edit(thread, change, installerId); },
          std::move(answer));
}

void SessionMarketplace::forgetInstall(const LocalInstallerPtr& installer, const VLRErrorHandler& handler)
{
    const QString id = installer->identifier();
    const QString userId = m_userId;
    write([id, userId](MarketSource& source, ServiceThread& thread,
                       QString*) { return source.forgetInstall(thread, userId, id); },
          [handler](const vlr::OptionalError& error, const QString&) {
              if (handler)
                  handler(error);
          });
}

void SessionMarketplace::deleteInstaller(const LocalInstallerPtr& installer, const VLRErrorHandler& handler)
{
    const QString id = installer->identifier();
    edit(
        [id](Database& database, QString*) -> vlr::OptionalError {
            if (!MarketStore(database).deleteInstaller(id))
                return ServiceError::make(ServiceError::DatabaseFailure, database.errorMessage());
            return std::nullopt;
        },
        [handler](const vlr::OptionalError& error, const QString&) {
            if (handler)
                handler(error);
        });
}

vlr::OptionalError SessionMarketplace::fieldsFrom(MarketStore& store, const QString& name, const QVariant& type,
                                                  const QVariant& description, const QVariant& platform,
                                                  const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs,
                                                  bool silentInstall, const QVariant& productIDs, const QUrl& imageURL,
                                                  MarketStore::InstallerFields* fields, QByteArray* image)
{
    auto invalid = [](const QString& why) { return MarketError::make(MarketError::InvalidDescription, {}, why); };
    auto text = [](const QVariant& value, QString* out) {
        if (value.isNull() || !value.isValid())
            return true;
        if (!value.canConvert<QString>() || value.typeId() == QMetaType::QVariantList
            || value.typeId() == QMetaType::QVariantMap)
            return false;
        *out = value.toString();
        return true;
    };
    fields->name = name.trimmed();
    if (fields->name.isEmpty())
        return invalid(QStringLiteral("\"name\" is missing."));
    if (!text(type, &fields->type))
        return invalid(QStringLiteral("\"type\" must be a text."));
    if (!text(description, &fields->description))
        return invalid(QStringLiteral("\"description\" must be a text."));
    if (!text(platform, &fields->platform))
        return invalid(QStringLiteral("\"platform\" must be a text."));
    if (packageIdentifiers.isValid() && !packageIdentifiers.isNull()) {
        const QJsonValue json = QJsonValue::fromVariant(packageIdentifiers);
        fields->packageIdentifiers =
            QString::fromUtf8(json.isArray()        ? QJsonDocument(json.toArray()).toJson(QJsonDocument::Compact)
                                  : json.isObject() ? QJsonDocument(json.toObject()).toJson(QJsonDocument::Compact)
                                                    : QJsonDocument(QJsonArray{json}).toJson(QJsonDocument::Compact));
    }
    fields->silentInstall = silentInstall;
    // Products by identifier, by name, or by the last part of a product's URL.
    const QStringList wanted =
        productIDs.typeId() == QMetaType::QVariantList || productIDs.typeId() == QMetaType::QStringList
        ? productIDs.toStringList()
        : productIDs.toString().isEmpty() ? QStringList()
                                          : QStringList{productIDs.toString()};
    for (const QString& entry : wanted) {
        QString id = store.productId(entry);
        if (id.isNull())
            id = store.productId(QUrl(entry).fileName());
        if (id.isNull())
            return invalid(QStringLiteral("there is no product \"%1\".").arg(entry));
        fields->productIds.append(id);
    }
    if (imageURL.isValid() && !imageURL.isLocalFile())
        fields->imageUrl = imageURL.toString();
    *image = readImage(imageURL);
    for (const QUrl& url : fileURLs) {
        if (!url.isLocalFile() || !QFileInfo(url.toLocalFile()).isFile())
            return invalid(QStringLiteral("the file \"%1\" can't be found.").arg(url.toDisplayString()));
        if (image->isEmpty())
            *image = readImage(url);
    }
    return std::nullopt;
}

void SessionMarketplace::saveInstaller(const QString& installerId, const QString& name, const QVariant& type,
                                       const QVariant& description, const QVariant& platform,
                                       const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs,
                                       bool silentInstall, const QVariant& productIDs, const QUrl& imageURL,
                                       const VLRInstallerHandler& handler)
{
    const auto weak = weakSelf();
    edit(
        [=](Database& database, QString* savedId) -> vlr::OptionalError {
            MarketStore store(database);
            MarketStore::InstallerFields fields;
            QByteArray image;
            if (auto invalid = fieldsFrom(store, name, type, description, platform, packageIdentifiers, fileURLs,
                                          silentInstall, productIDs, imageURL, &fields, &image))
                return invalid;
            QString failure;
            // One transaction, so that no reader sees a new installer without
            // its picture, and a failed picture leaves no installer behind.
            const bool saved = database.transaction([&] {
                *savedId = installerId.isNull() ? store.addInstaller(fields, &failure) : installerId;
                return !savedId->isNull()
                    && (installerId.isNull() || store.setInstallerFields(installerId, fields, &failure))
                    && (image.isEmpty() || store.setInstallerImage(*savedId, image));
            });
            if (!saved)
                return MarketError::make(MarketError::PublishFailed, fields.name,
                                         failure.isEmpty() ? database.errorMessage() : failure);
            return std::nullopt;
        },
        [weak, handler, name](const vlr::OptionalError& error, const QString& savedId) {
            if (!handler)
                return;
            auto self = weak.lock();
            LocalInstallerPtr installer = self && !error ? self->m_installers.value(savedId) : nullptr;
            // An installer that no purchase of this user covers is not in the
            // session's list; the publisher still gets a record of it.
            if (!error && !installer) {
                installer = std::make_shared<LocalInstaller>(savedId, weak);
                installer->setName(name.trimmed());
            }
            handler(installer, error);
        });
}

void SessionMarketplace::publishRevision(const QUrl& fileURL, const QString& installerID,
                                         const QVariantMap& versionInfo, vlr::OptionalError* error)
{
    auto refuse = [error](const vlr::Error& why) {
        if (error)
            *error = why;
    };
    const QString path = fileURL.isLocalFile() ? fileURL.toLocalFile() : QString();
    const QVariant version = versionInfo.value(QStringLiteral("version"));
    if (m_ended)
        return refuse(ServiceError::make(ServiceError::SignedOut));
    if (path.isEmpty() || !QFileInfo(path).isFile())
        return refuse(MarketError::make(MarketError::InvalidDescription, {},
                                        QStringLiteral("the package \"%1\" can't be found.").arg(fileURL.fileName())));
    if (version.isValid() && version.typeId() != QMetaType::QString)
        return refuse(
            MarketError::make(MarketError::InvalidDescription, {}, QStringLiteral("\"version\" must be a text.")));
    if (installerID.isEmpty())
        return refuse(MarketError::make(MarketError::InstallerNotFound));
    const QString fileName = QFileInfo(path).fileName();
    edit(
        [installerID, path, version, fileName](Database& database, QString*) -> vlr::OptionalError {
            MarketStore store(database);
            const QString name = store.installerName(installerID);
            if (name.isNull())
                return MarketError::make(MarketError::InstallerNotFound);
            QString failure;
            if (store.publishRevision(installerID, path, version.toString(), fileName, &failure).isNull())
                return MarketError::make(MarketError::PublishFailed, name, failure);
            return std::nullopt;
        },
        [fileName](const vlr::OptionalError& failed, const QString&) {
            if (failed)
                qWarning("The installer's package %s was not published: %s", qUtf8Printable(fileName),
                         qUtf8Printable(failed->localizedDescription));
        });
}
