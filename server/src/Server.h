#pragma once

#include "Accounts.h"
#include "AdminApi.h"
#include "Api.h"
#include "Avatars.h"
#include "BlobStore.h"
#include "EventHub.h"
#include "ManifestFile.h"
#include "MarketApi.h"
#include "ServerConfig.h"
#include "TransferApi.h"
#include "WebPages.h"

#include <QObject>

#include <memory>
#include <vector>

class ConnectionThread;
class HttpConnection;
class QTcpServer;
class UploadSweeper;

// One server process: takes connections (TLS unless configured off) on its
// own thread, spreads them over connection threads, and hands each request
// to the endpoint that serves its path under /v1/, or to the web pages
// outside it. The handlers run on the request's connection thread. It keeps
// no state that another process would need: sessions, uploads and events
// live in the database and the store.
class Server : public QObject
{
    Q_OBJECT

public:
    explicit Server(const ServerConfig& config, QObject* parent = nullptr);
    ~Server() override;

    bool start(QString* failure);

private:
    void serve(HttpConnection* c);
    // False after answering 503 when the database can't be reached.
    bool databaseReachable(HttpConnection* c);
    void headersReceived(HttpConnection* c);
    void requestReceived(HttpConnection* c);
    void events(HttpConnection* c);

    ServerConfig m_config;
    Accounts m_accounts;
    BlobStore m_store;
    EventHub m_hub;
    Api m_api;
    TransferApi m_transfers;
    AdminApi m_admin;
    Avatars m_avatars;
    ManifestFile m_manifest;
    WebPages m_web;
    MarketApi m_market;
    std::unique_ptr<UploadSweeper> m_sweeper;
    std::vector<std::unique_ptr<ConnectionThread>> m_threads;
    std::unique_ptr<QTcpServer> m_listener;
};
