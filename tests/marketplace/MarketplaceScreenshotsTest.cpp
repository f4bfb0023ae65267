#include "marketplace/MarketplaceTesting.h"

#include "app/VLRColors.h"
#include "widgets/VLRFonts.h"

#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QPainter>
#include <QPalette>
#include <QScrollBar>

namespace {

const QSize PageSize(360, 472);

// A drawn product icon: a rounded square in the colour, with a letter.
QImage icon(const QColor& colour, const QString& letter)
{
    QImage image(128, 128, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(colour);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(8, 8, 112, 112), 24, 24);
    painter.setPen(Qt::white);
    painter.setFont(VLRFonts::muli(64, QFont::Bold));
    painter.drawText(image.rect(), Qt::AlignCenter, letter);
    return image;
}

std::shared_ptr<FakeInstaller> pictured(std::shared_ptr<FakeInstaller> installer, const QColor& colour)
{
    installer->setImage(icon(colour, installer->name().left(1)));
    return installer;
}

class MarketplaceScreenshotsTest : public MarketplaceTest
{
protected:
    void SetUp() override
    {
        VLRFonts::loadMuli();
        QDir().mkpath(QStringLiteral(VELURIA_SCREENSHOT_DIR));
        MarketplaceTest::SetUp();
    }

    void TearDown() override { QApplication::setPalette(m_palette); }

    // Light or dark desktop: the page keeps its own colours on both.
    static void useDarkDesktop(bool dark)
    {
        QPalette palette;
        if (dark) {
            palette.setColor(QPalette::Window, QColor(40, 40, 44));
            palette.setColor(QPalette::WindowText, QColor(230, 230, 230));
            palette.setColor(QPalette::Base, QColor(30, 30, 33));
            palette.setColor(QPalette::Text, QColor(230, 230, 230));
        }
        QApplication::setPalette(palette);
    }

    QImage save(const QString& name)
    {
        // The offscreen pointer rests inside the page; a picture shows none.
        QCursor::setPos(1000, 1000);
        QWidget* view = page.view();
        view->resize(PageSize);
        view->show();
        QCoreApplication::processEvents();
        const QImage picture = view->grab().toImage();
        const QString path = QStringLiteral(VELURIA_SCREENSHOT_DIR "/marketplace-%1.png").arg(name);
        EXPECT_TRUE(picture.save(path)) << path.toStdString();
        return picture;
    }

    QPalette m_palette = QApplication::palette();
};

} // namespace

TEST_F(MarketplaceScreenshotsTest, InstallersPageWithEveryGroupAndARunningInstall)
{
    auto fresh = pictured(catalogueInstaller("new", "Sketchbook", "1.0"), QColor(64, 140, 220));
    auto update = pictured(catalogueInstaller("upd", "Waveform.app", "2.4", "2.1"), QColor(150, 90, 200));
    auto missing = pictured(catalogueInstaller("not", "Render Farm", "5.0"), QColor(60, 170, 120));
    auto installed = pictured(catalogueInstaller("ins", "Type Setter", "3.2", "3.2"), QColor(230, 140, 40));
    auto running = std::make_shared<FakeInstallerOperation>();
    fresh->nextOperation = running;
    page.updateInstallers({fresh, update, missing, installed});
    page.updateNewInstallers({fresh});
    page.updateInstallerUpdates({update});
    page.updateNotInstalled({missing});
    nextTurn();
    page.showUpdatesTab();
    page.installerViewControllerNeedsInstallation(
        dynamic_cast<InstallerViewController*>(page.installerViewControllers()[1].get()));
    auto download = std::make_shared<FakeInstallerOperation>();
    fresh->setDownloadOperation(download);
    download->setFractionCompleted(0.62);
    running->setFractionCompleted(0.62);

    for (const bool dark : {false, true}) {
        useDarkDesktop(dark);
        const QImage picture = save(dark ? "installers-dark" : "installers");
        // The page's grey between the cards, whatever the desktop.
        EXPECT_EQ(picture.pixelColor(picture.width() / 2, 60).rgb(), VLRColors::grey(233).rgb());
    }
    // The end of the list, with the installed group.
    page.installersTableView()->verticalScrollBar()->setValue(
        page.installersTableView()->verticalScrollBar()->maximum());
    save("installers-end");
    EXPECT_EQ(page.installersTableView()->visibleViews().last(), page.installerViewControllers().last()->view());
}

TEST_F(MarketplaceScreenshotsTest, PurchasesPageWithEachWarning)
{
    const QDateTime now = fakes.now;
    auto suite = cardPurchase("Creative Suite", now.addDays(40), now.addDays(12), "https://example.com/manage/1");
    auto fonts = cardPurchase("Font Library", now.addDays(200), now.addYears(2), "https://example.com/manage/2");
    fonts->setCanceled(true);
    std::static_pointer_cast<FakeProduct>(suite->product())->setImage(icon(QColor(242, 103, 35), "C"));
    std::static_pointer_cast<FakeProduct>(fonts->product())->setImage(icon(QColor(88, 88, 91), "F"));

    for (const bool dark : {false, true}) {
        useDarkDesktop(dark);
        suite->setCcExpiresOn(now.addDays(12));
        page.updatePurchases({suite, fonts});
        const QImage soon = save(dark ? "purchases-about-to-expire-dark" : "purchases-about-to-expire");
        // The amber card of the warning, under the selector.
        EXPECT_EQ(soon.pixelColor(200, 32 + 6 + 8).rgb(), QColor::fromRgbF(1, 206 / 255.0f, 0).rgb());
        page.updatePurchases({});
        suite->setCcExpiresOn(now.addDays(-3));
        page.updatePurchases({suite, fonts});
        const QImage expired = save(dark ? "purchases-expired-dark" : "purchases-expired");
        EXPECT_EQ(expired.pixelColor(200, 32 + 6 + 8).rgb(),
                  QColor::fromRgbF(249 / 255.0f, 109 / 255.0f, 109 / 255.0f).rgb());
        // Below the last row the page's grey goes on.
        EXPECT_EQ(expired.pixelColor(200, PageSize.height() - 20).rgb(), VLRColors::grey(233).rgb());
    }
}
