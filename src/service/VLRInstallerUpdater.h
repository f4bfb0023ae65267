#pragma once

#include "service/VLRObject.h"
#include "service/VLRTypes.h"

// The installer side of a session: which installers are new, updatable or not
// installed, and what is being downloaded or installed now.
class VLRInstallerUpdater : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView installerUpdates{"installerUpdates"};
        static constexpr QLatin1StringView neverInstalled{"neverInstalled"};
        static constexpr QLatin1StringView notInstalled{"notInstalled"};
        static constexpr QLatin1StringView overallOperations{"overallOperations"};
    };

    const VLRInstallerList& installerUpdates() const { return m_installerUpdates; }
    const VLRInstallerList& neverInstalled() const { return m_neverInstalled; }
    const VLRInstallerList& notInstalled() const { return m_notInstalled; }
    const VLRObjectList& downloadOperations() const { return m_downloadOperations; }
    const VLRObjectPtr& currentInstall() const { return m_currentInstall; }

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setInstallerUpdates(const VLRInstallerList& value)
    {
        changeValue(m_installerUpdates, value, Key::installerUpdates);
    }
    void setNeverInstalled(const VLRInstallerList& value) { changeValue(m_neverInstalled, value, Key::neverInstalled); }
    void setNotInstalled(const VLRInstallerList& value) { changeValue(m_notInstalled, value, Key::notInstalled); }
    void setDownloadOperations(const VLRObjectList& value) { m_downloadOperations = value; }
    void setCurrentInstall(const VLRObjectPtr& value) { m_currentInstall = value; }
    // "overallOperations" has no value of its own: its change only says that
    // the operations above moved.
    void overallOperationsDidChange() { didChangeValueForKey(Key::overallOperations); }

private:
    VLRInstallerList m_installerUpdates;
    VLRInstallerList m_neverInstalled;
    VLRInstallerList m_notInstalled;
    VLRObjectList m_downloadOperations;
    VLRObjectPtr m_currentInstall;
};
