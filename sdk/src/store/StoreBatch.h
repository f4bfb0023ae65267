#pragma once

#include "sdk/store/ResumableCopy.h"

#include <QList>
#include <QString>

#include <functional>

class ContentStore;

// Many files into the content store as one, as a folder's upload needs: a
// pool of a few workers copies and hashes each file into its own partial
// file, none synced alone. Then commit() syncs the store's file system once,
// so that every content is on disk, renames the partial files into place,
// and syncs once more, for the names. A content is under its name only once
// it is whole on disk, and a revision that the caller records after commit()
// never points at a content that a crash could take away.
class StoreBatch
{
public:
    static constexpr int workers = 4;

    struct Entry
    {
        QString source;
        QString partial;
    };
    struct Copied
    {
        QByteArray digest;
        qint64 size = 0;
    };
    struct Failure
    {
        QString partial;
        QString text;
        bool sourceChanged = false;
        bool onSource = false;
    };

    // advanced hears of every copied chunk, one call at a time.
    StoreBatch(const ContentStore& store, std::function<bool()> shouldStop, std::function<void(qint64 bytes)> advanced);

    // Copies each source into its partial file; the first failure or a stop
    // ends the other copies at their next chunk.
    ResumableCopy::Outcome copy(const QList<Entry>& entries);
    // After a Done copy: each entry's content, in the order given.
    const QList<Copied>& copied() const { return m_copied; }
    // After a Failed copy: what failed first.
    const Failure& failure() const { return m_failure; }

    // A small content of the batch's own, such as a folder's manifest; its
    // digest, or a null array.
    QByteArray stage(const QByteArray& data, const QString& name, QString* failure);
    bool commit(QString* failure);

private:
    const ContentStore& m_store;
    std::function<bool()> m_shouldStop;
    std::function<void(qint64)> m_advanced;
    QList<Copied> m_copied;
    QList<std::pair<QString, QByteArray>> m_staged;
    Failure m_failure;
};
