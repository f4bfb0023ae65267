#pragma once

#include <QString>

#include <optional>

// The link to one revision of a file in a workspace:
//   veluria://download?workspace=<workspace id>&revision=<revision id>
// Both identifiers are UUIDs; anything else is not a download link.
class DownloadLink
{
public:
    struct Target
    {
        QString workspaceId;
        QString revisionId;
    };

    static QString make(const QString& workspaceId, const QString& revisionId);
    static std::optional<Target> parse(const QString& text);
};
