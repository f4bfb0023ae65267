#pragma once

#include "sdk/catalogue/CatalogSnapshot.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

class Database;

// Watches the database for what other clients and the admin tool change.
// It sleeps until the database's files are written to (every commit goes
// through the write-ahead log), then reads the catalog's version and the
// account's password version, and on a change reads a new snapshot; a
// moment later it reads them once more, for a commit that was still being
// finished. Where the folder can't be watched, and while the database
// can't be read, it looks twice a second instead. Its handlers run on the
// watcher's thread.
class SessionWatcher
{
public:
    static constexpr auto interval = std::chrono::milliseconds(500);
    static constexpr auto recheckDelay = std::chrono::milliseconds(200);

    struct Handlers
    {
        // A change was seen and its snapshot is being read.
        std::function<void()> catalogChanging;
        // The new snapshot, or none when it could not be read.
        std::function<void(const std::optional<CatalogSnapshot>& snapshot)> catalogChanged;
        std::function<void()> passwordChanged;
        std::function<void()> serviceLost;
    };

    SessionWatcher(const QString& databaseFolder, const QString& userId, qint64 passwordVersion, qint64 catalogVersion,
                   qint64 lastPublicationSeq, Handlers handlers);
    SessionWatcher(const SessionWatcher&) = delete;
    SessionWatcher& operator=(const SessionWatcher&) = delete;
    ~SessionWatcher();

    // Looks at once rather than at the next tick.
    void poke();
    void stop();

private:
    void run();
    void look(Database& database);
    enum class Wake { Written, Poked, Timeout, Stop };
    // Waits for a write to the database, a poke or a stop, at most the
    // timeout (none when negative).
    Wake wait(int timeoutMs);
    bool databaseWritten();
    void wake();

    QString m_databaseFolder;
    QString m_userId;
    qint64 m_passwordVersion;
    qint64 m_catalogVersion;
    qint64 m_lastPublicationSeq;
    Handlers m_handlers;
    int m_failures = 0;
    bool m_told = false;

    std::atomic_bool m_stopping{false};
    int m_wakeFd = -1;
    int m_watchFd = -1;
    std::thread m_thread;
};
