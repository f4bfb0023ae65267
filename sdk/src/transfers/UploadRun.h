#pragma once

#include "sdk/store/StoreBatch.h"
#include "sdk/transfers/TransferJob.h"
#include "sdk/transfers/TransferResult.h"

#include <functional>
#include <optional>

class ContentStore;

class Database;

// One run of an upload on its worker: the file, or every file of the folder,
// into the content store, then a new revision published in the workspace.
// A folder's revision is a manifest of its files' paths and contents.
class UploadRun
{
public:
    UploadRun(const TransferJob& job, const QString& databaseFolder, Database& database,
              std::function<bool()> shouldStop, std::function<void(qint64 total)> sized,
              std::function<void(qint64 bytes)> advanced);

    TransferResult run();

private:
    struct Item
    {
        QString source;
        QString relativePath;
    };

    TransferResult refusal();
    QList<Item> items(qint64* totalSize) const;
    // Each puts the upload's content into the store and gives its digest;
    // a result only when the upload ends there.
    std::optional<TransferResult> storeFile(const ContentStore& store, const Item& item, QByteArray* content);
    std::optional<TransferResult> storeFolder(const ContentStore& store, const QList<Item>& files, QByteArray* content);
    static TransferResult copyFailed(const StoreBatch::Failure& failure);

    TransferJob m_job;
    QString m_databaseFolder;
    Database& m_database;
    std::function<bool()> m_shouldStop;
    std::function<void(qint64)> m_sized;
    std::function<void(qint64)> m_advanced;
};
