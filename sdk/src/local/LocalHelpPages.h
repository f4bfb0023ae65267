#pragma once

#include <QUrl>

// The local service has no web site: the pages that the client opens in the
// browser for it (help, forgotten password) are small files written beside
// the database.
class LocalHelpPages
{
public:
    // A null URL when the database folder is not known or not writable.
    static QUrl helpPage();
    static QUrl resetPasswordPage();

private:
    static QUrl write(const QString& fileName, const QString& title, const QString& body);
};
