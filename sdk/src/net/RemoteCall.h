#pragma once

#include "service/VLRError.h"

#include <QByteArray>
#include <QJsonObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QNetworkReply;

// One request to the team server, waited for on a worker thread: a local
// event loop runs until the answer is complete, or until shouldStop says to
// give up and the request is aborted (whatever of an upload's body reached
// the server stays there).
class RemoteCall
{
public:
    static constexpr auto stopPollInterval = std::chrono::milliseconds(20);

    // Takes the reply, which is deleted with the call.
    explicit RemoteCall(QNetworkReply* reply);
    RemoteCall(const RemoteCall&) = delete;
    RemoteCall& operator=(const RemoteCall&) = delete;
    ~RemoteCall();

    // False when stopped before the answer was complete.
    bool wait(const std::function<bool()>& shouldStop);

    QNetworkReply* reply() const { return m_reply.get(); }
    // The HTTP status; 0 when no answer came (the network failed).
    int status() const;
    QByteArray header(const QByteArray& name) const;
    // The body as a JSON object, read once.
    QJsonObject json();
    // What went wrong, for the user: the server's own error when it sent
    // one, else the network's reason.
    vlr::Error failure();
    // The same for a finished reply handled elsewhere, with its body.
    static vlr::Error failureOf(const QNetworkReply& reply, const QJsonObject& body);

private:
    struct Deleter
    {
        void operator()(QNetworkReply* reply) const;
    };
    std::unique_ptr<QNetworkReply, Deleter> m_reply;
    std::optional<QJsonObject> m_json;
};
