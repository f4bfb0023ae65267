#pragma once

#include <QString>
#include <QVariant>

// Turns a defaults value into the text kept in an INI file and back. INI keeps
// no types, so every value carries a short type tag ("bool:true", "int:42",
// "double:0.1", "string:text", "date:2024-05-01T09:30:00.000+02:00"); values of
// any other type are kept as their QDataStream form in base64 ("variant:...").
// Decoding gives back the same type and the same value.
class VLRDefaultsValueCodec
{
public:
    static QString encode(const QVariant& value);

    // A stored value without a known tag (a file edited by hand) is handed back
    // as QSettings read it.
    static QVariant decode(const QVariant& stored);
};
