#pragma once

#include <QUrl>

class VLRDesktopServices;

// Opens a purchase's manage page in the user's browser. The address comes
// from the service, so only a web page is opened: anything but http and https
// (a file, a program's scheme) is refused and logged. True when the desktop
// took it.
bool openManagePage(VLRDesktopServices* desktop, const QUrl& url);
