#pragma once

#include "sdk/accounts/AccountStore.h"
#include "sdk/market/MarketSnapshot.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include <optional>

// What a session shows of the service at one moment: the account, its
// workspaces and files, the publications since the last look, and its
// marketplace on this machine.
struct CatalogSnapshot
{
    AccountStore::Account account;
    QList<WorkspaceStore::Workspace> workspaces;
    QList<WorkspaceStore::Asset> assets;
    QList<WorkspaceStore::Publication> publications;
    MarketSnapshot market;
    qint64 catalogVersion = 0;
    qint64 lastPublicationSeq = 0;

    // Reads it all in one read transaction; nullopt with the reason when the
    // database failed or the account is gone.
    static std::optional<CatalogSnapshot> read(Database& database, const QString& userId, qint64 afterSeq,
                                               QString* failure);
};
