#pragma once

#include "WebSessions.h"

#include <QString>

class HttpConnection;

// A purchase's page in the browser, where its buyer sees the product and
// the renewal, cancels or renews, and enters the expiry of a new card.
// It reads the marketplace's tables (purchases, products) and answers
// "not found" on a server whose database has none yet.
class PurchasePages
{
public:
    explicit PurchasePages(const WebSessions& sessions);

    // False when the path is none of these pages.
    bool handle(HttpConnection* c, const QString& path);

private:
    void show(HttpConnection* c, const WebSessions::Session& session, const QString& purchaseId,
              const QString& failure = {});
    void change(HttpConnection* c, const WebSessions::Session& session, const QString& purchaseId, const QString& what);

    const WebSessions& m_sessions;
};
