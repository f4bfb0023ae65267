#include "sdk/remote/RemoteLoginVerifier.h"

#include "sdk/base/MainThread.h"
#include "sdk/base/ServiceError.h"
#include "sdk/remote/RemoteApi.h"
#include "sdk/remote/RemoteSignIn.h"

RemoteLoginVerifier::RemoteLoginVerifier(const RemoteEndpoint& server, const QByteArray& verification)
    : m_server(server)
    , m_verification(verification)
{ }

void RemoteLoginVerifier::verifyLoginWithCode(const QString& code, bool, const VLRVerifyHandler& completionHandler)
{
    auto answer = [completionHandler](const VLRUserSessionPtr& session, const vlr::OptionalError& error) {
        if (completionHandler)
            completionHandler(session, error);
    };
    if (m_used)
        return MainThread::post([answer] { answer(nullptr, ServiceError::make(ServiceError::VerificationEnded)); });
    const std::weak_ptr<RemoteLoginVerifier> weak = std::static_pointer_cast<RemoteLoginVerifier>(shared_from_this());
    const QJsonObject body{{QStringLiteral("verification"), QString::fromLatin1(m_verification)},
                           {QStringLiteral("code"), code.trimmed()}};
    const RemoteEndpoint server = m_server;
    RemoteApi::send(server, "POST", QStringLiteral("sessions/verify"), body,
                    [weak, server, answer](const RemoteApi::Answer& reply) {
                        const QByteArray token = reply.json.value(QStringLiteral("token")).toString().toLatin1();
                        if (reply.error || token.isEmpty())
                            return answer(nullptr,
                                          reply.error ? *reply.error : ServiceError::make(ServiceError::WrongCode));
                        if (auto self = weak.lock())
                            self->m_used = true;
                        RemoteEndpoint session = server;
                        session.token = token;
                        RemoteSignIn::signedIn(session,
                                               [answer](const VLRUserSessionPtr& signedIn, const VLRLoginVerifierPtr&,
                                                        const vlr::OptionalError& error) { answer(signedIn, error); });
                    });
}
