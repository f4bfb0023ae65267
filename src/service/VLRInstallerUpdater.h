#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

// The installer side of a session: which installers are new, updatable or not
// installed, and what is being downloaded or installed now.
class VLRInstallerUpdater : public VLRObject
{
public:
    const VLRInstallerList& installerUpdates() const { return m_installerUpdates; }
    const VLRInstallerList& neverInstalled() const { return m_neverInstalled; }
    const VLRInstallerList& notInstalled() const { return m_notInstalled; }
    const VLRObjectList& downloadOperations() const { return m_downloadOperations; }
    const VLRObjectPtr& currentInstall() const { return m_currentInstall; }

    void setInstallerUpdates(const VLRInstallerList& value) { changeValue(m_installerUpdates, value, "installerUpdates"); }
    void setNeverInstalled(const VLRInstallerList& value) { changeValue(m_neverInstalled, value, "neverInstalled"); }
    void setNotInstalled(const VLRInstallerList& value) { changeValue(m_notInstalled, value, "notInstalled"); }
    void setDownloadOperations(const VLRObjectList& value) { m_downloadOperations = value; }
    void setCurrentInstall(const VLRObjectPtr& value) { m_currentInstall = value; }
    // "overallOperations" has no value of its own: its change only says that
    // the operations above moved.
    void overallOperationsDidChange() { didChangeValueForKey(QStringLiteral("overallOperations")); }

    QVariant valueForKey(const QString& key) const override;

private:
    VLRInstallerList m_installerUpdates;
    VLRInstallerList m_neverInstalled;
    VLRInstallerList m_notInstalled;
    VLRObjectList m_downloadOperations;
    VLRObjectPtr m_currentInstall;
};
