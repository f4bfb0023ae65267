#pragma once

#include "service/VLRError.h"

#include <QByteArray>
#include <QVariantMap>

// The JSON description that comes with an installer's file: "name" (a text,
// required), "type", "description", "platform", "package_identifiers",
// "product_urls" (any value, handed on as they stand), "file_urls" (a list of
// paths), "silent_install" (a number or true/false) and "image_url" (a text).
class InstallerDescription
{
public:
    InstallerDescription() = delete;

    // The description as a dictionary; on anything else (not JSON, not an
    // object, no name, a field of the wrong kind) an empty map and an error
    // that says what is wrong, so that nothing is published from it.
    static QVariantMap dictionaryFromJSON(const QByteArray& json, vlr::OptionalError* error);

    // Not a description the service can take.
    static constexpr qint64 MalformedDescriptionError = 24;
};
