#pragma once

#include <QString>
#include <QUrl>

#include <chrono>

// The folder that holds the library's database and content store. The client
// hands it over once at launch, possibly after a sign-in has already started;
// work that needs it waits for it.
class DatabaseLocation
{
public:
    // A null URL says that the client found no folder for it.
    static void set(const QUrl& folder);
    static QUrl current();

    // The folder's path once it is known, or a null string when the client
    // had none or it did not arrive in time.
    static QString waitForFolder(std::chrono::milliseconds timeout);

    static QString databaseFileName() { return QStringLiteral("Veluria.sqlite"); }
    static QString storeFolderName() { return QStringLiteral("Store"); }
    static QString cacheFolderName() { return QStringLiteral("DownloadCache"); }
};
