#pragma once

#include "service/VLRTypes.h"

class QWidget;
class PreferencesViewControllerDelegate;

// The preferences tab as its owner drives it.
class PreferencesPage
{
public:
    virtual ~PreferencesPage() = default;
    virtual QWidget* view() = 0;
    virtual void setDelegate(PreferencesViewControllerDelegate* delegate) = 0;

    // A nil user shows no name.
    virtual void updateWithUser(const VLRUserPtr& user) = 0;
    virtual void setLoggedIn(bool loggedIn) = 0;
    virtual void updateDownloadCacheSize(qint64 bytes) = 0;
};
