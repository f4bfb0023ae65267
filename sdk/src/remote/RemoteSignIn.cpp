#include "sdk/remote/RemoteSignIn.h"

#include "sdk/remote/RemoteApi.h"
#include "sdk/remote/RemoteError.h"
#include "sdk/remote/RemoteLog.h"
#include "sdk/remote/RemoteLoginVerifier.h"
#include "sdk/remote/RemoteUserSession.h"

#include <QJsonArray>

namespace {

void refuse(const VLRSignInHandler& handler, const vlr::Error& error)
{
    if (handler)
        handler(nullptr, nullptr, error);
}

} // namespace

void RemoteSignIn::start(const RemoteEndpoint& server, const VLRLoginCredentials& credentials,
                         const VLRSignInHandler& completionHandler)
{
    const QJsonObject body{{QStringLiteral("email"), credentials.email().trimmed()},
                           {QStringLiteral("password"), credentials.password()}};
    RemoteApi::send(
        server, "POST", QStringLiteral("sessions"), body, [server, completionHandler](const RemoteApi::Answer& answer) {
            if (answer.error)
                return refuse(completionHandler, *answer.error);
            const QByteArray token = answer.json.value(QStringLiteral("token")).toString().toLatin1();
            const QByteArray verification = answer.json.value(QStringLiteral("verification")).toString().toLatin1();
            if (answer.status == 202 && !verification.isEmpty()) {
                if (completionHandler)
                    completionHandler(nullptr, std::make_shared<RemoteLoginVerifier>(server, verification),
                                      std::nullopt);
                return;
            }
            if (token.isEmpty())
                return refuse(completionHandler,
                              RemoteError::make(RemoteError::UnreadableAnswer, server.base.authority()));
            RemoteEndpoint session = server;
            session.token = token;
            signedIn(session, completionHandler);
        });
}

void RemoteSignIn::signedIn(const RemoteEndpoint& session, const VLRSignInHandler& completionHandler)
{
    // A sign-in that fails from here on gives its token back.
    auto giveUp = [session, completionHandler](const vlr::Error& error) {
        RemoteApi::send(session, "DELETE", QStringLiteral("sessions/current"), std::nullopt, {});
        refuse(completionHandler, error);
    };
    RemoteApi::send(session, "GET", QStringLiteral("user"), std::nullopt,
                    [session, completionHandler, giveUp](const RemoteApi::Answer& user) {
                        if (user.error)
                            return giveUp(*user.error);
                        RemoteApi::send(
                            session, "GET", QStringLiteral("workspaces"), std::nullopt,
                            [session, completionHandler, giveUp, account = user.json](const RemoteApi::Answer& list) {
                                if (list.error)
                                    return giveUp(*list.error);
                                qCInfo(lcRemote, "Signed in to %s: %s", qUtf8Printable(session.base.authority()),
                                       qUtf8Printable(account.value(QStringLiteral("email")).toString()));
                                const auto created = RemoteUserSession::create(
                                    session, account, list.json.value(QStringLiteral("workspaces")).toArray());
                                if (completionHandler)
                                    completionHandler(created, nullptr, std::nullopt);
                            });
                    });
}
