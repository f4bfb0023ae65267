#pragma once

#include "fakes/FakeCallLog.h"
#include "fakes/FakeObservationJournal.h"
#include "service/VLRTransferReporting.h"

#include <memory>

class FakeTransfer : public Journaled<VLRTransferReporting>
{
public:
    using VLRTransferReporting::setError;
    using VLRTransferReporting::setFileURL;
    using VLRTransferReporting::setFinished;
    using VLRTransferReporting::setFractionCompleted;
    using VLRTransferReporting::setIdentifier;
    using VLRTransferReporting::setPaused;
    using VLRTransferReporting::setSubType;
    using VLRTransferReporting::setTotalSize;
    using VLRTransferReporting::setType;

    // A transfer of type 1 (upload) or another type (download) for the file.
    static std::shared_ptr<FakeTransfer> make(const QString& identifier, qint64 type, const QString& filePath,
                                              qint64 subType = 1);

    FakeCallLog log;

    void pause() override;
    void unpause() override;
    void cancel() override;
};
