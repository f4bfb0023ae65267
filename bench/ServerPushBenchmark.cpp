// Push through the team server, seen from its clients. Started by
// bench/server-push.sh, which makes the database, the servers and the
// accounts:
//   latency: one client publishes through one server process, another
//            listens on another process's event stream; the time from each
//            request to its event, over many publications.
//   idle:    many clients hold event streams open on one process and wait.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslSocket>
#include <QTextStream>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

QSslConfiguration trusting(const QString& caPath)
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates(QSslCertificate::fromPath(caPath));
    return tls;
}

// One event stream on a socket of its own (a network access manager would
// share six connections among all of them).
class Stream : public QObject
{
public:
    Stream(const QUrl& server, const QByteArray& token, const QSslConfiguration& tls)
    {
        m_socket.setSslConfiguration(tls);
        connect(&m_socket, &QSslSocket::encrypted, this, [this, server, token] {
            m_socket.write("GET /v1/events HTTP/1.1\r\nHost: " + server.host().toLatin1()
                           + "\r\nAccept: text/event-stream\r\nAuthorization: Bearer " + token + "\r\n\r\n");
        });
        connect(&m_socket, &QSslSocket::readyRead, this, [this] { received += m_socket.readAll(); });
        m_socket.connectToHostEncrypted(server.host(), quint16(server.port()));
    }
    bool connected() const { return received.contains(": connected"); }

    QByteArray received;

private:
    QSslSocket m_socket;
};

bool waitUntil(const std::function<bool()>& condition, int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    return true;
}

int latency(const QStringList& a, QTextStream& out)
{
    // publishUrl listenUrl ca publisherToken listenerToken workspace count
    const QSslConfiguration tls = trusting(a[2]);
    Stream stream(QUrl(a[1]), a[4].toLatin1(), tls);
    if (!waitUntil([&] { return stream.connected(); }, 10000)) {
        out << "the event stream did not open\n";
        return 1;
    }
    QNetworkAccessManager network;
    QNetworkRequest request(QUrl(a[0] + QStringLiteral("/v1/workspaces/") + a[5] + QStringLiteral("/publications")));
    request.setSslConfiguration(tls);
    request.setRawHeader("Authorization", "Bearer " + a[3].toLatin1());
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    const int count = a[6].toInt();
    std::vector<double> ms;
    QElapsedTimer clock;
    for (int i = 0; i < count; ++i) {
        const QByteArray marker = "push-bench-" + QByteArray::number(i) + '"';
        clock.start();
        QNetworkReply* reply = network.post(
            request, QJsonDocument(QJsonObject{{"text", QString::fromLatin1(marker.chopped(1))}}).toJson());
        if (!waitUntil([&] { return stream.received.contains(marker); }, 10000)) {
            out << "publication " << i << " did not arrive\n";
            return 1;
        }
        ms.push_back(double(clock.nsecsElapsed()) / 1e6);
        waitUntil([&] { return reply->isFinished(); }, 10000);
        reply->deleteLater();
        stream.received.clear();
    }
    std::sort(ms.begin(), ms.end());
    out << QStringLiteral("publications %1  median %2 ms  p99 %3 ms  max %4 ms\n")
               .arg(count)
               .arg(ms[ms.size() / 2], 0, 'f', 2)
               .arg(ms[std::min(ms.size() - 1, ms.size() * 99 / 100)], 0, 'f', 2)
               .arg(ms.back(), 0, 'f', 2);
    return 0;
}

int idle(const QStringList& a, QTextStream& out)
{
    // serverUrl ca token clients seconds
    const QSslConfiguration tls = trusting(a[1]);
    std::vector<std::unique_ptr<Stream>> streams;
    for (int i = 0; i < a[3].toInt(); ++i)
        streams.push_back(std::make_unique<Stream>(QUrl(a[0]), a[2].toLatin1(), tls));
    const auto open = [&] {
        return std::count_if(streams.begin(), streams.end(), [](const auto& s) { return s->connected(); });
    };
    waitUntil([&] { return open() == qsizetype(streams.size()); }, 60000);
    out << "streams open " << open() << '\n';
    out.flush();
    // The script reads the server's figures now, and again when this prints.
    QEventLoop loop;
    QTimer::singleShot(a[4].toInt() * 1000, &loop, &QEventLoop::quit);
    loop.exec();
    out << "streams still open " << open() << '\n';
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const QStringList a = app.arguments().mid(2);
    const QString mode = app.arguments().value(1);
    if (mode == QLatin1String("latency") && a.size() == 7)
        return latency(a, out);
    if (mode == QLatin1String("idle") && a.size() == 5)
        return idle(a, out);
    out << "usage: server_push_benchmark latency PUBLISH_URL LISTEN_URL CA PUBLISHER_TOKEN LISTENER_TOKEN WORKSPACE "
           "COUNT\n       server_push_benchmark idle URL CA TOKEN CLIENTS SECONDS\n";
    return 2;
}
