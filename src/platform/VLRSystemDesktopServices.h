#pragma once

#include "platform/VLRDesktopServices.h"

// The desktop's own services, through QDesktopServices (xdg-open and the
// portal). Only web and mail addresses go to the browser: anything else might
// run a program, and local files go through openFile.
class VLRSystemDesktopServices : public VLRDesktopServices
{
public:
    bool openURL(const QUrl& url) override;
    bool openFile(const QString& path) override;
};
