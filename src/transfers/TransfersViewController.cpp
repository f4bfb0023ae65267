#include "transfers/TransfersViewController.h"

#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "platform/VLRDesktopServices.h"
#include "service/VLREnvironment.h"
#include "service/VLRServiceLibrary.h"
#include "service/VLRTransferReporting.h"
#include "transfers/TransferRow.h"
#include "transfers/TransfersViewControllerDelegate.h"
#include "widgets/VLRImageCatalogue.h"

#include <QDataStream>
#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QIODevice>
#include <QMimeData>
#include <QVBoxLayout>

#include <limits>

namespace {

constexpr int TypeColumnWidth = 34;
constexpr int StatusColumnWidth = 44;
constexpr int SizeColumnWidth = 96;
constexpr int ResendButtonBottomMargin = 96;

// A time from the library as whole seconds, fraction dropped; 0 is unknown.
uint64_t wholeSeconds(double seconds, bool isValid)
{
    if (!isValid || !(seconds >= 1))
        return 0;
    if (seconds >= double(std::numeric_limits<uint64_t>::max()))
        return std::numeric_limits<uint64_t>::max();
    return static_cast<uint64_t>(seconds);
}

QByteArray archivedRows(const QList<int>& rows)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_0);
    stream << rows;
    return bytes;
}

// The row numbers of a reorder drag; none for bytes that are not one.
QList<int> unarchivedRows(const QByteArray& bytes)
{
    QList<int> rows;
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_0);
    stream >> rows;
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return {};
    return rows;
}

QString identifierOf(const VLRTransferReportingPtr& transfer)
{
    return transfer ? transfer->identifier() : QString();
}

} // namespace

