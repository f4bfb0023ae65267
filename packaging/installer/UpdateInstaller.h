#pragma once

#include "installer/InstallLocation.h"
#include "installer/PackageDownload.h"

#include "sdk/versions/VersionManifest.h"

#include <QObject>
#include <QTemporaryDir>
#include <QUrl>

#include <functional>
#include <memory>

// One update: reads the version manifest, fetches the package it names,
// checks its SHA-256 and installs it as the install it runs from asks. A
// bundle gets the new version unpacked beside the old one and "current"
// moved over to it, and the client is started anew; a system install hands
// the .deb to the package manager through pkexec. Whatever fails before the
// swap leaves the installed version as it was.
class UpdateInstaller : public QObject
{
    Q_OBJECT

public:
    struct Outcome
    {
        bool installed = false;
        QString message; // for the user; null when there is nothing to say
    };
    using Handler = std::function<void(const Outcome& outcome)>;
    // Stops the running client of the bundle and starts the one in its
    // "current" tree.
    using Restart = std::function<void(const QString& bundleRoot)>;

    UpdateInstaller(const InstallLocation& location, const QString& runningVersion, QObject* parent = nullptr);

    void setRestart(Restart restart) { m_restart = std::move(restart); }
    void run(const QUrl& manifestURL, Handler handler);

private:
    void manifestArrived(const QByteArray& json);
    void packageArrived(const PackageDownload::Result& result);
    void installBundle();
    void installSystemPackage();
    void finish(bool installed, const QString& message);

    InstallLocation m_location;
    QString m_runningVersion;
    Restart m_restart;
    Handler m_handler;
    VersionManifest m_manifest;
    std::unique_ptr<QTemporaryDir> m_work;
    QString m_packagePath;
    std::unique_ptr<PackageDownload> m_download;
};
