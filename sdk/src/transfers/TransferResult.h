#pragma once

#include "service/VLRError.h"

#include <QString>

// How one run of a transfer on its worker ended.
struct TransferResult
{
    enum class Outcome { Completed, Failed, Stopped };

    Outcome outcome = Outcome::Completed;
    vlr::OptionalError error;
    // The revision that an upload made.
    QString revisionId;
    // Where a download ended up, which may differ from the planned target
    // when another file took that name meanwhile.
    QString filePath;
    qint64 totalSize = 0;

    static TransferResult failed(const vlr::Error& error)
    {
        TransferResult result;
        result.outcome = Outcome::Failed;
        result.error = error;
        return result;
    }
    static TransferResult stopped()
    {
        TransferResult result;
        result.outcome = Outcome::Stopped;
        return result;
    }
};
