#pragma once

#include <QCryptographicHash>
#include <QFile>
#include <QNetworkAccessManager>
#include <QObject>
#include <QUrl>

#include <functional>

// One download of a file (a web address or a file: URL) into a file on disk,
// hashed with SHA-256 as it arrives, so that a package is never read twice.
// A server that stays silent for the timeout, an answer other than 200, a
// body beyond the size cap or a file that can't be written ends it with a
// reason for the user.
class PackageDownload : public QObject
{
    Q_OBJECT

public:
    struct Result
    {
        QString error; // null on success
        QByteArray sha256Hex;
    };
    using Handler = std::function<void(const Result& result)>;

    static constexpr int TimeoutMilliseconds = 30000;
    static constexpr qint64 MaximumSize = qint64(2) * 1024 * 1024 * 1024;

    explicit PackageDownload(QObject* parent = nullptr);

    void start(const QUrl& url, const QString& destination, qint64 maximumSize, Handler handler);

private:
    void finish(const QString& error);

    QNetworkAccessManager m_network;
    QFile m_file;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
    qint64 m_maximumSize = MaximumSize;
    QString m_failure;
    Handler m_handler;
};
