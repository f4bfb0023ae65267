#pragma once

#include "sdk/local/LocalUtils.h"

// The web pages of the chosen environment: a team server's own pages, else
// those of the embedded service.
class RemoteUtils : public LocalUtils
{
public:
    QUrl resetPasswordURL() override;
    void getHelpURLWithCompletionHandler(const VLRURLHandler& handler) override;
};