TransfersViewController::TransfersViewController(const ClientServices& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
{ }

TransfersViewController::~TransfersViewController()
{
    for (TransfersTableView* table : {m_uploadsTableView.get(), m_downloadsTableView.get(), m_completedTableView.get()})
        if (table)
            table->setDataSource(nullptr);
    m_transferRowCache.clear();
    m_delegate = nullptr;
    delete m_view;
}

QWidget* TransfersViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

void TransfersViewController::loadView()
{
    m_view = new VLRView;
    m_view->setBackgroundColor(VLRColors::grey(250));
    m_view->setBorderColor(VLRColors::grey(151));
    m_view->setBorderCornerRadius(0);
    m_view->setBorderWidth(1);
    auto* grid = new QGridLayout(m_view);
    grid->setContentsMargins(1, 1, 1, 1);
    grid->setSpacing(0);

    auto* content = new QWidget(m_view);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    m_tabSelectorViewController = new TransfersTabSelectorViewController(this);
    m_uploadsControlPanelViewController = new TransfersControlPanelViewController(this);
    m_downloadsControlPanelViewController = new TransfersControlPanelViewController(this);
    m_completedControlPanelViewController = new TransfersControlPanelViewController(this);
    m_uploadsControlPanelViewController->setActiveTransfersMode(true);
    m_downloadsControlPanelViewController->setActiveTransfersMode(true);
    m_completedControlPanelViewController->setActiveTransfersMode(false);

    m_tabView = new QStackedWidget(content);
    m_uploadsTableView = new TransfersTableView(this);
    m_downloadsTableView = new TransfersTableView(this);
    m_completedTableView = new TransfersTableView(this);
    for (TransfersControlPanelViewController* panel :
         {m_uploadsControlPanelViewController.get(), m_downloadsControlPanelViewController.get(),
          m_completedControlPanelViewController.get()})
        panel->setDelegate(this);
    m_uploadsControlPanelView = m_uploadsControlPanelViewController->view();
    m_downloadsControlPanelView = m_downloadsControlPanelViewController->view();
    m_completedControlPanelView = m_completedControlPanelViewController->view();
    m_tabView->addWidget(makeListPage(m_uploadsTableView, m_uploadsControlPanelView));
    m_tabView->addWidget(makeListPage(m_downloadsTableView, m_downloadsControlPanelView));
    m_tabView->addWidget(makeListPage(m_completedTableView, m_completedControlPanelView));

    m_tabSelectorViewController->setDelegate(this);
    column->addWidget(m_tabSelectorViewController->view());
    column->addWidget(m_tabView, 1);
    grid->addWidget(content, 0, 0);

    // Laid over the lists in the same cell.
    m_emailConfirmView = new QLabel(m_view);
    m_emailConfirmView->setAlignment(Qt::AlignCenter);
    m_emailConfirmView->setAutoFillBackground(true);
    QPalette palette = m_emailConfirmView->palette();
    palette.setColor(QPalette::Window, VLRColors::grey(250));
    m_emailConfirmView->setPalette(palette);
    m_emailConfirmView->hide();
    grid->addWidget(m_emailConfirmView, 0, 0);

    // The resend button stands on the picture, under its text.
    m_resendConfirmButton = new VLRButton(m_emailConfirmView);
    const QPixmap resend = VLRImageCatalogue::imageNamed(QStringLiteral("resend_confirmation"));
    m_resendConfirmButton->setDefaultImage(resend);
    m_resendConfirmButton->setFixedSize(VLRImageCatalogue::naturalSize(QStringLiteral("resend_confirmation")));
    m_resendConfirmButton->setClickStyle(VLRClickStyleBackground);
    m_resendConfirmButton->setCursor(Qt::PointingHandCursor);
    m_resendConfirmButton->setAccessibleName(vlr::localized("Resend confirmation e-mail"));
    m_resendConfirmButton->hide();
    connect(m_resendConfirmButton, &VLRButton::clicked, this, &TransfersViewController::resendButtonClicked);
    auto* overlay = new QVBoxLayout(m_emailConfirmView);
    overlay->setContentsMargins(0, 0, 0, ResendButtonBottomMargin);
    overlay->addStretch();
    overlay->addWidget(m_resendConfirmButton, 0, Qt::AlignHCenter);

    updateList(m_uploads, {}, m_uploadsTableView, m_uploadsRows);
    updateList(m_downloads, {}, m_downloadsTableView, m_downloadsRows);
    updateList(m_completed, {}, m_completedTableView, m_completedRows);
    m_transferRowCache.clear();
    m_uploadsTableView->registerForDraggedTypes({TransfersTableView::DraggedType});
    m_downloadsTableView->registerForDraggedTypes({TransfersTableView::DraggedType});
    m_completedTableView->setDoubleAction([this](TransfersTableView* table) { doubleClickTableView(table); });
}

QWidget* TransfersViewController::makeListPage(TransfersTableView* tableView, QWidget* controlPanelView)
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    tableView->setParent(page);
    QPalette palette = tableView->palette();
    palette.setColor(QPalette::Base, VLRColors::grey(250));
    tableView->setPalette(palette);
    tableView->viewport()->setAutoFillBackground(true);
    QHeaderView* header = tableView->horizontalHeader();
    header->setSectionResizeMode(0, QHeaderView::Fixed);
    header->setSectionResizeMode(1, QHeaderView::Fixed);
    header->setSectionResizeMode(2, QHeaderView::Stretch);
    header->setSectionResizeMode(3, QHeaderView::Fixed);
    tableView->setColumnWidth(0, TypeColumnWidth);
    tableView->setColumnWidth(1, StatusColumnWidth);
    tableView->setColumnWidth(3, SizeColumnWidth);
    layout->addWidget(tableView, 1);
    layout->addWidget(controlPanelView);
    return page;
}

void TransfersViewController::setUploads(const VLRTransferList& uploads)
{
    view();
    updateList(m_uploads, uploads, m_uploadsTableView, m_uploadsRows);
    m_tabSelectorViewController->showBadgeForUploadCount(uploads.size());
}

void TransfersViewController::setDownloads(const VLRTransferList& downloads)
{
    view();
    updateList(m_downloads, downloads, m_downloadsTableView, m_downloadsRows);
    m_tabSelectorViewController->showBadgeForDownloadCount(downloads.size());
}

