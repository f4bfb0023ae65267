#pragma once

#include "sdk/market/MarketSnapshot.h"
#include "sdk/market/MarketStore.h"
#include "sdk/marketplace/LocalInstaller.h"
#include "sdk/marketplace/LocalInstallerOperation.h"
#include "sdk/marketplace/LocalInstallerUpdater.h"
#include "sdk/marketplace/MarketSource.h"

#include "service/VLRPurchase.h"

#include <QHash>

#include <atomic>
#include <functional>
#include <memory>

class ServiceThread;
class WebPictures;
class LocalProduct;
class LocalVendor;
class LocalPurchase;

// The marketplace of one session, of the local service or of a team server
// alike: the records of its purchases and installers, kept one per
// identifier and changed in place from each snapshot of the catalogue that
// its source reads, the updater's three groups, and the installs.
// Installs run one after the other on a thread of their own; every change
// that the client observes is made on the GUI thread.
class SessionMarketplace : public std::enable_shared_from_this<SessionMarketplace>
{
public:
    struct Hooks
    {
        // The session's lists changed; called only on a real change.
        std::function<void(const VLRInstallerList& installers)> installersChanged;
        std::function<void(const VLRPurchaseList& purchases)> purchasesChanged;
        // The marketplace's own writes: watching sessions should look now.
        std::function<void()> catalogueWritten;
    };

    SessionMarketplace(std::shared_ptr<MarketSource> source, const QString& userId, Hooks hooks);
    ~SessionMarketplace();

    const std::shared_ptr<LocalInstallerUpdater>& updater() const { return m_updater; }

    void apply(const MarketSnapshot& snapshot);
    // Reads the catalogue from the source again, away from the GUI thread,
    // and applies it: for a source that tells of changes (a server's push).
    void refresh();
    // Tells the three groups again, unchanged.
    void announceGroups();
    // Stops every install at its next step; nothing new starts.
    void end();

    VLRInstallerOperationPtr downloadAndInstall(const LocalInstallerPtr& installer);
    void forgetInstall(const LocalInstallerPtr& installer, const VLRErrorHandler& handler);
    void deleteInstaller(const LocalInstallerPtr& installer, const VLRErrorHandler& handler);
    // The publishing path: an installer made or changed from a publisher's
    // description, and a file that becomes its newest revision.
    void saveInstaller(const QString& installerId, const QString& name, const QVariant& type,
                       const QVariant& description, const QVariant& platform, const QVariant& packageIdentifiers,
                       const QList<QUrl>& fileURLs, bool silentInstall, const QVariant& productIDs,
                       const QUrl& imageURL, const VLRInstallerHandler& handler);
    void publishRevision(const QUrl& fileURL, const QString& installerID, const QVariantMap& versionInfo,
                         vlr::OptionalError* error);

private:
    struct Install
    {
        LocalInstallerPtr installer;
        LocalInstallerOperationPtr overall;
        LocalInstallerOperationPtr download;
        LocalInstallerOperationPtr install;
        std::shared_ptr<std::atomic_bool> stop;
    };

    std::weak_ptr<SessionMarketplace> weakSelf() { return weak_from_this(); }
    void applyProducts(const MarketSnapshot& snapshot);
    void applyPurchases(const MarketSnapshot& snapshot);
    void applyInstallers(const MarketSnapshot& snapshot);
    void applyGroups();
    void progressed(const QString& installerId, bool installing, double fraction);
    void finished(const QString& installerId, const vlr::OptionalError& error,
                  const std::optional<MarketSnapshot>& snapshot);
    void publishDownloads();
    // Runs a task on the source off the GUI thread; its answer comes back on
    // the GUI thread with a fresh snapshot after writes.
    void
    write(std::function<vlr::OptionalError(MarketSource& source, ServiceThread& thread, QString* installerId)> task,
          std::function<void(const vlr::OptionalError& error, const QString& installerId)> answer);
    void edit(MarketSource::Edit change,
              std::function<void(const vlr::OptionalError& error, const QString& installerId)> answer);
    static vlr::OptionalError fieldsFrom(MarketStore& store, const QString& name, const QVariant& type,
                                         const QVariant& description, const QVariant& platform,
                                         const QVariant& packageIdentifiers, const QList<QUrl>& fileURLs,
                                         bool silentInstall, const QVariant& productIDs, const QUrl& imageURL,
                                         MarketStore::InstallerFields* fields, QByteArray* image);

    std::shared_ptr<MarketSource> m_source;
    QString m_userId;
    Hooks m_hooks;
    std::shared_ptr<LocalInstallerUpdater> m_updater;
    QHash<QString, std::shared_ptr<LocalVendor>> m_vendors;
    QHash<QString, std::shared_ptr<LocalProduct>> m_products;
    QHash<QString, std::shared_ptr<LocalPurchase>> m_purchases;
    QHash<QString, LocalInstallerPtr> m_installers;
    VLRInstallerList m_installerList;
    VLRPurchaseList m_purchaseList;
    QList<MarketSnapshot::Purchase> m_shownPurchases;
    QList<Install> m_installs;
    std::unique_ptr<ServiceThread> m_installThread;
    std::unique_ptr<ServiceThread> m_writeThread;
    std::unique_ptr<WebPictures> m_pictures;
    bool m_ended = false;
};
