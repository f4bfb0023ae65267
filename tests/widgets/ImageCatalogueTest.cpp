#include "widgets/ImageCatalogueAssetNames.h"

#include "widgets/VLRImageCatalogue.h"

#include <QDir>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QSvgRenderer>

#include <gmock/gmock.h>

namespace {

int visiblePixels(const QPixmap& pixmap)
{
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(line[x]) > 0;
    }
    return count;
}

QStringList warnings;

void collectWarnings(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtWarningMsg)
        warnings << message;
}

} // namespace

TEST(ImageCatalogue, EveryPictureTheClientUsesRendersAtOneAndTwoTimes)
{
    const QStringList names = clientImageAssetNames();
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        ASSERT_TRUE(VLRImageCatalogue::hasImageNamed(name));
        QSvgRenderer renderer(VLRImageCatalogue::resourcePathForName(name));
        ASSERT_TRUE(renderer.isValid());
        const QSize natural = VLRImageCatalogue::naturalSize(name);
        ASSERT_FALSE(natural.isEmpty());
        EXPECT_EQ(natural, renderer.defaultSize());

        for (const qreal ratio : {1.0, 2.0}) {
            const QPixmap picture = VLRImageCatalogue::imageNamed(name, QSize(), ratio);
            EXPECT_EQ(picture.size(), natural * ratio);
            EXPECT_EQ(picture.deviceIndependentSize(), QSizeF(natural));
            EXPECT_GT(visiblePixels(picture), 0);
        }
    }

    // Nothing is compiled in that no page asks for.
    QStringList asked;
    for (const QString& name : names)
        asked << VLRImageCatalogue::resourcePathForName(name).mid(QStringLiteral(":/images/").size());
    QStringList shipped = QDir(":/images").entryList(QDir::Files);
    asked.sort();
    shipped.sort();
    EXPECT_EQ(shipped.join(' ').toStdString(), asked.join(' ').toStdString());
}

TEST(ImageCatalogue, PicturesAreDrawnForTheViewsThatHoldThem)
{
    // The status item is 24 by 24; transfer rows hold their icons and buttons in
    // 15 by 15 views; the warning badge is 16 by 16; tab buttons take 32 by 32.
    const std::pair<const char*, int> sizes[] = {{"statusItemGreyedOut", 24},
                                                 {"statusItemDarkMode", 24},
                                                 {"V-icon2_00017", 24},
                                                 {"queue_icon_auto_revision_active", 15},
                                                 {"queue_icons_transfer_retry", 15},
                                                 {"warning_triangle", 16},
                                                 {"tabBarPreferencesSelected", 32},
                                                 {"queue_main_icon_transfers_in_progress_active", 32}};
    for (const auto& [name, side] : sizes)
        EXPECT_EQ(VLRImageCatalogue::naturalSize(name), QSize(side, side)) << name;

    // The busy animation moves at every one of its 33 steps, and its last
    // frame leads back into the first.
    const auto frame = [](int i) {
        return VLRImageCatalogue::imageNamed(QString::asprintf("V-icon2_%05i", i % 33), QSize(), 2.0).toImage();
    };
    for (int i = 0; i <= 32; ++i)
        EXPECT_NE(frame(i), frame(i + 1)) << i;
}

TEST(ImageCatalogue, NameEndingInPdfFindsTheDrawingWithoutTheEnding)
{
    for (const char* name : {"workspaces_loading.pdf", "workspaces_loading"})
        EXPECT_EQ(VLRImageCatalogue::resourcePathForName(name).toStdString(), ":/images/workspaces_loading.svg");
    EXPECT_TRUE(VLRImageCatalogue::hasImageNamed("workspaces_empty_background.pdf"));
    // The ending goes once: a doubled ending names another picture.
    EXPECT_FALSE(VLRImageCatalogue::hasImageNamed("workspaces_empty_background.pdf.pdf"));
    // Only a trailing ".pdf" is an ending.
    EXPECT_FALSE(VLRImageCatalogue::hasImageNamed("workspaces_empty_background.svg"));

    const QImage withEnding = VLRImageCatalogue::imageNamed("file_drop_loading.pdf", QSize(), 1.0).toImage();
    ASSERT_FALSE(withEnding.isNull());
    EXPECT_EQ(withEnding, VLRImageCatalogue::imageNamed("file_drop_loading", QSize(), 1.0).toImage());
}

