#pragma once

#include "platform/ClientServices.h"
#include "service/VLRTypes.h"
#include "transfers/TransferRowDelegate.h"
#include "transfers/TransfersControlPanelDelegate.h"
#include "transfers/TransfersControlPanelViewController.h"
#include "transfers/TransfersPage.h"
#include "transfers/TransfersTabSelectorDelegate.h"
#include "transfers/TransfersTabSelectorViewController.h"
#include "transfers/TransfersTableView.h"
#include "transfers/TransfersTableViewDataSource.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRView.h"

#include <QHash>
#include <QLabel>
#include <QObject>
#include <QPointer>
#include <QStackedWidget>

#include <memory>

class TransferRow;

// The transfers tab: uploads, downloads and completed behind a small tab
// selector, a control panel under each list, and a picture over all of it
// while the e-mail address is unconfirmed or the lists are loading.
//
// It turns the session's arrays into rows and keeps one row object a
// transfer identifier for as long as the transfer is known, so that the many
// updates of a running transfer make no new rows. Everything the user asks
// for (pause, retry, reorder, clear) goes to the delegate; the result comes
// back as new arrays.
class TransfersViewController : public QObject,
                                public TransfersPage,
                                public TransfersTabSelectorDelegate,
                                public TransfersControlPanelDelegate,
                                public TransferRowDelegate,
                                public TransfersTableViewDataSource
{
    Q_OBJECT

public:
    // A page state.
    static constexpr int NormalState = 0;
    static constexpr int EmailNeedsConfirmationState = 1;
    static constexpr int LoadingState = 2;
    // The completed list's panel shows from this many transfers on.
    static constexpr int CompletedPanelThreshold = 5;

    explicit TransfersViewController(const ClientServices& services, QObject* parent = nullptr);
    ~TransfersViewController() override;

    // TransfersPage
    QWidget* view() override;
    void setDelegate(TransfersViewControllerDelegate* delegate) override { m_delegate = delegate; }
    void setUploads(const VLRTransferList& uploads) override;
    void setDownloads(const VLRTransferList& downloads) override;
    void setCompleted(const VLRTransferList& completed) override;
    void setTransfersPaused(bool paused) override;
    void updateUploadThroughput(double kilobitsPerSecond) override;
    void updateDownloadThroughput(double kilobitsPerSecond) override;
    void updateUploadTimeRemaining(double seconds, bool isValid) override;
    void updateDownloadTimeRemaining(double seconds, bool isValid) override;
    void updateState() override;
    void showTab(int list, const QString& andSelectTransfer) override;

    int state() const { return m_state; }
    bool transfersPaused() const { return m_transfersPaused; }
    using TransferRows = QList<std::shared_ptr<TransferRow>>;
    const TransferRows& uploadsRows() const { return m_uploadsRows; }
    const TransferRows& downloadsRows() const { return m_downloadsRows; }
    const TransferRows& completedRows() const { return m_completedRows; }
    qsizetype transferRowCacheCount() const { return m_transferRowCache.size(); }

    // Elements of the view; nullptr until it is built.
    TransfersTabSelectorViewController* tabSelectorViewController() const { return m_tabSelectorViewController; }
    TransfersControlPanelViewController* uploadsControlPanelViewController() const
    {
        return m_uploadsControlPanelViewController;
    }
    TransfersControlPanelViewController* downloadsControlPanelViewController() const
    {
        return m_downloadsControlPanelViewController;
    }
    TransfersControlPanelViewController* completedControlPanelViewController() const
    {
        return m_completedControlPanelViewController;
    }
    QStackedWidget* tabView() const { return m_tabView; }
    TransfersTableView* uploadsTableView() const { return m_uploadsTableView; }
    TransfersTableView* downloadsTableView() const { return m_downloadsTableView; }
    TransfersTableView* completedTableView() const { return m_completedTableView; }
    QWidget* completedControlPanelView() const { return m_completedControlPanelView; }
    QLabel* emailConfirmView() const { return m_emailConfirmView; }
    VLRButton* resendConfirmButton() const { return m_resendConfirmButton; }

    // Actions.
    void resendButtonClicked();
    void doubleClickTableView(TransfersTableView* tableView);

    // TransfersTabSelectorDelegate
    void transfersTabSelectorDidSelectTab(TransfersTabSelectorViewController* selector, int tab) override;
    // TransfersControlPanelDelegate
    void transfersControlPanelDidPauseAll(TransfersControlPanelViewController* panel) override;
    void transfersControlPanelDidResumeAll(TransfersControlPanelViewController* panel) override;
    void transfersControlPanelDidClearAll(TransfersControlPanelViewController* panel) override;
    // TransferRowDelegate
    void transferRowDidCancel(TransferRow* row) override;
    void transferRowDidPause(TransferRow* row) override;
    void transferRowDidResume(TransferRow* row) override;
    void transferRowDidRetry(TransferRow* row) override;
    // TransfersTableViewDataSource
    int numberOfRowsInTableView(TransfersTableView* tableView) override;
    TransferRow* transferRowForTableViewRow(TransfersTableView* tableView, int row) override;
    const TransferRowView* tableViewViewForTableColumnRow(TransfersTableView* tableView, int column, int row) override;
    bool tableViewShouldSelectRow(TransfersTableView* tableView, int row) override;
    bool tableViewWriteRowsWithIndexesToPasteboard(TransfersTableView* tableView, const QList<int>& rows,
                                                   QMimeData* pasteboard) override;
    bool tableViewAcceptDropRow(TransfersTableView* tableView, const QMimeData* pasteboard, int row) override;

private:
    void loadView();
    QWidget* makeListPage(TransfersTableView* tableView, QWidget* controlPanelView);
    void updateList(VLRTransferList& stored, const VLRTransferList& transfers, TransfersTableView* tableView,
                    TransferRows& rows);
    TransferRows transferRowsFromTransfers(const VLRTransferList& transfers, TransfersTableView* tableView,
                                           const QList<int>& selectedRowIndexes);
    const TransferRows& rowsForTableView(const TransfersTableView* tableView) const;
    void removeFromCache(const TransferRow* row);

    ClientServices m_services;
    QPointer<TransfersTabSelectorViewController> m_tabSelectorViewController;
    QPointer<TransfersControlPanelViewController> m_uploadsControlPanelViewController;
    QPointer<TransfersControlPanelViewController> m_downloadsControlPanelViewController;
    QPointer<TransfersControlPanelViewController> m_completedControlPanelViewController;
    QPointer<VLRView> m_view;
    QPointer<QStackedWidget> m_tabView;
    QPointer<TransfersTableView> m_uploadsTableView;
    QPointer<TransfersTableView> m_downloadsTableView;
    QPointer<TransfersTableView> m_completedTableView;
    QPointer<QWidget> m_uploadsControlPanelView;
    QPointer<QWidget> m_downloadsControlPanelView;
    QPointer<QWidget> m_completedControlPanelView;
    QPointer<QLabel> m_emailConfirmView;
    QPointer<VLRButton> m_resendConfirmButton;
    // One cache for the three lists: a row follows its transfer from one
    // list to another.
    QHash<QString, std::shared_ptr<TransferRow>> m_transferRowCache;
    int m_state = NormalState;
    bool m_transfersPaused = false;
    VLRTransferList m_uploads;
    VLRTransferList m_downloads;
    VLRTransferList m_completed;
    TransfersViewControllerDelegate* m_delegate = nullptr;
    // The lists hold their rows too: a row that leaves the cache lives on
    // until its list is next updated.
    TransferRows m_uploadsRows;
    TransferRows m_downloadsRows;
    TransferRows m_completedRows;
};
