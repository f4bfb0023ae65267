#include "fakes/FakeTransfer.h"

std::shared_ptr<FakeTransfer> FakeTransfer::make(const QString& identifier, qint64 type, const QString& filePath,
                                                 qint64 subType)
{
    auto transfer = std::make_shared<FakeTransfer>();
    transfer->journalName = QStringLiteral("transfer:") + identifier;
    transfer->setIdentifier(identifier);
    transfer->setType(type);
    transfer->setSubType(subType);
    transfer->setFileURL(QUrl::fromLocalFile(filePath));
    return transfer;
}

void FakeTransfer::pause()
{
    log.record(QStringLiteral("pause"));
}

void FakeTransfer::unpause()
{
    log.record(QStringLiteral("unpause"));
}

void FakeTransfer::cancel()
{
    log.record(QStringLiteral("cancel"));
}
