#pragma once

#include "service/VLRInstallerOperation.h"

#include <functional>

// A download, an install step or the whole of one installation. The
// marketplace changes it on the GUI thread; cancelling hands the wish to
// whoever runs the work, once.
class LocalInstallerOperation : public VLRInstallerOperation
{
public:
    explicit LocalInstallerOperation(std::function<void()> onCancel = {})
        : m_onCancel(std::move(onCancel))
    { }

    using VLRProgressReporting::setError;
    using VLRProgressReporting::setFinished;
    using VLRProgressReporting::setFractionCompleted;

    void cancel() override
    {
        if (m_cancelled)
            return;
        m_cancelled = true;
        if (m_onCancel)
            m_onCancel();
    }
    bool isCancelled() const override { return m_cancelled; }

private:
    std::function<void()> m_onCancel;
    bool m_cancelled = false;
};

using LocalInstallerOperationPtr = std::shared_ptr<LocalInstallerOperation>;
