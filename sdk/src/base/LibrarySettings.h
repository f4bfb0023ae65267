#pragma once

#include <QUrl>

// The library's own configuration, in ~/.config/Veluria/VeluriaService.ini,
// apart from the client's settings.
class LibrarySettings
{
public:
    // Where the version manifest is read from; null for "this version is the
    // current one". Key "versionManifest": a URL or an absolute path.
    static QUrl versionManifest();
};
