#pragma once

#include "AdminOutcome.h"

#include <QString>

#include <optional>

// How administrative commands name accounts and workspaces, with the
// failures worded as veluria-admin words them on a local database.
namespace AdminLookup {

struct Account
{
    QString id;
    QString email;
    bool needsConfirmation = false;
};
std::optional<Account> account(const QString& email, AdminOutcome* failure);

struct Workspace
{
    QString id;
    QString name;
};
// By identifier, or by name when only one workspace has it.
std::optional<Workspace> workspace(const QString& idOrName, AdminOutcome* failure);

} // namespace AdminLookup
