#include "widgets/ImageCatalogueAssetNames.h"

#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"

#include <QColor>
#include <QDir>
#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>

namespace {

// Pictures meant for a coloured ground are shown on it.
QColor groundFor(const QString& name)
{
    if (name.contains("DarkMode"))
        return QColor(43, 43, 46);
    if (name.contains("cc_expired"))
        return QColor(249, 109, 109);
    if (name.contains("cc_warning") || name.contains("cc_about_to_expire"))
        return QColor(255, 206, 0);
    if ((name.startsWith("queue_") && !name.startsWith("queue_main")) || name == "upload" || name == "download"
        || name == "auto_revision")
        return QColor(250, 250, 250);
    return QColor(233, 233, 233);
}

struct Cell
{
    QString name;
    QRect picture;
    QRect frame;
};

// Lays the pictures out in rows, each in a cell wide enough for its name.
QList<Cell> layOut(const QStringList& names, const QFont& font, int sheetWidth, int* height)
{
    const QFontMetrics metrics(font);
    const int gap = 10;
    QList<Cell> cells;
    int x = gap;
    int y = gap;
    int rowHeight = 0;
    for (const QString& name : names) {
        const QSize size = VLRImageCatalogue::naturalSize(name);
        const int width = qMax(size.width() + 12, metrics.horizontalAdvance(name) + 8);
        const int cellHeight = size.height() + 12 + metrics.height() + 4;
        if (x + width > sheetWidth - gap) {
            x = gap;
            y += rowHeight + gap;
            rowHeight = 0;
        }
        const QRect frame(x, y, width, cellHeight);
        cells.append({name, QRect(QPoint(x + (width - size.width()) / 2, y + 6), size), frame});
        x += width + gap;
        rowHeight = qMax(rowHeight, cellHeight);
    }
    *height = y + rowHeight + gap;
    return cells;
}

QImage contactSheet(qreal ratio)
{
    const QFont font = VLRFonts::muli(9);
    const int width = 1400;
    int height = 0;
    const QList<Cell> cells = layOut(clientImageAssetNames(), font, width, &height);

    QImage sheet(QSize(width, height) * ratio, QImage::Format_ARGB32_Premultiplied);
    sheet.setDevicePixelRatio(ratio);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    painter.setFont(font);
    for (const Cell& cell : cells) {
        const QColor ground = groundFor(cell.name);
        painter.fillRect(cell.frame, ground);
        painter.drawPixmap(cell.picture.topLeft(), VLRImageCatalogue::imageNamed(cell.name, QSize(), ratio));
        painter.setPen(ground.lightness() < 128 ? QColor(250, 250, 250) : QColor(88, 88, 91));
        painter.drawText(QRect(cell.frame.left(), cell.picture.bottom() + 6, cell.frame.width(), 14),
                         Qt::AlignHCenter | Qt::AlignTop, cell.name);
    }
    return sheet;
}

} // namespace

// Renders every picture at one and two device pixels a point, so that a person
// can look the whole set over.
TEST(ImageCatalogueContactSheet, EveryPictureAtOneAndTwoTimes)
{
    ASSERT_TRUE(QDir().mkpath(VELURIA_SCREENSHOT_DIR));
    for (const int ratio : {1, 2}) {
        const QImage sheet = contactSheet(ratio);
        const QString path = QStringLiteral(VELURIA_SCREENSHOT_DIR "/icons-%1x.png").arg(ratio);
        EXPECT_TRUE(sheet.save(path)) << path.toStdString();
    }
}
