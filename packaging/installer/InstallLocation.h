#pragma once

#include <QString>

// Where the running helper was installed from, which decides how an update
// is installed: a per-user bundle ("<root>/veluria-<version>/bin/" with the
// link "<root>/current" to the version in use), a system install that the
// package manager owns, or a plain `cmake --install` tree that neither can
// update.
class InstallLocation
{
public:
    enum class Kind { Bundle, System, Plain };

    // The install that holds the program folder (the folder of bin/).
    static InstallLocation forProgramFolder(const QString& binFolder);

    Kind kind() const { return m_kind; }
    // The bundle's root, which holds its versions and "current".
    const QString& bundleRoot() const { return m_bundleRoot; }
    // The tree of the version in use (for a bundle, "<root>/veluria-<v>").
    const QString& tree() const { return m_tree; }

private:
    Kind m_kind = Kind::Plain;
    QString m_bundleRoot;
    QString m_tree;
};
