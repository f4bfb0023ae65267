#pragma once

#include "sdk/accounts/AccountStore.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include <QStringList>
#include <QTextStream>

#include <memory>

class Database;

// veluria-admin: manages the local service's accounts, workspaces and
// publications on the same database as the client. Each command answers 0
// on success, and otherwise 1 with the reason on standard error.
class AdminTool
{
public:
    AdminTool(QTextStream& out, QTextStream& err);
    ~AdminTool();

    int run(QStringList arguments);

    static QString defaultDatabaseFolder();
    static void printUsage(QTextStream& stream);

private:
    int usage(int status);
    bool open(bool folderGiven);
    int fail(const QString& reason);
    std::optional<AccountStore::Account> account(const QString& email);
    // A workspace by identifier, or by name when only one has it.
    std::optional<WorkspaceStore::Workspace> workspace(const QString& idOrName);
    bool flag(QStringList& arguments, const QString& name);

    int addUser(QStringList arguments);
    int confirm(const QStringList& arguments);
    int setAvatar(const QStringList& arguments);
    int changePassword(const QStringList& arguments);
    int enableSecondFactor(const QStringList& arguments);
    int addWorkspace(const QStringList& arguments);
    int addMember(QStringList arguments);
    int publish(QStringList arguments);
    int comment(const QStringList& arguments);
    int link(QStringList arguments);
    int listWorkspaces(const QStringList& arguments);
    // The software catalogue (AdminTool+Market.cpp).
    int runMarket(const QString& command, QStringList arguments);
    int addVendor(const QStringList& arguments);
    int addProduct(QStringList arguments);
    int addInstaller(QStringList arguments);
    int publishInstaller(QStringList arguments);
    int grantPurchase(QStringList arguments);
    int listInstallers(const QStringList& arguments);
    int demo();

    QTextStream& m_out;
    QTextStream& m_err;
    QString m_folder;
    std::unique_ptr<Database> m_database;
};