TEST(ImageCatalogue, UnknownNameGivesNothingAndIsReportedOnce)
{
    warnings.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectWarnings);

    // Absent names are no pictures and no fault, and not reported.
    for (const QString& name : {QStringLiteral("no_such_picture"), QString(), QStringLiteral("")}) {
        EXPECT_FALSE(VLRImageCatalogue::hasImageNamed(name));
        EXPECT_TRUE(VLRImageCatalogue::imageNamed(name, QSize(16, 16), 2.0).isNull());
        EXPECT_TRUE(VLRImageCatalogue::imageNamed(name).isNull());
        EXPECT_TRUE(VLRImageCatalogue::iconNamed(name).isNull());
    }
    EXPECT_FALSE(VLRImageCatalogue::naturalSize("no_such_picture").isValid());
    EXPECT_TRUE(VLRImageCatalogue::imageNamed("no_such_picture.pdf", QSize(), 1.0).isNull());

    qInstallMessageHandler(previous);
    EXPECT_EQ(warnings.join('\n').toStdString(),
              "Image \"no_such_picture\": no such image in the resources\n"
              "Image \"no_such_picture.pdf\": no such image in the resources");
}

TEST(ImageCatalogue, RendersTheAskedSizeAndKeepsEachRendering)
{
    const QPixmap small = VLRImageCatalogue::imageNamed("upload", QSize(30, 20), 1.5);
    EXPECT_EQ(small.size(), QSize(45, 30));
    EXPECT_EQ(small.devicePixelRatio(), 1.5);
    EXPECT_EQ(VLRImageCatalogue::imageNamed("upload", QSize(30, 20), 1.5).cacheKey(), small.cacheKey());
    EXPECT_NE(VLRImageCatalogue::imageNamed("upload", QSize(30, 20), 2.0).cacheKey(), small.cacheKey());
    EXPECT_NE(VLRImageCatalogue::imageNamed("upload", QSize(20, 20), 1.5).cacheKey(), small.cacheKey());
    EXPECT_NE(VLRImageCatalogue::imageNamed("download", QSize(30, 20), 1.5).cacheKey(), small.cacheKey());

    // A fractional ratio rounds the pixel size up, so that nothing is cut.
    EXPECT_EQ(VLRImageCatalogue::imageNamed("warning_triangle", QSize(), 1.25).size(), QSize(20, 20));
    // A ratio of zero or less stands for one.
    EXPECT_EQ(VLRImageCatalogue::imageNamed("warning_triangle", QSize(), 0).size(), QSize(16, 16));
}

TEST(ImageCatalogue, IconIsSharpAtEverySizeAndFadedWhenDisabled)
{
    const QIcon icon = VLRImageCatalogue::iconNamed("statusItemLightMode");
    ASSERT_FALSE(icon.isNull());
    EXPECT_EQ(icon.name().toStdString(), "statusItemLightMode");
    EXPECT_EQ(icon.availableSizes(), QList<QSize>({QSize(24, 24), QSize(48, 48)}));

    const QPixmap tray = icon.pixmap(QSize(22, 22), 1.0);
    EXPECT_EQ(tray.size(), QSize(22, 22));
    const QPixmap hidpi = icon.pixmap(QSize(24, 24), 2.0);
    EXPECT_EQ(hidpi.size(), QSize(48, 48));
    EXPECT_EQ(hidpi.devicePixelRatio(), 2.0);
    // Rendered from the drawing at that size, not scaled from another pixmap.
    EXPECT_EQ(hidpi.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied),
              VLRImageCatalogue::imageNamed("statusItemLightMode", QSize(48, 48), 1.0)
                  .toImage()
                  .convertToFormat(QImage::Format_ARGB32_Premultiplied));

    const QIcon wide = VLRImageCatalogue::iconNamed("log_in_button_inactive");
    EXPECT_EQ(wide.actualSize(QSize(100, 100)), QSize(100, 16));

    const QImage disabled =
        icon.pixmap(QSize(24, 24), 1.0, QIcon::Disabled).toImage().convertToFormat(QImage::Format_ARGB32);
    int painted = 0;
    for (int y = 0; y < disabled.height(); ++y) {
        for (int x = 0; x < disabled.width(); ++x) {
            const QRgb pixel = disabled.pixel(x, y);
            if (qAlpha(pixel) == 0)
                continue;
            ++painted;
            EXPECT_EQ(qRed(pixel), qGreen(pixel));
            EXPECT_EQ(qGreen(pixel), qBlue(pixel));
            EXPECT_LE(qAlpha(pixel), 128);
        }
    }
    EXPECT_GT(painted, 0);
}
