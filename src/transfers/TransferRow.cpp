#include "transfers/TransferRow.h"

#include "app/ByteCountFormatter.h"
#include "app/VLRColors.h"
#include "service/VLRException.h"
#include "service/VLRTransferReporting.h"
#include "transfers/TransferRowDelegate.h"

#include <QFileInfo>
#include <QHeaderView>

#include <cstdio>

namespace {

enum TypeKind { UploadKind = 1, DownloadKind = 2, ShareClosedKind = 3, ShareOpenedKind = 4, AutoRevisionKind = 5 };
enum StatusKind { QueuedStatus = 1, InProgressStatus = 2, FinishedStatus = 3, FailedStatus = 4 };

constexpr int ColumnCount = 4;
constexpr qreal IconSize = 15;
constexpr qreal ButtonSpacing = 5;
constexpr qreal CancelRightInset = 30;

QString typeWord(int kind)
{
    switch (kind) {
    case UploadKind:
        return QStringLiteral("upload");
    case ShareClosedKind:
        return QStringLiteral("share_closed");
    case ShareOpenedKind:
        return QStringLiteral("share_opened");
    case AutoRevisionKind:
        return QStringLiteral("auto_revision");
    default:
        return QStringLiteral("download");
    }
}

QRectF centredIconFrame(const QRectF& frame)
{
    return {frame.width() / 2 - IconSize / 2, frame.height() / 2 - IconSize / 2, IconSize, IconSize};
}

QString percentText(double fraction)
{
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.f%%", fraction * 100);
    return QString::fromLatin1(buffer.data());
}

} // namespace

TransferRow::TransferRow(VLRTransferReportingPtr transfer, QTableView* tableView, bool selected)
    : m_selected(selected)
    , m_transfer(std::move(transfer))
    , m_tableView(tableView)
{
    rebuild();
}

void TransferRow::setTransfer(const VLRTransferReportingPtr& transfer)
{
    m_transfer = transfer;
    rebuild();
}

void TransferRow::setSelected(bool selected)
{
    m_selected = selected;
    rebuild();
}

void TransferRow::setDarkBackground(bool darkBackground)
{
    m_darkBackground = darkBackground;
    rebuild();
}

void TransferRow::setShowCancelButton(bool show)
{
    m_showCancelButton = show;
    rebuild();
}

void TransferRow::rebuild()
{
    // A row can only stand in a table of the four columns it fills.
    const QAbstractItemModel* model = m_tableView ? m_tableView->model() : nullptr;
    if (!model || model->columnCount() != ColumnCount)
        throw vlr::Exception(QStringLiteral("Invalid tableView"),
                             QStringLiteral("TransferRow must be initialized with a tableView with four columns for "
                                            "type, status, name, and size, in that order."));
    m_viewsStale = true;
}

const TransferRowView& TransferRow::typeView()
{
    return viewForColumn(0);
}

const TransferRowView& TransferRow::statusView()
{
    return viewForColumn(1);
}

const TransferRowView& TransferRow::nameView()
{
    return viewForColumn(2);
}

const TransferRowView& TransferRow::sizeView()
{
    return viewForColumn(3);
}

const TransferRowView& TransferRow::viewForColumn(int column)
{
    createViewsIfNeeded();
    return m_views.at(std::clamp(column, 0, ColumnCount - 1));
}

bool TransferRow::transferIsInProgress() const
{
    return m_transfer && m_transfer->fractionCompleted() > 0.0 && !m_transfer->isFinished();
}

void TransferRow::createViewsIfNeeded()
{
    if (!m_viewsStale)
        return;
    m_viewsStale = false;
    const VLRTransferReporting* transfer = m_transfer.get();
    int type = DownloadKind;
    if (transfer && transfer->subType() == VLRTransferReporting::AutoRevisionSubType)
        type = AutoRevisionKind;
    else if (transfer && transfer->type() == VLRTransferReporting::UploadType)
        type = UploadKind;

    // An error beats finished, and a transfer that has reached no fraction
    // yet still counts as queued.
    int status = QueuedStatus;
    if (transfer && transfer->error())
        status = FailedStatus;
    else if (transfer && transfer->isFinished())
        status = FinishedStatus;
    else if (transferIsInProgress())
        status = InProgressStatus;

    const QString name = transfer ? QFileInfo(transfer->fileURL().path()).fileName() : QString();
    const qint64 size = transfer ? transfer->totalSize() : 0;

    const qreal height = m_tableView ? m_tableView->verticalHeader()->defaultSectionSize() : 0;
    const auto frame = [this, height](int column) {
        return QRectF(0, 0, m_tableView ? m_tableView->columnWidth(column) : 0, height);
    };
    m_views[0] = createTypeViewInFrame(frame(0), type);
    m_views[1] = createStatusViewInFrame(frame(1), status);
    m_views[2] = createNameViewInFrame(frame(2), name);
    m_views[3] = createSizeViewInFrame(frame(3), size);
    showButtons(m_mousedOver);
}

TransferRowView TransferRow::trackedViewWithFrame(const QRectF& frame) const
{
    TransferRowView view;
    view.frame = frame;
    view.textFrame = frame;
    view.backgroundColor = VLRColors::grey(m_darkBackground ? 233 : 250);
    if (m_transfer && m_transfer->error())
        view.toolTip = m_transfer->error()->localizedDescription;
    return view;
}

