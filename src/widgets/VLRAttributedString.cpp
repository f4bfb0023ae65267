#include "widgets/VLRAttributedString.h"

#include <QFontMetrics>
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
    // Lines stand on whole pixels, so a line is as high as the font's
    // rounded line spacing.
    return QSizeF(width, QFontMetrics(font).lineSpacing() * lines.size());
}
