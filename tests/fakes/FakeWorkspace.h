#pragma once

#include "fakes/FakeCallLog.h"
#include "service/VLRWorkspace.h"

#include <memory>

class FakeWorkspace : public VLRWorkspace
{
public:
    using VLRWorkspace::setIdentifier;
    using VLRWorkspace::setName;
    using VLRWorkspace::setUpdatedAt;
    using VLRWorkspace::setWorkspaceUsers;

    static std::shared_ptr<FakeWorkspace> make(const QString& identifier, const QString& name,
                                               const QDateTime& updatedAt = {});

    FakeCallLog log;

    void openInBrowser(bool assets) override;
};