TransferRowView TransferRow::createTypeViewInFrame(const QRectF& frame, int type) const
{
    TransferRowView view = trackedViewWithFrame(frame);
    view.imageFrame = centredIconFrame(frame);
    view.imageName = QStringLiteral("queue_icon_%1_%2")
                         .arg(typeWord(type), m_selected ? QStringLiteral("active") : QStringLiteral("inactive"));
    return view;
}

TransferRowView TransferRow::createStatusViewInFrame(const QRectF& frame, int type) const
{
    TransferRowView view = trackedViewWithFrame(frame);
    view.imageFrame = centredIconFrame(frame);
    switch (type) {
    case InProgressStatus:
        view.text = percentText(m_transfer->fractionCompleted());
        view.alignment = Qt::AlignHCenter;
        view.textColor = m_selected ? VLRColors::mainAppColor() : VLRColors::grey(151);
        break;
    case FinishedStatus:
        view.imageName = QStringLiteral("queue_icon_transfer_completed");
        break;
    case FailedStatus:
        view.imageName = QStringLiteral("queue_icon_transfer_error");
        break;
    default:
        view.imageName = m_selected ? QStringLiteral("queue_icon_transfer_queued_active")
                                    : QStringLiteral("queue_icon_transfer_queued_inactive");
        break;
    }
    return view;
}

TransferRowView TransferRow::createNameViewInFrame(const QRectF& frame, const QString& name) const
{
    TransferRowView view = trackedViewWithFrame(frame);
    view.text = name.toUpper();
    view.alignment = Qt::AlignLeft;
    view.textColor = m_selected ? VLRColors::mainAppColor() : VLRColors::grey(151);
    return view;
}

TransferRowView TransferRow::createSizeViewInFrame(const QRectF& frame, qint64 size) const
{
    TransferRowView view = trackedViewWithFrame(frame);
    const qreal y = frame.height() / 2 - IconSize / 2;
    const qreal cancelX = frame.width() - CancelRightInset;
    const qreal pauseX = cancelX - ButtonSpacing - IconSize;

    TransferRowView::Button cancel;
    cancel.action = TransferRowView::Action::Cancel;
    cancel.imageName = transferIsInProgress() ? QStringLiteral("queue_button_cancel_active")
                                              : QStringLiteral("queue_button_cancel_inactive");
    cancel.frame = QRectF(cancelX, y, IconSize, IconSize);

    TransferRowView::Button pauseResume;
    pauseResume.frame = QRectF(pauseX, y, IconSize, IconSize);
    if (m_transfer && m_transfer->isPaused()) {
        pauseResume.action = TransferRowView::Action::Resume;
        pauseResume.imageName = QStringLiteral("queue_button_transfer_resume_active");
    } else {
        pauseResume.action = TransferRowView::Action::Pause;
        pauseResume.imageName = QStringLiteral("queue_button_transfer_pause_inactive");
        pauseResume.alternateImageName = QStringLiteral("queue_button_transfer_pause_active");
    }

    TransferRowView::Button retry;
    retry.action = TransferRowView::Action::Retry;
    retry.imageName = QStringLiteral("queue_icons_transfer_retry");
    retry.frame = pauseResume.frame;

    view.buttons = {cancel, pauseResume, retry};
    view.text = ByteCountFormatter::sizeFormatWithInt(size);
    view.alignment = Qt::AlignHCenter;
    view.scalesFont = true;
    view.textColor = m_selected ? VLRColors::mainAppColor() : VLRColors::grey(151);
    return view;
}

void TransferRow::showButtons(bool hover)
{
    // Revisions the library makes by itself offer nothing on hover.
    const bool effectiveHover =
        hover && !(m_transfer && m_transfer->subType() == VLRTransferReporting::AutoRevisionSubType);
    TransferRowView& size = m_views[3];
    for (TransferRowView::Button& button : size.buttons) {
        switch (button.action) {
        case TransferRowView::Action::Cancel:
            button.hidden = !(m_showCancelButton || effectiveHover);
            break;
        case TransferRowView::Action::Pause:
        case TransferRowView::Action::Resume:
            button.hidden = !(effectiveHover && transferIsInProgress() && m_showPauseResumeButton);
            break;
        case TransferRowView::Action::Retry:
            button.hidden = !(m_transfer && m_transfer->error());
            break;
        }
    }
    size.textHidden = m_showCancelButton || effectiveHover;
    const TransferRowView::Button& retry = size.buttons.last();
    size.textFrame = size.frame;
    if (!retry.hidden)
        size.textFrame.setRight(retry.frame.left() - ButtonSpacing);
}

void TransferRow::mouseEntered()
{
    m_mousedOver = true;
    if (!m_viewsStale)
        showButtons(true);
}

void TransferRow::mouseExited()
{
    m_mousedOver = false;
    if (!m_viewsStale)
        showButtons(false);
}

void TransferRow::cancelTransfer()
{
    if (m_delegate)
        m_delegate->transferRowDidCancel(this);
}

void TransferRow::pauseTransfer()
{
    if (m_delegate)
        m_delegate->transferRowDidPause(this);
}

void TransferRow::resumeTransfer()
{
    if (m_delegate)
        m_delegate->transferRowDidResume(this);
}

void TransferRow::retryTransfer()
{
    if (m_delegate)
        m_delegate->transferRowDidRetry(this);
}

void TransferRow::performAction(TransferRowView::Action action)
{
    switch (action) {
    case TransferRowView::Action::Cancel:
        cancelTransfer();
        break;
    case TransferRowView::Action::Pause:
        pauseTransfer();
        break;
    case TransferRowView::Action::Resume:
        resumeTransfer();
        break;
    case TransferRowView::Action::Retry:
        retryTransfer();
        break;
    }
}
