#include "sdk/marketplace/DatabaseMarketSource.h"

#include "sdk/base/Database.h"
#include "sdk/base/ServiceError.h"
#include "sdk/base/ServiceThread.h"
#include "sdk/installs/Applications.h"
#include "sdk/installs/Installation.h"
#include "sdk/market/MarketStore.h"

DatabaseMarketSource::DatabaseMarketSource(const QString& databaseFolder, const QString& userId)
    : m_databaseFolder(databaseFolder)
    , m_userId(userId)
{ }

std::optional<MarketSnapshot> DatabaseMarketSource::snapshot(ServiceThread& thread, QString* failure)
{
    Database* database = thread.database(m_databaseFolder, failure);
    if (!database)
        return std::nullopt;
    auto snapshot = MarketSnapshot::read(*database, m_userId, Applications::thisMachine());
    if (!snapshot && failure)
        *failure = database->errorMessage();
    return snapshot;
}

vlr::OptionalError DatabaseMarketSource::install(ServiceThread& thread, const InstallRun::Job& job,
                                                 const std::function<bool()>& shouldStop,
                                                 const std::function<void(InstallRun::Phase, double)>& progress)
{
    QString failure;
    Database* database = thread.database(m_databaseFolder, &failure);
    if (!database)
        return ServiceError::make(ServiceError::DatabaseFailure, failure);
    return InstallRun(job, *database, shouldStop, progress).run();
}

vlr::OptionalError DatabaseMarketSource::forgetInstall(ServiceThread& thread, const QString& userId,
                                                       const QString& installerId)
{
    QString failure;
    Database* database = thread.database(m_databaseFolder, &failure);
    if (!database)
        return ServiceError::make(ServiceError::DatabaseFailure, failure);
    Installation::remove(installerId);
    if (!MarketStore(*database).forgetInstall(userId, installerId, Applications::thisMachine()))
        return ServiceError::make(ServiceError::DatabaseFailure, database->errorMessage());
    return std::nullopt;
}

vlr::OptionalError DatabaseMarketSource::edit(ServiceThread& thread, const Edit& edit, QString* installerId)
{
    QString failure;
    Database* database = thread.database(m_databaseFolder, &failure);
    if (!database)
        return ServiceError::make(ServiceError::DatabaseFailure, failure);
    return edit(*database, installerId);
}
