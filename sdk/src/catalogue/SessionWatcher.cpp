#include "sdk/catalogue/SessionWatcher.h"

#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Database.h"
#include "sdk/workspaces/WorkspaceStore.h"

namespace {
// Failed looks in a row after which the service counts as lost.
constexpr int failuresBeforeLoss = 6;
} // namespace

SessionWatcher::SessionWatcher(const QString& databaseFolder, const QString& userId, qint64 passwordVersion,
                               qint64 catalogVersion, qint64 lastPublicationSeq, Handlers handlers)
    : m_databaseFolder(databaseFolder)
    , m_userId(userId)
    , m_passwordVersion(passwordVersion)
    , m_catalogVersion(catalogVersion)
    , m_lastPublicationSeq(lastPublicationSeq)
    , m_handlers(std::move(handlers))
    , m_thread([this] { run(); })
{ }

SessionWatcher::~SessionWatcher()
{
    stop();
}

void SessionWatcher::poke()
{
    {
        std::lock_guard lock(m_mutex);
        m_poked = true;
    }
    m_wake.notify_one();
}

void SessionWatcher::stop()
{
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void SessionWatcher::run()
{
    std::unique_ptr<Database> database;
    for (;;) {
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait_for(lock, interval, [this] { return m_stopping || m_poked; });
            if (m_stopping)
                return;
            m_poked = false;
        }
        if (!database)
            database = Database::open(m_databaseFolder, nullptr);
        if (database)
            look(*database);
        else if (++m_failures >= failuresBeforeLoss && !m_told) {
            m_told = true;
            m_handlers.serviceLost();
        }
    }
}

void SessionWatcher::look(Database& database)
{
    if (m_told)
        return;
    const qint64 passwordVersion = AccountStore(database).passwordVersion(m_userId);
    const qint64 catalogVersion = WorkspaceStore(database).catalogVersion();
    if (catalogVersion < 0) {
        if (++m_failures >= failuresBeforeLoss) {
            m_told = true;
            m_handlers.serviceLost();
        }
        return;
    }
    m_failures = 0;
    if (passwordVersion < 0) {
        m_told = true;
        m_handlers.serviceLost();
        return;
    }
    if (passwordVersion != m_passwordVersion) {
        m_told = true;
        m_handlers.passwordChanged();
        return;
    }
    if (catalogVersion == m_catalogVersion)
        return;
    m_handlers.catalogChanging();
    const auto snapshot = CatalogSnapshot::read(database, m_userId, m_lastPublicationSeq, nullptr);
    if (!snapshot) {
        m_handlers.catalogChanged(std::nullopt);
        return;
    }
    m_catalogVersion = snapshot->catalogVersion;
    m_lastPublicationSeq = snapshot->lastPublicationSeq;
    m_handlers.catalogChanged(snapshot);
}
