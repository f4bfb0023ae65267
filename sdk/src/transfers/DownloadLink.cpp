#include "sdk/transfers/DownloadLink.h"

#include <QUrl>
#include <QUrlQuery>
#include <QUuid>

namespace {

bool isIdentifier(const QString& text)
{
    return text.size() == 36 && !QUuid::fromString(text).isNull();
}

} // namespace

QString DownloadLink::make(const QString& workspaceId, const QString& revisionId)
{
    return QStringLiteral("veluria://download?workspace=%1&revision=%2").arg(workspaceId, revisionId);
}

std::optional<DownloadLink::Target> DownloadLink::parse(const QString& text)
{
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QLatin1String("veluria") || url.host() != QLatin1String("download")
        || !(url.path().isEmpty() || url.path() == QLatin1String("/")) || !url.userInfo().isEmpty() || url.port() != -1
        || url.hasFragment())
        return std::nullopt;
    const QUrlQuery query(url);
    const QString workspace = query.queryItemValue(QStringLiteral("workspace"));
    const QString revision = query.queryItemValue(QStringLiteral("revision"));
    if (!isIdentifier(workspace) || !isIdentifier(revision) || query.queryItems().size() != 2)
        return std::nullopt;
    return Target{workspace.toLower(), revision.toLower()};
}