void TransfersViewController::setCompleted(const VLRTransferList& completed)
{
    view();
    updateList(m_completed, completed, m_completedTableView, m_completedRows);
    m_completedControlPanelView->setVisible(completed.size() >= CompletedPanelThreshold);
}

void TransfersViewController::updateList(VLRTransferList& stored, const VLRTransferList& transfers,
                                         TransfersTableView* tableView, TransferRows& rows)
{
    stored = transfers;
    // The selection stays on the same row numbers, whichever transfers stand
    // there now; each row keeps its own selected look.
    const QList<int> selected = tableView->selectedRowIndexes();
    rows = transferRowsFromTransfers(transfers, tableView, selected);
    tableView->reloadData();
    tableView->selectRowIndexes(selected, false);
}

TransfersViewController::TransferRows
TransfersViewController::transferRowsFromTransfers(const VLRTransferList& transfers, TransfersTableView* tableView,
                                                   const QList<int>& selectedRowIndexes)
{
    TransferRows rows;
    rows.reserve(transfers.size());
    const bool completed = tableView == m_completedTableView;
    for (qsizetype i = 0; i < transfers.size(); ++i) {
        const VLRTransferReportingPtr& transfer = transfers.at(i);
        const QString identifier = identifierOf(transfer);
        std::shared_ptr<TransferRow> row;
        if (!identifier.isEmpty())
            row = m_transferRowCache.value(identifier);
        if (row) {
            row->setTransfer(transfer);
        } else {
            row = std::make_shared<TransferRow>(transfer, tableView, selectedRowIndexes.contains(int(i)));
            if (!identifier.isEmpty())
                m_transferRowCache.insert(identifier, row);
        }
        if (completed) {
            row->setShowCancelButton(true);
            row->setSelected(false);
        }
        row->setDelegate(this);
        rows.append(std::move(row));
    }
    return rows;
}

const TransfersViewController::TransferRows&
TransfersViewController::rowsForTableView(const TransfersTableView* tableView) const
{
    if (tableView && tableView == m_uploadsTableView)
        return m_uploadsRows;
    if (tableView && tableView == m_downloadsTableView)
        return m_downloadsRows;
    return m_completedRows;
}

TransferRow* TransfersViewController::transferRowForTableViewRow(TransfersTableView* tableView, int row)
{
    const TransferRows& rows = rowsForTableView(tableView);
    // Read as unsigned, -1 is out of range too.
    if (static_cast<std::size_t>(row) >= static_cast<std::size_t>(rows.size()))
        return nullptr;
    return rows.at(row).get();
}

int TransfersViewController::numberOfRowsInTableView(TransfersTableView* tableView)
{
    return int(rowsForTableView(tableView).size());
}

const TransferRowView* TransfersViewController::tableViewViewForTableColumnRow(TransfersTableView* tableView,
                                                                               int column, int row)
{
    TransferRow* transferRow = transferRowForTableViewRow(tableView, row);
    if (!transferRow || column < 0 || column > 3)
        return nullptr;
    transferRow->setDarkBackground(row % 2 == 1);
    return &transferRow->viewForColumn(column);
}

bool TransfersViewController::tableViewShouldSelectRow(TransfersTableView* tableView, int row)
{
    const int selectedRow = tableView->selectedRow();
    if (selectedRow >= 0) {
        if (TransferRow* previous = transferRowForTableViewRow(tableView, selectedRow))
            previous->setSelected(false);
        tableView->reloadDataForRowIndexes({selectedRow});
    }
    if (TransferRow* next = transferRowForTableViewRow(tableView, row))
        next->setSelected(true);
    tableView->reloadDataForRowIndexes({row});
    return true;
}

