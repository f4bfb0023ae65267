#include "fakes/FakeWorkspace.h"

std::shared_ptr<FakeWorkspace> FakeWorkspace::make(const QString& identifier, const QString& name,
                                                   const QDateTime& updatedAt)
{
    auto workspace = std::make_shared<FakeWorkspace>();
    workspace->setIdentifier(identifier);
    workspace->setName(name);
    workspace->setUpdatedAt(updatedAt);
    return workspace;
}

void FakeWorkspace::openInBrowser(bool assets)
{
    log.record(QStringLiteral("openInBrowser"), {assets});
}
