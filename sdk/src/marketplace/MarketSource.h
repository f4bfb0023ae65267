#pragma once

#include "sdk/market/InstallRun.h"
#include "sdk/market/MarketSnapshot.h"

#include "service/VLRError.h"

#include <functional>
#include <optional>

class Database;
class ServiceThread;

// Where a session's marketplace reads its catalogue and gets its packages:
// the local database (DatabaseMarketSource) or a team server
// (ServerMarketSource). Every call runs on one of the marketplace's worker
// threads, never on the GUI thread, and may be made from two of them at once.
class MarketSource
{
public:
    virtual ~MarketSource() = default;

    // The user's catalogue as this machine sees it now; nullopt with the
    // reason when it can't be read.
    virtual std::optional<MarketSnapshot> snapshot(ServiceThread& thread, QString* failure) = 0;
    // Downloads the revision's package, checks it, installs it and records
    // the install of this machine. No error on success; the cancellation
    // error when it was stopped.
    virtual vlr::OptionalError install(ServiceThread& thread, const InstallRun::Job& job,
                                       const std::function<bool()>& shouldStop,
                                       const std::function<void(InstallRun::Phase, double)>& progress) = 0;
    // Takes this machine's install away and forgets it.
    virtual vlr::OptionalError forgetInstall(ServiceThread& thread, const QString& userId,
                                             const QString& installerId) = 0;
    // A change of the catalogue itself (the publisher's path, a delete),
    // made on the catalogue's database; installerId may name what changed.
    using Edit = std::function<vlr::OptionalError(Database& database, QString* installerId)>;
    virtual vlr::OptionalError edit(ServiceThread& thread, const Edit& edit, QString* installerId) = 0;
};
