#pragma once

#include "sdk/transfers/TransferJob.h"
#include "sdk/transfers/TransferResult.h"

#include <QStringList>

#include <functional>

class ContentStore;
class Database;

// One run of a download on its worker: the revision's content out of the
// content store into a partial file (or folder) beside the target, checked
// against its SHA-256, then renamed into place. A file that an earlier
// download of the same file left there goes to the download cache first;
// any other file of that name is left alone and the download takes a
// numbered name.
class DownloadRun
{
public:
    DownloadRun(const TransferJob& job, const QString& databaseFolder, Database& database,
                std::function<bool()> shouldStop, std::function<void(qint64 bytes)> advanced);

    TransferResult run();

    // The hidden partial beside a target.
    static QString partialPathFor(const QString& target);
    // Renames a complete, synced partial to the job's target by the rules
    // above, and records the download of the user there; the result tells
    // where it went.
    static TransferResult putInPlace(Database& database, const QString& databaseFolder, const TransferJob& job,
                                     const QString& partial, const QString& assetId, const QString& revisionId);
    // A failure to write there, with the system's reason.
    static vlr::Error unwritable(const QString& path);

private:
    TransferResult copyFile(const ContentStore& store, const QByteArray& digest, const QString& target);
    TransferResult copyFolder(const ContentStore& store, const QByteArray& manifestDigest, const QString& target);

    TransferJob m_job;
    QString m_databaseFolder;
    Database& m_database;
    std::function<bool()> m_shouldStop;
    std::function<void(qint64)> m_advanced;
};
