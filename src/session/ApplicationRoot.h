#pragma once

class StatusItemImageView;

// What the main controller asks of the application's root object.
class ApplicationRoot
{
public:
    virtual ~ApplicationRoot() = default;
    // The status item's view; may be gone.
    virtual StatusItemImageView* statusItemView() = 0;
    virtual void checkForSoftwareUpdates() = 0;
    virtual bool willLaunchAppAtStartup() = 0;
    virtual bool launchAppAtStartup(bool launch) = 0;
    // Ends the application, subject to its own refusal.
    virtual void terminate() = 0;
};
