#pragma once

class InstallerViewController;

class InstallerViewControllerDelegate
{
public:
    virtual ~InstallerViewControllerDelegate() = default;
    virtual void installerViewControllerNeedsInstallation(InstallerViewController* controller) = 0;
    virtual void installerViewControllerNeedsDelete(InstallerViewController* controller) = 0;
    virtual void installerViewControllerNeedsForget(InstallerViewController* controller) = 0;
};
