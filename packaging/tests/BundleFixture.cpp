#include "BundleFixture.h"

#include "installer/BundleSwap.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

BundleFixture::BundleFixture(const QString& rootName)
    : m_root(m_dir.filePath(rootName))
{
    QDir().mkpath(m_root);
    makeTree(m_root, QStringLiteral("2.0.0"));
    BundleSwap::pointCurrentAt(m_root, QStringLiteral("veluria-2.0.0"));
}

QString BundleFixture::binFolder(const QString& version) const
{
    return m_root + QStringLiteral("/veluria-") + version + QStringLiteral("/bin");
}

void BundleFixture::makeTree(const QString& folder, const QString& version)
{
    const QString bin = folder + QStringLiteral("/veluria-") + version + QStringLiteral("/bin");
    QDir().mkpath(bin);
    QFile program(bin + QStringLiteral("/veluria"));
    program.open(QIODevice::WriteOnly);
    program.write("#!/bin/sh\necho " + version.toUtf8() + " > \"$(dirname \"$0\")/../../started\"\n");
    program.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

QByteArray BundleFixture::archive(const QString& version, const QStringList& extraMembers) const
{
    QTemporaryDir staging;
    makeTree(staging.path(), version);
    for (const QString& member : extraMembers) {
        QFile file(staging.filePath(QDir::cleanPath(member)));
        file.open(QIODevice::WriteOnly);
    }
    QProcess tar;
    tar.setWorkingDirectory(staging.path());
    tar.start(QStringLiteral("tar"),
              QStringList{QStringLiteral("czPf"), QStringLiteral("-"), QStringLiteral("veluria-") + version}
                  + extraMembers);
    tar.waitForFinished();
    return tar.readAllStandardOutput();
}

QString BundleFixture::currentVersion() const
{
    return QFileInfo(m_root + QStringLiteral("/current")).symLinkTarget().section(QStringLiteral("veluria-"), -1);
}

QString BundleFixture::startedVersion() const
{
    QFile started(m_root + QStringLiteral("/started"));
    return started.open(QIODevice::ReadOnly) ? QString::fromUtf8(started.readAll()).trimmed() : QString();
}
