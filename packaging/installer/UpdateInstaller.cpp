#include "installer/UpdateInstaller.h"

#include "installer/BundleArchive.h"
#include "installer/BundleSwap.h"
#include "installer/DesktopIntegration.h"

#include "service/VLRVersionInfo.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

UpdateInstaller::UpdateInstaller(const InstallLocation& location, const QString& runningVersion, QObject* parent)
    : QObject(parent)
    , m_location(location)
    , m_runningVersion(runningVersion)
    , m_manifest(VersionManifest::current(runningVersion))
{ }

void UpdateInstaller::run(const QUrl& manifestURL, Handler handler)
{
    m_handler = std::move(handler);
    if (manifestURL.isEmpty()) {
        finish(false, QStringLiteral("No version manifest is set up, so there is nothing to update from."));
        return;
    }
    // The bundle's work lies beside its versions, so that the finished tree
    // is renamed into place without crossing file systems.
    const QString workParent =
        m_location.kind() == InstallLocation::Kind::Bundle ? m_location.bundleRoot() : QDir::tempPath();
    m_work = std::make_unique<QTemporaryDir>(workParent + QStringLiteral("/.veluria-update-XXXXXX"));
    if (!m_work->isValid()) {
        finish(false, QStringLiteral("The update can't be prepared: %1").arg(m_work->errorString()));
        return;
    }
    m_download = std::make_unique<PackageDownload>();
    const QString manifestPath = m_work->filePath(QStringLiteral("manifest.json"));
    m_download->start(manifestURL, manifestPath, VersionManifest::MaximumSize,
                      [this, manifestPath](const PackageDownload::Result& result) {
                          if (!result.error.isNull()) {
                              finish(false, QStringLiteral("The version manifest can't be read: %1").arg(result.error));
                              return;
                          }
                          QFile file(manifestPath);
                          manifestArrived(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
                      });
}

void UpdateInstaller::manifestArrived(const QByteArray& json)
{
    vlr::OptionalError error;
    m_manifest = VersionManifest::parse(json, m_runningVersion, &error);
    if (error) {
        finish(false, QStringLiteral("The version manifest can't be read: %1").arg(error->localizedDescription));
        return;
    }
    if (!m_manifest.outOfDate()) {
        finish(false, QString());
        return;
    }
    if (m_manifest.packageURL().isEmpty() || m_manifest.sha256().isEmpty()) {
        finish(false, QStringLiteral("The version manifest names no package with its SHA-256."));
        return;
    }
    m_packagePath = m_work->filePath(QStringLiteral("package"));
    m_download->start(m_manifest.packageURL(), m_packagePath, PackageDownload::MaximumSize,
                      [this](const PackageDownload::Result& result) { packageArrived(result); });
}

void UpdateInstaller::packageArrived(const PackageDownload::Result& result)
{
    if (!result.error.isNull()) {
        finish(false, QStringLiteral("The new version can't be downloaded: %1").arg(result.error));
        return;
    }
    if (QString::fromLatin1(result.sha256Hex) != m_manifest.sha256()) {
        finish(false,
               QStringLiteral("The downloaded package is not the one announced (its SHA-256 differs); "
                              "nothing was installed."));
        return;
    }
    switch (m_location.kind()) {
    case InstallLocation::Kind::Bundle:
        installBundle();
        break;
    case InstallLocation::Kind::System:
        installSystemPackage();
        break;
    case InstallLocation::Kind::Plain:
        finish(false,
               QStringLiteral("This copy of Veluria was installed by hand and can't update itself. "
                              "The new package is %1")
                   .arg(m_manifest.packageURL().toDisplayString()));
        break;
    }
}

void UpdateInstaller::installBundle()
{
    const QString staging = m_work->filePath(QStringLiteral("tree"));
    QDir().mkpath(staging);
    const BundleArchive::Unpacked unpacked = BundleArchive::unpack(m_packagePath, staging);
    if (!unpacked.error.isNull()) {
        finish(false, QStringLiteral("The new version can't be installed: %1").arg(unpacked.error));
        return;
    }
    const QString root = m_location.bundleRoot();
    const QString target = root + QLatin1Char('/') + unpacked.topName;
    if (QFileInfo(target).canonicalFilePath() == m_location.tree()) {
        finish(false, QStringLiteral("The package holds the version in use, %1.").arg(unpacked.topName));
        return;
    }
    // A leftover of an earlier attempt at the same version goes first.
    if (QFileInfo::exists(target))
        QDir(target).removeRecursively();
    if (!QDir().rename(staging + QLatin1Char('/') + unpacked.topName, target)) {
        finish(false, QStringLiteral("The new version can't be put beside the old one in %1.").arg(root));
        return;
    }
    const QString swapError = BundleSwap::pointCurrentAt(root, unpacked.topName);
    if (!swapError.isNull()) {
        QDir(target).removeRecursively();
        finish(false, QStringLiteral("The new version can't be installed: %1").arg(swapError));
        return;
    }
    DesktopIntegration::followCurrent(m_location.tree(), root);
    // The version just left stays, for going back by hand; older ones go.
    const QStringList trees = QDir(root).entryList({QStringLiteral("veluria-*")}, QDir::Dirs | QDir::NoSymLinks);
    for (const QString& tree : trees) {
        const QString path = root + QLatin1Char('/') + tree;
        if (tree != unpacked.topName && QFileInfo(path).canonicalFilePath() != m_location.tree())
            QDir(path).removeRecursively();
    }
    if (m_restart)
        m_restart(root);
    finish(true, QStringLiteral("Veluria %1 is installed.").arg(m_manifest.info()->latestVersionNice()));
}

void UpdateInstaller::installSystemPackage()
{
    // The package stays where the user can find it, whatever comes next.
    const QString kept = QStandardPaths::writableLocation(QStandardPaths::CacheLocation)
        + QStringLiteral("/veluria-%1.deb").arg(m_manifest.info()->latestVersionNice());
    QDir().mkpath(QFileInfo(kept).absolutePath());
    QFile::remove(kept);
    QFile::rename(m_packagePath, kept);
    const QString pkexec = QStandardPaths::findExecutable(QStringLiteral("pkexec"));
    const QString byHand = QStringLiteral("sudo apt-get install '%1'").arg(kept);
    if (pkexec.isEmpty()) {
        finish(false, QStringLiteral("To install the new version, run: %1").arg(byHand));
        return;
    }
    auto* process = new QProcess(this);
    connect(process, &QProcess::finished, this, [this, process, byHand](int code, QProcess::ExitStatus status) {
        process->deleteLater();
        if (status == QProcess::NormalExit && code == 0)
            finish(true,
                   QStringLiteral("Veluria %1 is installed; it starts with the next launch.")
                       .arg(m_manifest.info()->latestVersionNice()));
        else
            finish(false,
                   QStringLiteral("The system's installer did not install the new version. "
                                  "To install it, run: %1")
                       .arg(byHand));
    });
    process->start(pkexec, {QStringLiteral("apt-get"), QStringLiteral("install"), QStringLiteral("-y"), kept});
}

void UpdateInstaller::finish(bool installed, const QString& message)
{
    m_work.reset();
    if (Handler handler = std::exchange(m_handler, nullptr))
        handler({installed, message});
}
