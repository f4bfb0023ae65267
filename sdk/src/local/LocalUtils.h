#pragma once

#include "service/VLRUtils.h"

// The database folder, shared by every instance, and the web pages of the
// chosen environment (local help pages for the embedded service).
class LocalUtils : public VLRUtils
{
public:
    void setDatabaseLocation(const QUrl& location) override;
    QUrl databaseLocation() override;
    QUrl resetPasswordURL() override;
    void getHelpURLWithCompletionHandler(const VLRURLHandler& handler) override;
};
