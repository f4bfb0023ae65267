#include "sdk/accounts/Base32.h"

namespace {
const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";
}

QString Base32::encode(const QByteArray& data)
{
    QString text;
    quint32 buffer = 0;
    int bits = 0;
    for (const char byte : data) {
        buffer = (buffer << 8) | quint8(byte);
        bits += 8;
        while (bits >= 5) {
            text.append(QLatin1Char(alphabet[(buffer >> (bits - 5)) & 31]));
            bits -= 5;
        }
    }
    if (bits > 0)
        text.append(QLatin1Char(alphabet[(buffer << (5 - bits)) & 31]));
    return text;
}

QByteArray Base32::decode(const QString& text)
{
    QByteArray data("");
    quint32 buffer = 0;
    int bits = 0;
    for (const QChar c : text) {
        if (c.isSpace() || c == QLatin1Char('='))
            continue;
        const char upper = char(c.toUpper().toLatin1());
        const char* found = upper ? strchr(alphabet, upper) : nullptr;
        if (!found)
            return {};
        buffer = (buffer << 5) | quint32(found - alphabet);
        bits += 5;
        if (bits >= 8) {
            data.append(char((buffer >> (bits - 8)) & 0xff));
            bits -= 8;
        }
    }
    return data;
}
