#pragma once

#include "AccountPages.h"
#include "Mailer.h"
#include "PurchasePages.h"
#include "WebSessions.h"
#include "WorkspacePages.h"

class Accounts;
class BlobStore;
class HttpConnection;
struct ServerConfig;

// The pages that the client opens in the user's browser, outside /v1/ on
// the same host and port: account, workspace, purchase and help pages, the
// style sheet and the fonts they use, and the one-time links by which a
// signed-in client opens a page already signed in (POST /v1/web-sessions,
// then /web/enter?code=…).
class WebPages
{
public:
    static constexpr qint64 enterLinkLifetime = 60;

    WebPages(const ServerConfig& config, const Accounts& accounts, const BlobStore& store);

    // False when the request is for none of them.
    bool handle(HttpConnection* c);

private:
    void asset(HttpConnection* c, const QString& path);
    void help(HttpConnection* c);
    void enter(HttpConnection* c);
    void makeEnterLink(HttpConnection* c);

    const Accounts& m_accounts;
    QString m_webAddress;
    WebSessions m_sessions;
    Mailer m_mailer;
    AccountPages m_accountPages;
    WorkspacePages m_workspacePages;
    PurchasePages m_purchasePages;
};
