#pragma once

#include "Accounts.h"
#include "Api.h"
#include "BlobStore.h"
#include "EventHub.h"
#include "MarketApi.h"
#include "ServerConfig.h"
#include "TransferApi.h"

#include <QObject>

#include <memory>

class HttpConnection;
class QTcpServer;

// One server process: takes connections (TLS unless configured off) and
// hands each request to the endpoint that serves its path under /v1/.
// It keeps no state that another process would need: sessions, uploads and
// events live in the database and the store.
class Server : public QObject
{
    Q_OBJECT

public:
    explicit Server(const ServerConfig& config, QObject* parent = nullptr);
    ~Server() override;

    bool start(QString* failure);

private:
    void take(QTcpServer* listener);
    void headersReceived(HttpConnection* c);
    void requestReceived(HttpConnection* c);
    void events(HttpConnection* c);

    ServerConfig m_config;
    Accounts m_accounts;
    BlobStore m_store;
    EventHub m_hub;
    Api m_api;
    TransferApi m_transfers;
    MarketApi m_market;
    std::unique_ptr<QTcpServer> m_listener;
};
