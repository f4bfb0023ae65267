#pragma once

#include <QString>

// Publications and revisions, written with their push event in one
// transaction: every member sees a publication once it exists, never before.
class Publications
{
public:
    // The new publication's identifier, or a null string.
    static QString publishText(const QString& workspaceId, const QString& userId, const QString& text);

    struct Revision
    {
        QString fileName;
        qint64 size = 0;
        QString sha256;
        // A tar stream of a folder's files rather than one file's bytes.
        bool folder = false;
    };
    // The new revision's identifier, or a null string; with publish, a
    // publication with the text goes with it. The upload that brought the
    // content, if any, is marked finished with it in the same transaction.
    static QString addRevision(const QString& workspaceId, const QString& userId, const Revision& revision,
                               bool publish, const QString& text, const QString& finishedUpload = {});
};
