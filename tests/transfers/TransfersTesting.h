#pragma once

#include "fakes/FakeTransfer.h"
#include "service/VLRError.h"
#include "transfers/TransferRow.h"

#include <QStringList>

// The transfer states a row tells apart, made on the test double.
enum class TransferState { Queued, Running, Paused, Failed, Finished };

inline std::shared_ptr<FakeTransfer> makeTransfer(const QString& identifier, TransferState state,
                                                  qint64 type = VLRTransferReporting::UploadType,
                                                  qint64 subType = VLRTransferReporting::RequestedDownloadSubType)
{
    auto transfer =
        FakeTransfer::make(identifier, type, QStringLiteral("/tmp/veluria/") + identifier + ".psd", subType);
    transfer->setTotalSize(1234567);
    if (state == TransferState::Running || state == TransferState::Paused || state == TransferState::Failed)
        transfer->setFractionCompleted(0.42);
    transfer->setPaused(state == TransferState::Paused);
    if (state == TransferState::Failed)
        transfer->setError(vlr::makeError(QStringLiteral("VLRErrorDomain"), 7, QStringLiteral("The disk is full.")));
    if (state == TransferState::Finished) {
        transfer->setFractionCompleted(1.0);
        transfer->setFinished(true);
    }
    return transfer;
}

// What the size cell shows, in the order the elements are added: the hover
// buttons by action, then "size" for the size text.
inline QStringList sizeCellElements(TransferRow& row)
{
    static const QStringList names = {"cancel", "pause", "resume", "retry"};
    QStringList shown;
    const TransferRowView& size = row.sizeView();
    for (const TransferRowView::Button& button : size.buttons)
        if (!button.hidden)
            shown.append(names.at(int(button.action)));
    if (!size.textHidden)
        shown.append("size");
    return shown;
}
