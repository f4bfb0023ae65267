#pragma once

#include <QString>

// The file manager's favourites: the GTK bookmarks file, one "URI label" a
// line, which GTK file managers and dialogs watch.
class GtkBookmarks
{
public:
    // $XDG_CONFIG_HOME/gtk-3.0/bookmarks.
    static QString bookmarksFilePath();
    // Puts the folder first under that label; an entry for it elsewhere in the
    // list moves to the front rather than appearing twice.
    static bool insertFirst(const QString& folderPath, const QString& label);
};
