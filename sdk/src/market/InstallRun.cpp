#include "sdk/market/InstallRun.h"

#include "sdk/base/Database.h"
#include "sdk/base/PrivateFiles.h"
#include "sdk/base/ServiceError.h"
#include "sdk/installs/Applications.h"
#include "sdk/installs/Installation.h"
#include "sdk/market/MarketError.h"
#include "sdk/market/MarketStore.h"
#include "sdk/store/ContentStore.h"
#include "sdk/store/ResumableCopy.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

InstallRun::InstallRun(Job job, Database& database, std::function<bool()> shouldStop,
                       std::function<void(Phase, double)> progress)
    : m_job(std::move(job))
    , m_database(database)
    , m_shouldStop(std::move(shouldStop))
    , m_progress(std::move(progress))
{ }

QString InstallRun::packagePath(const QString& revisionId)
{
    return Applications::root() + QStringLiteral("/.downloads/%1.part").arg(revisionId);
}

QString InstallRun::shownName(const QString& name)
{
    static const QRegularExpression extension(QStringLiteral("\\.(app|appimage|tar\\.[a-z0-9]+|tgz|txz|zip)$"),
                                              QRegularExpression::CaseInsensitiveOption);
    QString shown = name;
    shown.remove(extension);
    return shown.isEmpty() ? name : shown;
}

vlr::OptionalError InstallRun::run()
{
    MarketStore market(m_database);
    const QString name = shownName(market.installerName(m_job.installerId));
    const auto revision = market.revision(m_job.revisionId);
    if (!revision || revision->installerId != m_job.installerId)
        return MarketError::make(MarketError::InstallerNotFound);
    if (!market.isEntitled(m_job.userId, m_job.installerId))
        return MarketError::make(MarketError::NotEntitled, name);

    const QString package = packagePath(revision->id);
    if (!PrivateFiles::makeFolder(QFileInfo(package).path()))
        return MarketError::make(MarketError::InstallFailed, name,
                                 QStringLiteral("Its download folder can't be made."));
    const ContentStore store(m_database.folder());
    qint64 copied = 0;
    ResumableCopy copy(store.pathOf(revision->content.toLatin1()), package, m_shouldStop, [&](qint64 bytes) {
        copied += bytes;
        if (revision->size > 0)
            m_progress(Phase::Download, double(copied) / double(revision->size));
    });
    switch (copy.run()) {
    case ResumableCopy::Outcome::Stopped:
        return ServiceError::cancelled();
    case ResumableCopy::Outcome::Failed:
        QFile::remove(package);
        return copy.failedOnSource() ? MarketError::make(MarketError::PackageDamaged, name)
                                     : MarketError::make(MarketError::InstallFailed, name, copy.failure());
    case ResumableCopy::Outcome::Done:
        break;
    }
    if (copy.digest() != revision->content.toLatin1()) {
        QFile::remove(package);
        return MarketError::make(MarketError::PackageDamaged, name);
    }
    m_progress(Phase::Install, 0);

    Installation installation({m_job.installerId, name, revision->version, package, revision->fileName,
                               market.installerImage(m_job.installerId)},
                              m_shouldStop, [&](double fraction) { m_progress(Phase::Install, fraction); });
    const bool installed = installation.run();
    QFile::remove(package);
    if (!installed)
        return installation.stopped() ? ServiceError::cancelled()
                                      : MarketError::make(MarketError::InstallFailed, name, installation.failure());
    if (!market.recordInstall(m_job.userId, m_job.installerId, Applications::thisMachine(), revision->id,
                              revision->version))
        return MarketError::make(MarketError::InstallFailed, name, m_database.errorMessage());
    return std::nullopt;
}
