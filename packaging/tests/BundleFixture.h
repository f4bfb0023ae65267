#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

// A per-user bundle in a temporary root: "<root>/veluria-<version>/bin/veluria"
// is a script that notes in "<root>/started" which version started, and
// "<root>/current" points at the version installed first.
class BundleFixture
{
public:
    explicit BundleFixture(const QString& rootName = QStringLiteral("opt"));

    QString root() const { return m_root; }
    QString binFolder(const QString& version) const;
    // Makes the tree of a version under the folder.
    static void makeTree(const QString& folder, const QString& version);
    // A bundle archive of the version, as CPack makes it, with further
    // members named as given (such as "veluria-2.1.0/../evil").
    QByteArray archive(const QString& version, const QStringList& extraMembers = {}) const;
    // The version "current" names, from its folder's name.
    QString currentVersion() const;
    QString startedVersion() const;

private:
    QTemporaryDir m_dir;
    QString m_root;
};
