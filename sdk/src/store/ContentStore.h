#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

// File contents of the local service, each kept once under its SHA-256 in a
// folder beside the database (Store/ab/abcdef...). A content enters only
// whole: written to a partial file in Store/tmp, synced, checked, then
// renamed into place, so that a crash never leaves half a content under a
// name.
class ContentStore
{
public:
    explicit ContentStore(const QString& databaseFolder);

    bool prepare(QString* failure) const;
    QString pathOf(const QByteArray& digest) const;
    QString partialPath(const QString& name) const;
    bool contains(const QByteArray& digest) const;

    // Takes a complete, synced partial file whose content has this digest.
    bool commit(const QString& partial, const QByteArray& digest, QString* failure) const;
    // As commit, but the rename is left for a later sync() to make durable.
    bool place(const QString& partial, const QByteArray& digest, QString* failure) const;
    // Writes a small content to the partial file of this name, unsynced;
    // its digest, or a null array.
    QByteArray stage(const QByteArray& data, const QString& name, QString* failure) const;
    // Puts everything written to the store's file system on disk.
    bool sync(QString* failure) const;
    // Stores a small content at once; its digest, or a null array.
    QByteArray put(const QByteArray& data, QString* failure) const;
    // Removes the partial files in Store/tmp that nobody is writing, but
    // those whose name the predicate calls resumable; how many went.
    int removeLeftovers(const std::function<bool(const QString& name)>& resumable) const;
    // A small content, read whole after its digest was checked; null when
    // missing or damaged.
    QByteArray read(const QByteArray& digest) const;

    static bool isDigest(const QByteArray& text);

private:
    QString m_root;
};
