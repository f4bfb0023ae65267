#pragma once

#include <QHash>
#include <QImage>
#include <QList>
#include <QString>

#include <optional>

class Database;

// Workspaces, their members, files, revisions and publications.
class WorkspaceStore
{
public:
    static constexpr qint64 OwnerRole = 1;
    static constexpr qint64 MemberRole = 2;

    struct Member
    {
        QString userId;
        QString firstName;
        QString lastName;
        qint64 role = 0;
        QImage avatar;
    };
    struct Workspace
    {
        QString id;
        QString name;
        qint64 updatedAt = 0;
        QList<Member> members;
    };
    struct Asset
    {
        QString id;
        QString workspaceId;
        QString name;
        qint64 latestRevision = 0;
    };
    struct Revision
    {
        QString id;
        QString assetId;
        QString assetName;
        QString workspaceId;
        QString workspaceName;
        qint64 number = 0;
        QString content;
        bool isFolder = false;
        qint64 size = 0;
    };
    struct Publication
    {
        qint64 seq = 0;
        QString workspaceId;
        QString userId;
        QString userFirstName;
        QString userEmail;
        QString projectName;
        QString text;
        QString revisionId;
    };

    explicit WorkspaceStore(Database& database);

    // The user's workspaces, newest change first; nullopt when the database
    // failed.
    std::optional<QList<Workspace>> workspacesOf(const QString& userId);
    std::optional<Workspace> workspace(const QString& workspaceId);
    std::optional<QList<Asset>> assetsOf(const QString& userId);
    qint64 workspaceCountOf(const QString& userId);
    bool isMember(const QString& workspaceId, const QString& userId);

    // The new workspace's identifier, the creator its owner; null on failure.
    QString create(const QString& name, const QString& ownerId, qint64 updatedAt);
    bool addMember(const QString& workspaceId, const QString& userId, qint64 role);
    // The publication's number; 0 on failure.
    qint64 publishText(const QString& workspaceId, const QString& userId, const QString& text);
    // A new revision of the workspace's file of that name, published with
    // the text; the revision's identifier, null on failure.
    QString addRevision(const QString& workspaceId, const QString& userId, const QString& assetName,
                        const QString& content, bool isFolder, qint64 size, const QString& text);
    std::optional<Revision> revision(const QString& revisionId);
    std::optional<Revision> latestRevision(const QString& assetId);

    // Publications after the given number in the user's workspaces, oldest
    // first; nullopt when the database failed.
    std::optional<QList<Publication>> publicationsSince(const QString& userId, qint64 afterSeq);
    qint64 lastPublicationSeq();
    // Moves with every change of what sessions show; -1 on failure.
    qint64 catalogVersion();

private:
    std::optional<QList<Member>> membersOf(const char* sql, const QString& key,
                                           QHash<QString, QList<Member>>* byWorkspace);
    bool touch(const QString& workspaceId, qint64 when);

    Database& m_database;
};
