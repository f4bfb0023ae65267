#include "widgets/VLRAttributedString.h"

#include <QFontMetricsF>
#include <QStringList>

#include <algorithm>

QSizeF VLRAttributedString::size() const
{
    const QFontMetricsF metrics(font);
    const QStringList lines = string.split(QLatin1Char('\n'));
    qreal width = 0;
    for (const QString& line : lines)
        width = std::max(width, metrics.horizontalAdvance(line));
    return QSizeF(width, metrics.lineSpacing() * lines.size());
}