void TransfersViewController::showTab(int list, const QString& andSelectTransfer)
{
    view();
    m_tabSelectorViewController->selectTab(list);
    if (andSelectTransfer.isNull())
        return;
    TransfersTableView* table = list == DownloadsList ? m_downloadsTableView
        : list == UploadsList                         ? m_uploadsTableView
                                                      : m_completedTableView;
    const TransferRows& rows = rowsForTableView(table);
    QList<int> matches;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const bool match = identifierOf(rows.at(i)->transfer()) == andSelectTransfer;
        if (match)
            matches.append(int(i));
        rows.at(i)->setSelected(match);
    }
    table->selectRowIndexes(matches, false);
    table->reloadData();
    if (!matches.isEmpty())
        table->scrollRowToVisible(matches.first());
}

void TransfersViewController::setTransfersPaused(bool paused)
{
    view();
    m_transfersPaused = paused;
    for (const TransferRows* rows : {&m_uploadsRows, &m_downloadsRows})
        for (const auto& row : *rows)
            row->setShowPauseResumeButton(!paused);
    m_uploadsControlPanelViewController->setTransfersPaused(paused);
    m_downloadsControlPanelViewController->setTransfersPaused(paused);
}

void TransfersViewController::updateUploadThroughput(double kilobitsPerSecond)
{
    view();
    m_uploadsControlPanelViewController->setTransferSpeed(kilobitsPerSecond);
}

void TransfersViewController::updateDownloadThroughput(double kilobitsPerSecond)
{
    view();
    m_downloadsControlPanelViewController->setTransferSpeed(kilobitsPerSecond);
}

void TransfersViewController::updateUploadTimeRemaining(double seconds, bool isValid)
{
    view();
    m_uploadsControlPanelViewController->setSecondsLeft(wholeSeconds(seconds, isValid));
}

void TransfersViewController::updateDownloadTimeRemaining(double seconds, bool isValid)
{
    view();
    m_downloadsControlPanelViewController->setSecondsLeft(wholeSeconds(seconds, isValid));
}

void TransfersViewController::updateState()
{
    int state = NormalState;
    if (m_delegate && m_delegate->transfersViewControllerEmailNeedsConfirmation())
        state = EmailNeedsConfirmationState;
    else if (m_delegate && m_delegate->transfersViewControllerLoading())
        state = LoadingState;
    const int previous = std::exchange(m_state, state);
    if (state == previous)
        return;
    view();
    switch (state) {
    case EmailNeedsConfirmationState:
        m_emailConfirmView->setPixmap(VLRImageCatalogue::imageNamed(QStringLiteral("transfers_needs_confirm.pdf")));
        m_emailConfirmView->show();
        m_resendConfirmButton->show();
        break;
    case LoadingState:
        m_emailConfirmView->setPixmap(VLRImageCatalogue::imageNamed(QStringLiteral("transfers_loading.pdf")));
        m_emailConfirmView->show();
        m_resendConfirmButton->hide();
        break;
    default:
        m_emailConfirmView->setPixmap(QPixmap());
        m_emailConfirmView->hide();
        m_resendConfirmButton->hide();
        break;
    }
}

void TransfersViewController::resendButtonClicked()
{
    if (!m_services.library || !m_services.desktop)
        return;
    const QString url = vlr::format(QStringLiteral("https://%@/users/resend_email_confirm"),
                                    m_services.library->environment().appHostname());
    m_services.desktop->openURL(QUrl(url));
}

void TransfersViewController::doubleClickTableView(TransfersTableView* tableView)
{
    TransferRow* row = transferRowForTableViewRow(tableView, tableView ? tableView->clickedRow() : -1);
    if (!row || !row->transfer() || !row->transfer()->fileURL().isLocalFile() || !m_services.desktop)
        return;
    // The folder that holds the file, never the file itself: a teammate's
    // file is not something to run.
    const QString folder = QFileInfo(row->transfer()->fileURL().toLocalFile()).absolutePath();
    if (QFileInfo::exists(folder))
        m_services.desktop->openURL(QUrl::fromLocalFile(folder));
}

