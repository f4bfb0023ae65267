// The workspace list: its date sections on fixed clocks, its states, and
// what its cards show and pass on.

#include "WorkspacesFixture.h"

#include "app/AppFlavor.h"
#include "app/VLRColors.h"
#include "fakes/FakeWorkspaceUser.h"
#include "lists/ListDividerViewController.h"
#include "widgets/VLRAvatarListView.h"
#include "workspaces/WorkspaceCellViewController.h"
#include "workspaces/WorkspacesViewController.h"

#include <QTest>

namespace {

QDateTime at(int year, int month, int day, int hour = 12, int minute = 0, int msec = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, 0, msec));
}

class WorkspacesListTest : public WorkspacesTest
{
protected:
    // A page loaded at the given moment.
    std::unique_ptr<WorkspacesViewController> pageAt(const QDateTime& moment)
    {
        now = moment;
        auto page = std::make_unique<WorkspacesViewController>(services(), [this] { return now; });
        page->setDelegate(&delegate);
        page->view()->resize(360, 472);
        return page;
    }

    // The rows as headings, "-" for a gap and the names of the cards.
    static QString layout(WorkspacesViewController& page, const QList<QDateTime>& dates)
    {
        VLRWorkspaceList workspaces;
        for (const QDateTime& date : dates)
            workspaces.append(
                FakeWorkspace::make(QString::number(workspaces.size()), QString::number(workspaces.size()), date));
        page.updateWorkspaces(workspaces);
        QStringList rows;
        for (ListItemViewController* row : page.rows()) {
            if (auto* divider = qobject_cast<ListDividerViewController*>(row))
                rows.append(divider->label()->stringValue());
            else if (auto* cell = qobject_cast<WorkspaceCellViewController*>(row))
                rows.append(cell->workspace()->name());
            else
                rows.append("-");
        }
        return rows.join(' ');
    }

    QDateTime now;
};

TEST_F(WorkspacesListTest, SectionsWithinAWeekAndTheBoundariesKeptFromLoad)
{
    // Wednesday 25 November 2026; the week began on Sunday the 22nd.
    auto page = pageAt(at(2026, 11, 25, 10, 30));
    EXPECT_EQ(layout(*page,
                     {at(2026, 11, 27), at(2026, 11, 25, 0, 0), at(2026, 11, 24, 23, 59), at(2026, 11, 24, 0, 0),
                      at(2026, 11, 23), at(2026, 11, 22, 0, 0), at(2026, 11, 21), at(2026, 11, 15, 0, 0),
                      at(2026, 11, 14), at(2026, 1, 1)}),
              "TODAY 0 - 1 YESTERDAY 2 - 3 THIS WEEK 4 - 5 LAST WEEK 6 - 7 EARLIER 8 - 9 -");

    // Out of order: a section once opened never heads again; no date counts as today.
    EXPECT_EQ(layout(*page, {at(2026, 11, 24), at(2026, 11, 25), QDateTime(), at(2026, 11, 24)}),
              "YESTERDAY 0 TODAY 1 - 2 - 3 -");

    // Two days on, without a new load, the Wednesday is still today.
    now = at(2026, 11, 27, 9, 0);
    EXPECT_EQ(layout(*page, {at(2026, 11, 25, 8, 0), at(2026, 11, 24, 8, 0)}), "TODAY 0 YESTERDAY 1 -");
}

TEST_F(WorkspacesListTest, SectionsAcrossTheYearAndOnTheFirstDayOfTheWeek)
{
    // Friday 1 January 2027: the week began on Sunday 27 December 2026.
    auto newYear = pageAt(at(2027, 1, 1, 9, 0));
    EXPECT_EQ(newYear->thisWeek(), at(2026, 12, 27, 0, 0));
    EXPECT_EQ(newYear->lastWeek(), at(2026, 12, 20, 0, 0));
    EXPECT_EQ(layout(*newYear,
                     {at(2027, 1, 1, 8, 0), at(2026, 12, 31), at(2026, 12, 28), at(2026, 12, 26), at(2026, 12, 19)}),
              "TODAY 0 YESTERDAY 1 THIS WEEK 2 LAST WEEK 3 EARLIER 4 -");

    // On a Sunday the week begins a fraction of a second before today, so
    // the second record of yesterday falls to last week.
    auto sunday = pageAt(at(2026, 11, 22, 8, 0, 250));
    EXPECT_EQ(sunday->today(), at(2026, 11, 22, 0, 0, 250));
    EXPECT_EQ(layout(*sunday, {at(2026, 11, 22, 0, 0, 100), at(2026, 11, 21, 20, 0), at(2026, 11, 21, 10, 0)}),
              "YESTERDAY 0 LAST WEEK 1 - 2 -");
}

