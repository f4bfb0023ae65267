#pragma once

#include "lists/ListDividerViewController.h"
#include "lists/ListTableView.h"
#include "lists/ListTableViewDataSource.h"
#include "platform/ClientServices.h"
#include "service/VLRTypes.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRView.h"
#include "workspaces/WorkspaceCellViewControllerDelegate.h"
#include "workspaces/WorkspacesPage.h"

#include <QDateTime>
#include <QLabel>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

class ListItemViewController;
class WorkspaceCellViewController;

// The workspaces tab: the session's workspaces in the order the session holds
// them (newest first), cut into sections by date headings, or a picture with
// a button to make the first workspace when there are none.
//
// The section boundaries are taken once, when the view is built, and never
// again: in a client that runs for days "TODAY" keeps meaning the day it
// was built on. The records are not sorted here; a heading stands before
// the first record that falls in its section, and every further record gets
// a gap, whatever its section.
class WorkspacesViewController : public QObject,
                                 public WorkspacesPage,
                                 public WorkspaceCellViewControllerDelegate,
                                 public ListTableViewDataSource
{
    Q_OBJECT

public:
    static constexpr int SeparatorHeight = 6;
    static constexpr int DividerHeight = 34;
    static constexpr int CellHeight = 111;
    enum State : qint64 { ListState = 0, NeedsConfirmationState = 1, LoadingState = 2, EmptyState = 3 };

    // The clock gives "now" for the section boundaries; empty reads the system's.
    explicit WorkspacesViewController(const ClientServices& services, std::function<QDateTime()> clock = {},
                                      QObject* parent = nullptr);
    ~WorkspacesViewController() override;

    QWidget* view() override;
    void setDelegate(WorkspacesViewControllerDelegate* delegate) override { m_delegate = delegate; }

    void updateWorkspaces(const VLRWorkspaceList& workspaces) override;
    void updateState() override;
    qint64 state() const { return m_state; }

    // The rows in display order: dividers, separators and cells.
    const QList<ListItemViewController*>& rows() const { return m_workspaces; }
    QDateTime today() const { return m_today; }
    QDateTime yesterday() const { return m_yesterday; }
    QDateTime thisWeek() const { return m_thisWeek; }
    QDateTime lastWeek() const { return m_lastWeek; }

    // Actions of the view.
    void createWorkspaceButtonClicked();
    void learnButtonClicked();
    void resendButtonClicked();

    void workspaceCellViewControllerWasClicked(WorkspaceCellViewController* cell) override;
    void workspaceCellViewControllerDidReceiveFiles(WorkspaceCellViewController* cell,
                                                    const QStringList& files) override;

    int numberOfRowsInTableView(ListTableView* tableView) override;
    QWidget* tableViewViewForRow(ListTableView* tableView, int row) override;
    int tableViewHeightOfRow(ListTableView* tableView, int row) override;

    // Elements of the view; nullptr until it is built.
    ListTableView* tableView() const { return m_tableView; }
    VLRButton* createWorkspaceButton() const { return m_createWorkspaceButton; }
    VLRButton* learnButton() const { return m_learnButton; }
    VLRButton* resendConfirmButton() const { return m_resendConfirmButton; }
    // The full-page picture of the present state, empty in the list state.
    QLabel* backgroundImageView() const { return m_backgroundImageView; }

private:
    void loadView();
    void computeDates();

    ClientServices m_services;
    std::function<QDateTime()> m_clock;
    QPointer<VLRView> m_view;
    QPointer<QLabel> m_backgroundImageView;
    QPointer<ListTableView> m_tableView;
    QPointer<VLRButton> m_createWorkspaceButton;
    QPointer<VLRButton> m_learnButton;
    QPointer<VLRButton> m_resendConfirmButton;
    QList<ListItemViewController*> m_workspaces;
    qint64 m_state = ListState;
    std::unique_ptr<ListDividerViewController> m_dividerToday;
    std::unique_ptr<ListDividerViewController> m_dividerYesterday;
    std::unique_ptr<ListDividerViewController> m_dividerThisWeek;
    std::unique_ptr<ListDividerViewController> m_dividerLastWeek;
    std::unique_ptr<ListDividerViewController> m_dividerEarlier;
    // The separators and cells of the present list, made anew each update.
    std::vector<std::unique_ptr<ListItemViewController>> m_madeRows;
    QDateTime m_today;
    QDateTime m_yesterday;
    QDateTime m_thisWeek;
    QDateTime m_lastWeek;
    WorkspacesViewControllerDelegate* m_delegate = nullptr;
};
