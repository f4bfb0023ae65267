#include "app/VLRText.h"

#include <QStringList>

namespace vlr {

QString format(const QString& text, const QStringList& arguments)
{
    QString out;
    out.reserve(text.size());
    qsizetype next = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('%') && i + 1 < text.size() && text[i + 1] == QLatin1Char('@')) {
            out += next < arguments.size() ? arguments[next++] : QStringLiteral("(null)");
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

} // namespace vlr
