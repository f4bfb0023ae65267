#pragma once

#include "service/VLRError.h"

#include <QUrl>

#include <functional>

using VLRURLHandler = std::function<void(const QUrl& url, const vlr::OptionalError& error)>;

class VLRUtils
{
public:
    virtual ~VLRUtils() = default;
    // The folder of the library's database; a null URL when none could be
    // found. May arrive while a sign-in is already under way.
    virtual void setDatabaseLocation(const QUrl& location) = 0;
    virtual QUrl databaseLocation() = 0;
    virtual QUrl resetPasswordURL() = 0;
    virtual void getHelpURLWithCompletionHandler(const VLRURLHandler& handler) = 0;
};
