#include "sdk/remote/RemoteWorkspace.h"

#include "sdk/remote/RemoteApi.h"
#include "sdk/remote/RemoteLog.h"

#include <QDesktopServices>

RemoteWorkspace::RemoteWorkspace(const QString& identifier, const RemoteEndpoint& endpoint)
    : m_endpoint(endpoint)
{
    setIdentifier(identifier);
}

void RemoteWorkspace::openInBrowser(bool assets)
{
    const QString path =
        QStringLiteral("/workspaces/") + identifier() + (assets ? QStringLiteral("/assets") : QString());
    QUrl plain = m_endpoint.base;
    plain.setPath(path);
    const QUrl server = m_endpoint.base;
    RemoteApi::send(m_endpoint, "POST", QStringLiteral("web-sessions"), QJsonObject{{QStringLiteral("path"), path}},
                    [plain, server](const RemoteApi::Answer& answer) {
                        // Only a page of the same server is opened: the
                        // answer is data, not a place to send the browser.
                        const QUrl entry(answer.json.value(QStringLiteral("url")).toString(), QUrl::StrictMode);
                        const bool usable = !answer.error && entry.isValid() && entry.scheme() == server.scheme()
                            && entry.host().compare(server.host(), Qt::CaseInsensitive) == 0
                            && entry.port(443) == server.port(443);
                        if (!usable)
                            qCInfo(lcRemote, "No one-time link for the workspace's page; opening it plainly");
                        QDesktopServices::openUrl(usable ? entry : plain);
                    });
}
