#include "sdk/remote/RemoteUtils.h"

#include "sdk/base/MainThread.h"
#include "sdk/remote/RemoteEnvironment.h"

namespace {

QUrl serverPage(const RemoteEndpoint& server, const QString& path)
{
    QUrl page = server.base;
    page.setPath(path);
    return page;
}

} // namespace

QUrl RemoteUtils::resetPasswordURL()
{
    const RemoteEndpoint server = RemoteEnvironment::chosenServer();
    return server.isValid() ? serverPage(server, QStringLiteral("/users/password/new"))
                            : LocalUtils::resetPasswordURL();
}

void RemoteUtils::getHelpURLWithCompletionHandler(const VLRURLHandler& handler)
{
    const RemoteEndpoint server = RemoteEnvironment::chosenServer();
    if (!server.isValid())
        return LocalUtils::getHelpURLWithCompletionHandler(handler);
    if (handler)
        MainThread::post(
            [handler, page = serverPage(server, QStringLiteral("/help-center"))] { handler(page, std::nullopt); });
}
