#pragma once

#include "sdk/marketplace/MarketSource.h"

// The marketplace of the local service: the catalogue in the database of
// the folder, packages copied out of its content store.
class DatabaseMarketSource : public MarketSource
{
public:
    DatabaseMarketSource(const QString& databaseFolder, const QString& userId);

    std::optional<MarketSnapshot> snapshot(ServiceThread& thread, QString* failure) override;
    vlr::OptionalError install(ServiceThread& thread, const InstallRun::Job& job,
                               const std::function<bool()>& shouldStop,
                               const std::function<void(InstallRun::Phase, double)>& progress) override;
    vlr::OptionalError forgetInstall(ServiceThread& thread, const QString& userId, const QString& installerId) override;
    vlr::OptionalError edit(ServiceThread& thread, const Edit& edit, QString* installerId) override;

private:
    QString m_databaseFolder;
    QString m_userId;
};
