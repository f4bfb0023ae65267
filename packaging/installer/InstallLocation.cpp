#include "installer/InstallLocation.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace {

// True if the package manager lists the file as one of a package's.
bool ownedByPackage(const QString& path)
{
    const QString query = QStandardPaths::findExecutable(QStringLiteral("dpkg-query"));
    if (query.isEmpty())
        return false;
    QProcess process;
    process.start(query, {QStringLiteral("-S"), path});
    return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace

InstallLocation InstallLocation::forProgramFolder(const QString& binFolder)
{
    InstallLocation location;
    const QFileInfo tree(QFileInfo(binFolder).canonicalFilePath() + QStringLiteral("/.."));
    location.m_tree = tree.canonicalFilePath();
    const QFileInfo current(tree.canonicalFilePath() + QStringLiteral("/../current"));
    if (current.isSymLink() && current.canonicalFilePath() == location.m_tree) {
        location.m_kind = Kind::Bundle;
        location.m_bundleRoot = QFileInfo(current.absolutePath()).canonicalFilePath();
    } else if (ownedByPackage(QDir(binFolder).filePath(QStringLiteral("veluria")))) {
        location.m_kind = Kind::System;
    }
    return location;
}
