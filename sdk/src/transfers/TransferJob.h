#pragma once

#include "service/VLRError.h"

#include <QString>

// What the library keeps of one transfer, in memory and in the database: an
// upload of a file or folder into a workspace, or a download of a revision
// into a file or folder.
struct TransferJob
{
    static constexpr qint64 Upload = 1;
    static constexpr qint64 Download = 2;

    QString id;
    QString userId;
    qint64 type = Upload;
    qint64 subType = 0;
    double position = 0;
    bool finished = false;
    bool paused = false;
    // An upload's source; a download's target.
    QString filePath;
    qint64 totalSize = 0;
    QString workspaceId;
    // The revision that a download fetches, or that an upload made.
    QString revisionId;
    // An upload's publication text.
    QString text;
    // The upload under way on a team server, so that a restart of the client
    // goes on with it; empty for the local service and before it began.
    QString uploadId;
    vlr::OptionalError error;
    qint64 createdAt = 0;
    qint64 finishedAt = 0;

    // A new download of the revision into the target, made now.
    static TransferJob download(const QString& userId, const QString& workspaceId, const QString& revisionId,
                                qint64 size, const QString& target, qint64 subType);
};
