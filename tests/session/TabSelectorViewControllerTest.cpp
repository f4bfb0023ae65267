#include "session/TabSelectorViewController.h"
#include "session/TabSelectorViewControllerDelegate.h"
#include "session/VLRPopover.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRImageCatalogue.h"

#include <QDir>
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace {

class TabDelegate : public TabSelectorViewControllerDelegate
{
public:
    QStringList calls;
    QSet<int> refused;
    QSet<int> unsupported;
    QStringList dropped;

    bool tabSelectorViewControllerTabSupported(TabBar*, int tab) override { return !unsupported.contains(tab); }
    bool tabSelectorViewControllerShouldSelectTab(TabBar*, int tab) override
    {
        calls.append(QStringLiteral("should %1").arg(tab));
        return !refused.contains(tab);
    }
    void tabSelectorViewControllerDidSelectTab(TabBar*, int tab) override
    {
        calls.append(QStringLiteral("did %1").arg(tab));
    }
    void tabSelectorViewControllerDidReceiveDroppedFiles(TabBar*, const QStringList& files) override
    {
        dropped = files;
    }
};

bool shows(const QPixmap& shown, const QString& name)
{
    const QPixmap expected =
        VLRImageCatalogue::imageNamed(name, VLRImageCatalogue::naturalSize(name), qApp->devicePixelRatio());
    return !shown.isNull() && shown.toImage() == expected.toImage();
}

void save(QWidget* widget, const QString& name)
{
    QDir().mkpath(VELURIA_SCREENSHOT_DIR);
    EXPECT_TRUE(widget->grab().save(QStringLiteral(VELURIA_SCREENSHOT_DIR "/%1.png").arg(name))) << name.toStdString();
}

// A bar with its view loaded, telling a recording delegate; unsupported tabs
// are set before the load.
struct Bar
{
    explicit Bar(QSet<int> unsupported = {})
    {
        delegate.unsupported = unsupported;
        bar.setDelegate(&delegate);
        bar.view();
    }
    TabDelegate delegate;
    TabSelectorViewController bar;
};

} // namespace

TEST(TabSelectorViewControllerTest, LoadingSelectsTheLoginTabAndTellsTheDelegateFirst)
{
    auto [delegate, bar] = Bar();
    EXPECT_EQ(delegate.calls, QStringList{"did 0"});
    EXPECT_EQ(bar.selectedTab(), 0);
    EXPECT_EQ(bar.fileDropButton()->badgeOffset(), QPointF(-7, -12));
    EXPECT_EQ(bar.settingsButton()->badgeOffset(), QPointF(-7, -12));
    EXPECT_EQ(bar.transfersButton()->badgeOffset(), QPointF(-2, -12));
    for (int tab = 1; tab <= 5; ++tab)
        EXPECT_TRUE(bar.view()->findChildren<VLRButton*>().at(tab - 1)->property("tag") == tab);
}

TEST(TabSelectorViewControllerTest, TheDelegateDecidesAndReselectingGoesAllTheWay)
{
    auto [delegate, bar] = Bar();
    delegate.calls.clear();

    delegate.refused = {2};
    bar.workspacesButton()->click();
    EXPECT_EQ(bar.selectedTab(), 0);
    EXPECT_EQ(delegate.calls, QStringList{"should 2"});

    bar.selectTab(1);
    bar.selectTab(1);
    EXPECT_EQ(delegate.calls.mid(1), (QStringList{"should 1", "did 1", "should 1", "did 1"}));
    EXPECT_TRUE(shows(bar.fileDropButton()->defaultImage(), "tabBarFileDropSelected"));
    EXPECT_TRUE(shows(bar.workspacesButton()->defaultImage(), "tabBarWorkspacesUnselected"));
    EXPECT_EQ(bar.fileDropButton()->mouseOverStyle(), VLRMouseOverStyleNone);
    EXPECT_EQ(bar.workspacesButton()->mouseOverStyle(), VLRMouseOverStyleImage);
    EXPECT_TRUE(shows(bar.workspacesButton()->clickedImage(), "tabBarWorkspacesSelected"));

    // A drag over a drop-target tab asks to switch to it at once.
    delegate.refused.clear();
    bar.dropTargetButtonDidReceiveDragEvent(bar.workspacesButton());
    EXPECT_EQ(bar.selectedTab(), 2);
    bar.dropTargetButtonDidReceiveFiles(bar.fileDropButton(), {"/tmp/a.png"});
    EXPECT_EQ(delegate.dropped, QStringList{"/tmp/a.png"});
}

