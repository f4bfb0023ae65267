#pragma once

#include "service/VLRError.h"

#include <QUrl>

#include <functional>

using VLRURLHandler = std::function<void(const QUrl& url, const vlr::OptionalError& error)>;

class VLRUtils
{
public:
    // The folder of the library's database; a null URL when none could be
    // found. May arrive while a sign-in is already under way.
    static void setDatabaseLocation(const QUrl& location);
    static QUrl databaseLocation();
    static QUrl resetPasswordURL();
    static void getHelpURLWithCompletionHandler(const VLRURLHandler& handler);
};
