#pragma once

#include <QString>

// The link "<root>/current" that names the version of a bundle in use. It is
// replaced in one step (a new link renamed over the old), so that a start of
// the client at any moment finds either the old version or the new one whole.
class BundleSwap
{
public:
    static constexpr const char* CurrentLinkName = "current";

    // Points "current" at the folder "<root>/<versionFolder>"; the error, or
    // null.
    static QString pointCurrentAt(const QString& root, const QString& versionFolder);
};