TEST(TabSelectorViewControllerTest, TheTransfersIconFollowsTheActivityAndTheSelection)
{
    auto [delegate, bar] = Bar();
    EXPECT_TRUE(shows(bar.transfersButton()->defaultImage(), "queue_main_icon_inactive"));

    bar.showActiveUploads(true, false);
    EXPECT_TRUE(shows(bar.transfersButton()->defaultImage(), "queue_main_icon_upload_in_progress_inactive"));
    EXPECT_TRUE(shows(bar.transfersButton()->mouseOverImage(), "queue_main_icon_upload_in_progress_mouseover"));
    bar.selectTab(4);
    EXPECT_TRUE(shows(bar.transfersButton()->defaultImage(), "queue_main_icon_upload_in_progress_active"));
    EXPECT_EQ(bar.transfersButton()->mouseOverStyle(), VLRMouseOverStyleNone);

    // Both at work: the active picture also serves under the pointer.
    bar.showActiveUploads(true, true);
    EXPECT_TRUE(shows(bar.transfersButton()->mouseOverImage(), "queue_main_icon_transfers_in_progress_active"));
    bar.showActiveUploads(false, true);
    EXPECT_TRUE(shows(bar.transfersButton()->clickedImage(), "queue_main_icon_download_in_progress_active"));
}

TEST(TabSelectorViewControllerTest, BadgesReachOnlyTheFiveTabsAndAvailabilityFollowsTheDelegate)
{
    auto [delegate, bar] = Bar({3});
    EXPECT_FALSE(bar.marketplaceButton()->isEnabled());
    EXPECT_TRUE(bar.settingsButton()->isEnabled());
    delegate.unsupported = {5};
    bar.enableDisableTabs();
    EXPECT_TRUE(bar.marketplaceButton()->isEnabled());
    EXPECT_FALSE(bar.settingsButton()->isEnabled());
    // With nobody to ask, neither tab is supported.
    bar.setDelegate(nullptr);
    bar.enableDisableTabs();
    EXPECT_FALSE(bar.marketplaceButton()->isEnabled());

    bar.setBadgeValue(4, 0, true);
    bar.setBadgeValue(4, 6, true);
    for (VLRButton* button : bar.view()->findChildren<VLRButton*>())
        EXPECT_EQ(button->badgeValue(), 0);
    bar.setBadgeValue(12, 4, false);
    bar.setBadgeValue(3, 3, true);
    EXPECT_EQ(bar.transfersButton()->badgeValue(), 12);
    EXPECT_FALSE(bar.transfersButton()->badgeIsWarning());
    EXPECT_EQ(bar.marketplaceButton()->badgeValue(), 3);
    EXPECT_TRUE(bar.marketplaceButton()->badgeIsWarning());
}

TEST(TabSelectorViewControllerTest, RenderingsOfTheBarForPeopleToLookAt)
{
    auto [delegate, bar] = Bar();
    for (int tab = 1; tab <= 5; ++tab) {
        bar.selectTab(tab);
        save(bar.view(), QStringLiteral("tabbar-selected-%1").arg(tab));
    }
    bar.showActiveUploads(true, true);
    bar.setBadgeValue(9, 1, false);
    bar.setBadgeValue(10, 2, false);
    bar.setBadgeValue(1, 3, true);
    bar.setBadgeValue(100, 4, false);
    bar.selectTab(2);
    save(bar.view(), "tabbar-badges");
}

TEST(VLRPopoverTest, PlacedBelowItsAnchorWhenThereIsRoomAndAlwaysOnTheScreen)
{
    const QRect screen(0, 0, 1280, 800);
    const QSize size(360, 520);
    EXPECT_EQ(VLRPopover::placement(size, QRect(600, 0, 24, 24), screen), QPoint(432, 28));
    // Near the right edge it slides left; at the bottom it goes above.
    EXPECT_EQ(VLRPopover::placement(size, QRect(1256, 0, 24, 24), screen), QPoint(920, 28));
    EXPECT_EQ(VLRPopover::placement(size, QRect(1256, 776, 24, 24), screen), QPoint(920, 252));
    // An anchor off the screen still leaves the popover on it.
    EXPECT_EQ(VLRPopover::placement(size, QRect(-500, -500, 24, 24), screen), QPoint(0, 0));
}
