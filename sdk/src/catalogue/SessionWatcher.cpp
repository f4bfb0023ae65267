#include "sdk/catalogue/SessionWatcher.h"

#include "sdk/accounts/AccountStore.h"
#include "sdk/base/Database.h"
#include "sdk/base/DatabaseLocation.h"
#include "sdk/workspaces/WorkspaceStore.h"

#include <QFile>

#include <cerrno>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace {
// Failed looks in a row after which the service counts as lost.
constexpr int failuresBeforeLoss = 6;

// Writes to the folder's files: the database's commits, from any process.
int watchFolder(const QString& folder)
{
    const int fd = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    if (fd < 0)
        return -1;
    if (::inotify_add_watch(fd, QFile::encodeName(folder).constData(),
                            IN_MODIFY | IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF)
        < 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}
} // namespace

SessionWatcher::SessionWatcher(const QString& databaseFolder, const QString& userId, qint64 passwordVersion,
                               qint64 catalogVersion, qint64 lastPublicationSeq, Handlers handlers)
    : m_databaseFolder(databaseFolder)
    , m_userId(userId)
    , m_passwordVersion(passwordVersion)
    , m_catalogVersion(catalogVersion)
    , m_lastPublicationSeq(lastPublicationSeq)
    , m_handlers(std::move(handlers))
    , m_wakeFd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_watchFd(watchFolder(databaseFolder))
    , m_thread([this] { run(); })
{ }

SessionWatcher::~SessionWatcher()
{
    stop();
    for (const int fd : {m_wakeFd, m_watchFd})
        if (fd >= 0)
            ::close(fd);
}

void SessionWatcher::wake()
{
    const quint64 one = 1;
    if (m_wakeFd >= 0)
        (void)!::write(m_wakeFd, &one, sizeof one);
}

void SessionWatcher::poke()
{
    wake();
}

void SessionWatcher::stop()
{
    m_stopping = true;
    wake();
    if (m_thread.joinable())
        m_thread.join();
}

// The first look is at once: a change made before the watch began is not
// missed.
void SessionWatcher::run()
{
    std::unique_ptr<Database> database;
    Wake wake = Wake::Written;
    do {
        if (!database)
            database = Database::open(m_databaseFolder, nullptr);
        if (database)
            look(*database);
        else if (++m_failures >= failuresBeforeLoss && !m_told) {
            m_told = true;
            m_handlers.serviceLost();
        }
        // A commit shows only once its writer has finished it, a moment
        // after its last write to the log woke the watcher: after a write
        // it looks once more, a little later.
        int timeout = -1;
        if (m_watchFd < 0 || m_failures > 0 || m_wakeFd < 0)
            timeout = int(interval.count());
        else if (wake == Wake::Written)
            timeout = int(recheckDelay.count());
        wake = wait(m_told ? -1 : timeout);
    } while (wake != Wake::Stop);
}

SessionWatcher::Wake SessionWatcher::wait(int timeoutMs)
{
    pollfd watched[2] = {{m_wakeFd, POLLIN, 0}, {m_watchFd, POLLIN, 0}};
    for (;;) {
        const int ready = ::poll(watched, m_watchFd >= 0 ? 2 : 1, timeoutMs);
        if (m_stopping)
            return Wake::Stop;
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return Wake::Timeout;
        quint64 count = 0;
        const bool poked = (watched[0].revents & POLLIN) && ::read(m_wakeFd, &count, sizeof count) > 0;
        if (m_watchFd >= 0 && (watched[1].revents & POLLIN) && databaseWritten())
            return Wake::Written;
        if (poked)
            return Wake::Poked;
    }
}

// Reads what the kernel reported; true when the database or its log was
// written. A folder that went away can't be watched any longer: polling
// takes over, and finds the database gone.
bool SessionWatcher::databaseWritten()
{
    static const QByteArray database = QFile::encodeName(DatabaseLocation::databaseFileName());
    static const QByteArray log = database + "-wal";
    alignas(inotify_event) char buffer[4096];
    bool written = false;
    for (;;) {
        const ssize_t got = ::read(m_watchFd, buffer, sizeof buffer);
        if (got <= 0)
            return written;
        for (ssize_t at = 0; at < got;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            at += ssize_t(sizeof(inotify_event) + event->len);
            if (event->mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF)) {
                ::close(m_watchFd);
                m_watchFd = -1;
                return true;
            }
            const QByteArray name(event->len ? event->name : "");
            // A full queue lost events: one of them may have been a commit.
            written = written || (event->mask & IN_Q_OVERFLOW) || name == database || name == log;
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
