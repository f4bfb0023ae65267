#pragma once

#include "platform/VLRDesktopServices.h"

// The desktop's own services, through QDesktopServices (xdg-open and the
// portal). Only web and mail addresses go to the browser: anything else might
// run a program, and local files go through openFile.
//
// A file that the opener would run rather than show (an executable, a
// script, a desktop entry, by its mode, its name or its contents) is never
// handed to it: the file manager shows it in its folder instead.
class VLRSystemDesktopServices : public VLRDesktopServices
{
public:
    bool openURL(const QUrl& url) override;
    bool openFile(const QString& path) override;

private:
    // By its mode, its name or its contents; a folder is never run.
    static bool mightRunAProgram(const QString& path);
    static bool showInFolder(const QString& path);
    static bool openFolder(const QUrl& folder);
};