TEST_F(WorkspacesListTest, StatesAndButtons)
{
    auto page = pageAt(at(2026, 11, 25));
    page->view()->show();
    page->updateWorkspaces({});
    EXPECT_TRUE(page->rows().isEmpty());
    EXPECT_EQ(page->state(), WorkspacesViewController::EmptyState);
    EXPECT_TRUE(page->createWorkspaceButton()->isVisible());
    EXPECT_FALSE(page->tableView()->isVisible());
    page->createWorkspaceButton()->click();
    page->learnButton()->click();
    EXPECT_EQ(delegate.calls, QStringList{"createWorkspaceClicked"});
    EXPECT_EQ(fakes.desktop->openedURLs().value(0).path(), "/learn-workspaces/");

    // A list that arrives while the e-mail needs confirmation stays hidden.
    delegate.needsConfirmation = true;
    page->updateWorkspaces({FakeWorkspace::make("w1", "Posters", at(2026, 11, 25))});
    EXPECT_EQ(page->state(), WorkspacesViewController::NeedsConfirmationState);
    EXPECT_FALSE(page->tableView()->isVisible());
    EXPECT_TRUE(page->resendConfirmButton()->isVisible());
    delegate.needsConfirmation = false;
    page->updateState();
    EXPECT_TRUE(page->tableView()->isVisible());
    EXPECT_FALSE(page->createWorkspaceButton()->isVisible());
    // A first list on a fresh page shows over the picture and its buttons.
    auto fresh = pageAt(at(2026, 11, 25));
    fresh->view()->show();
    fresh->updateWorkspaces({FakeWorkspace::make("w1", "Posters", at(2026, 11, 25))});
    const QPoint buttonMiddle = fresh->createWorkspaceButton()->geometry().center();
    EXPECT_TRUE(fresh->tableView()->isAncestorOf(fresh->view()->childAt(buttonMiddle))
                || fresh->view()->childAt(buttonMiddle) == fresh->tableView());
    EXPECT_EQ(page->tableView()->numberOfRows(), 3);

    // Only the cards in sight are built.
    VLRWorkspaceList many;
    for (int i = 0; i < 40; ++i)
        many.append(FakeWorkspace::make(QString::number(i), QString::number(i), at(2026, 11, 25)));
    page->updateWorkspaces(many);
    EXPECT_TRUE(page->rows().value(1)->isViewLoaded());
    EXPECT_FALSE(page->rows().last()->isViewLoaded());
}

TEST_F(WorkspacesListTest, CardsFollowTheirMembersAndPassOnClicksAndDrops)
{
    auto owner = FakeWorkspaceUser::make("Ann", "Lee", 1);
    auto bob = FakeWorkspaceUser::make("Bob", "<b>Ray</b>");
    auto workspace = FakeWorkspace::make("w1", "Posters <i>\n\u202Egnp.exe", at(2026, 11, 25));
    workspace->setWorkspaceUsers({owner, bob});
    auto page = pageAt(at(2026, 11, 25, 13, 0));
    page->updateWorkspaces({workspace});
    page->view()->show();
    auto* cell = qobject_cast<WorkspaceCellViewController*>(page->rows().value(1));
    ASSERT_NE(cell, nullptr);
    ASSERT_TRUE(cell->isViewLoaded());

    // Markup and control characters are shown, never followed.
    EXPECT_EQ(cell->nameLabel()->stringValue(), "Posters <i>\uFFFD\uFFFDgnp.exe");
    ASSERT_EQ(cell->avatarListView()->avatars().size(), 1);
    EXPECT_EQ(cell->avatarListView()->avatars()[0].toolTip(), "Bob <b>Ray</b>");

    // New members move the observations over; a new picture arrives.
    auto cyd = FakeWorkspaceUser::make("Cyd", "Moe");
    workspace->setWorkspaceUsers({owner, cyd});
    EXPECT_EQ(bob->observationCount(), 0);
    QImage portrait(8, 8, QImage::Format_RGB32);
    portrait.fill(Qt::red);
    cyd->setAvatar(portrait);
    EXPECT_EQ(cell->avatarListView()->avatars()[0].image().toImage().pixelColor(4, 4), QColor(Qt::red));

    // A drop passes the files with the card's workspace; the labels rest.
    cell->mouseEntered();
    EXPECT_EQ(cell->nameLabel()->attributedStringValue().foregroundColor, AppFlavor::mainAppColor());
    cell->viewDidReceiveDroppedFiles(nullptr, {"/tmp/a.png"});
    EXPECT_EQ(cell->nameLabel()->attributedStringValue().foregroundColor, VLRColors::textColor());
    // A click anywhere on the card reaches the button under it.
    QCoreApplication::processEvents();
    const QPoint middle = cell->nameLabel()->geometry().center();
    QWidget* target = cell->nameLabel()->parentWidget()->childAt(middle);
    ASSERT_NE(target, nullptr);
    QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFrom(cell->nameLabel()->parentWidget(), middle));
    EXPECT_EQ(delegate.calls, (QStringList{"didReceiveFiles /tmp/a.png Posters <i>\n\u202Egnp.exe", "cellClicked"}));
    EXPECT_EQ(workspace->log.count("openInBrowser"), 1);

    // The next list lets go of every record and member.
    page->updateWorkspaces({});
    EXPECT_EQ(workspace->observationCount(), 0);
    EXPECT_EQ(owner->observationCount() + cyd->observationCount(), 0);
}

} // namespace
