#pragma once

#include <QStringList>

class Accounts;
class HttpConnection;

// The JSON endpoints: sessions, the user, workspaces, members and
// publications. Each answers at once from the database.
class Api
{
public:
    explicit Api(const Accounts& accounts);

    // False when the path is none of these endpoints.
    bool handle(HttpConnection* c, const QStringList& path);

private:
    void signIn(HttpConnection* c);
    void verify(HttpConnection* c);
    void user(HttpConnection* c, const QString& userId);
    void workspaces(HttpConnection* c, const QString& userId);
    void createWorkspace(HttpConnection* c, const QString& userId);
    void members(HttpConnection* c, const QString& workspaceId);
    void addMember(HttpConnection* c, const QString& workspaceId);
    void removeMember(HttpConnection* c, const QString& workspaceId, const QString& memberId);
    void publications(HttpConnection* c, const QString& workspaceId);
    void publish(HttpConnection* c, const QString& workspaceId, const QString& userId);

    const Accounts& m_accounts;
};
