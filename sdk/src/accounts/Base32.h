#pragma once

#include <QByteArray>
#include <QString>

// RFC 4648 base 32, the form in which authenticator apps take secrets:
// upper-case letters and digits 2-7, without padding.
class Base32
{
public:
    static QString encode(const QByteArray& data);
    // Ignores case, blanks and padding; a null array for anything else.
    static QByteArray decode(const QString& text);
};