bool TransfersViewController::tableViewWriteRowsWithIndexesToPasteboard(TransfersTableView*, const QList<int>& rows,
                                                                        QMimeData* pasteboard)
{
    pasteboard->setData(TransfersTableView::DraggedType, archivedRows(rows));
    return true;
}

bool TransfersViewController::tableViewAcceptDropRow(TransfersTableView* tableView, const QMimeData* pasteboard,
                                                     int row)
{
    const bool uploads = tableView == m_uploadsTableView;
    if (!uploads && tableView != m_downloadsTableView)
        return false;
    const VLRTransferList& transfers = uploads ? m_uploads : m_downloads;
    // Row numbers from elsewhere are taken as they come; those that name no
    // transfer of this list are passed over.
    VLRTransferList moved;
    for (int index : unarchivedRows(pasteboard->data(TransfersTableView::DraggedType))) {
        if (index >= 0 && index < transfers.size())
            moved.append(transfers.at(index));
    }
    if (moved.isEmpty() || !m_delegate)
        return false;
    TransferRow* referenceRow = transferRowForTableViewRow(tableView, row);
    const VLRTransferReportingPtr reference = referenceRow ? referenceRow->transfer() : nullptr;
    if (uploads)
        m_delegate->transfersViewControllerMovedUploads(this, moved, reference);
    else
        m_delegate->transfersViewControllerMovedDownloads(this, moved, reference);
    return true;
}

void TransfersViewController::transfersTabSelectorDidSelectTab(TransfersTabSelectorViewController*, int tab)
{
    if (m_tabView && tab >= 1 && tab <= m_tabView->count())
        m_tabView->setCurrentIndex(tab - 1);
}

void TransfersViewController::transfersControlPanelDidPauseAll(TransfersControlPanelViewController*)
{
    if (m_delegate)
        m_delegate->transfersViewControllerDidPauseTransfers(this, true);
}

void TransfersViewController::transfersControlPanelDidResumeAll(TransfersControlPanelViewController*)
{
    if (m_delegate)
        m_delegate->transfersViewControllerDidPauseTransfers(this, false);
}

void TransfersViewController::transfersControlPanelDidClearAll(TransfersControlPanelViewController* panel)
{
    if (panel != m_completedControlPanelViewController)
        return;
    for (const auto& row : m_completedRows)
        removeFromCache(row.get());
    if (m_delegate)
        m_delegate->transfersViewControllerDidClearCompleted(this);
}

void TransfersViewController::removeFromCache(const TransferRow* row)
{
    const QString identifier = identifierOf(row->transfer());
    if (!identifier.isEmpty())
        m_transferRowCache.remove(identifier);
}

// The record is acted on through a copy of its reference: the library may
// answer at once with new arrays, and the row may be gone when it returns.
void TransfersViewController::transferRowDidCancel(TransferRow* row)
{
    const VLRTransferReportingPtr transfer = row->transfer();
    // A row made for an active list answers with that table even after it
    // moved to completed, and so stays cached.
    const bool madeForCompleted = row->tableView() == m_completedTableView;
    if (transfer)
        transfer->cancel();
    const QString identifier = identifierOf(transfer);
    if (madeForCompleted && !identifier.isEmpty())
        m_transferRowCache.remove(identifier);
}

void TransfersViewController::transferRowDidPause(TransferRow* row)
{
    if (const VLRTransferReportingPtr transfer = row->transfer())
        transfer->pause();
}

void TransfersViewController::transferRowDidResume(TransferRow* row)
{
    if (const VLRTransferReportingPtr transfer = row->transfer())
        transfer->unpause();
}

void TransfersViewController::transferRowDidRetry(TransferRow* row)
{
    const VLRTransferReportingPtr transfer = row->transfer();
    if (!transfer || !m_delegate)
        return;
    if (transfer->type() == VLRTransferReporting::UploadType)
        m_delegate->transfersViewControllerRestartedUpload(this, transfer);
    else
        m_delegate->transfersViewControllerRestartedDownload(this, transfer);
}
