#pragma once

#include <QJsonObject>
#include <QString>

class BlobStore;

// The admin commands of the software catalogue, run on the server's
// database: add-vendor, add-product, add-installer, publish-installer,
// grant-purchase and installers. A command comes as
// {"arguments": [...], "options": {"vendor": "…", "canceled": true, …},
// "files": {"<argument index or option name>": "<sha256 in the store>"}}
// and answers {"output": "<what veluria-admin prints for it>"} or
// {"error": {"domain", "code", "message"}}.
class MarketAdmin
{
public:
    static bool handles(const QString& command);
    static QJsonObject run(const QString& command, const QJsonObject& body, const BlobStore& store);
};
