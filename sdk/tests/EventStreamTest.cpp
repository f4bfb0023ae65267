// The push stream against a plain HTTP stand-in that sends its bytes in
// awkward pieces, breaks the connection and refuses the token.
#include "ServiceFixture.h"

#include "sdk/remote/EventStream.h"
#include "sdk/remote/RemoteReachabilityManager.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

namespace {

struct Recorder
{
    QList<EventStream::Event> events;
    QList<bool> states;
    QList<vlr::Error> refusals;

    EventStream::Handlers handlers()
    {
        return {[this](const EventStream::Event& event) { events.append(event); },
                [this](bool up) { states.append(up); }, [this](const vlr::Error& error) { refusals.append(error); }};
    }
};

// The next request's socket, once its head has arrived.
QTcpSocket* nextRequest(QTcpServer& server, QByteArray* head)
{
    if (!ServiceFixture::waitUntil([&] { return server.hasPendingConnections(); }, 10000))
        return nullptr;
    QTcpSocket* socket = server.nextPendingConnection();
    head->clear();
    ServiceFixture::waitUntil([&] {
        *head += socket->readAll();
        return head->contains("\r\n\r\n");
    });
    return socket;
}

void sendInPieces(QTcpSocket* socket, const QList<QByteArray>& pieces)
{
    for (const QByteArray& piece : pieces) {
        socket->write(piece);
        socket->flush();
        QTest::qWait(30);
    }
}

const QByteArray streamHead = "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nConnection: close\r\n\r\n";

} // namespace

TEST(EventStreamTest, EventsSplitAnywhereArriveOnceAndInOrder)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    RemoteEndpoint endpoint;
    endpoint.base = QUrl(QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort()));
    endpoint.token = "secret-token";
    Recorder recorder;
    EventStream stream(endpoint, 6, recorder.handlers());
    stream.start();

    QByteArray head;
    QTcpSocket* socket = nextRequest(server, &head);
    ASSERT_TRUE(socket);
    EXPECT_TRUE(head.contains("Last-Event-ID: 6\r\n"));
    EXPECT_TRUE(head.contains("Authorization: Bearer secret-token\r\n"));
    sendInPieces(socket,
                 {streamHead + ": conn", "ected\r\n\r\nid: 6\ndata: {\"text\": \"seen before\"}\n\n",
                  "id: 7\r\nevent: publication\r\nda", "ta: {\"text\":", " \"a\"}\r", "\n\r\n",
                  ": ping\n\nid: 8\nevent: publication\ndata: {\"text\":\ndata: \"b\"}\n\n",
                  "id: 9\ndata: not json\n\nid: 8\nevent: publication\ndata: {\"text\": \"again\"}\n\n"});
    ASSERT_TRUE(ServiceFixture::waitUntil([&] { return recorder.events.size() >= 2; }));
    QTest::qWait(100);
    ASSERT_EQ(recorder.events.size(), 2);
    EXPECT_EQ(recorder.events[0].id, 7);
    EXPECT_EQ(recorder.events[0].kind, "publication");
    EXPECT_EQ(recorder.events[0].data.value("text").toString(), "a");
    EXPECT_EQ(recorder.events[1].id, 8);
    EXPECT_EQ(recorder.events[1].data.value("text").toString(), "b");
    EXPECT_EQ(stream.lastEventId(), 9);
    EXPECT_EQ(recorder.states, QList<bool>{true});
    stream.stop();
}

TEST(EventStreamTest, ABrokenStreamIsDownAndAsksAgainFromTheLastEventUntilTheTokenIsRefused)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    RemoteEndpoint endpoint;
    endpoint.base = QUrl(QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort()));
    Recorder recorder;
    RemoteReachabilityManager reachability;
    EventStream stream(endpoint, -1, recorder.handlers());
    stream.start();

    QByteArray head;
    QTcpSocket* first = nextRequest(server, &head);
    ASSERT_TRUE(first);
    EXPECT_FALSE(head.contains("Last-Event-ID"));
    sendInPieces(first, {streamHead + ": connected\n\nid: 12\ndata: {}\n\n"});
    ASSERT_TRUE(ServiceFixture::waitUntil([&] { return recorder.events.size() == 1; }));
    EXPECT_NE(reachability.currentNetworkStatus(), VLRReachabilityManager::NotReachable);
    first->disconnectFromHost();
    ASSERT_TRUE(ServiceFixture::waitUntil([&] { return recorder.states.size() == 2; }));
    EXPECT_EQ(recorder.states, (QList<bool>{true, false}));
    EXPECT_EQ(reachability.currentNetworkStatus(), VLRReachabilityManager::NotReachable);

    QTcpSocket* second = nextRequest(server, &head);
    ASSERT_TRUE(second);
    EXPECT_TRUE(head.contains("Last-Event-ID: 12\r\n"));
    const QByteArray refusal =
        R"({"error": {"domain": "VLRWebErrorDomain", "code": 4, "message": "Your session has expired."}})";
    second->write("HTTP/1.1 401 Unauthorized\r\nContent-Type: application/json\r\nContent-Length: "
                  + QByteArray::number(refusal.size()) + "\r\n\r\n" + refusal);
    ASSERT_TRUE(ServiceFixture::waitUntil([&] { return !recorder.refusals.isEmpty(); }));
    EXPECT_EQ(recorder.refusals.first().code, 4);
    // A refused token is not asked about again, and counts as no broken line.
    EXPECT_FALSE(ServiceFixture::waitUntil([&] { return server.hasPendingConnections(); }, 2500));
    EXPECT_NE(reachability.currentNetworkStatus(), VLRReachabilityManager::NotReachable);
}
