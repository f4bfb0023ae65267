#pragma once

#include "sdk/net/RemoteEndpoint.h"

#include <QFile>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QStringList>
#include <QTextStream>

#include <memory>

class QIODevice;

// veluria-admin --server https://host:port: the same commands, run by a
// team server on its own database. The administrator signs in like any
// client (password from the terminal or standard input, never from the
// command line; a second factor when the account has one), the files a
// command names are uploaded first, and what the server answers is printed
// as the local tool would print it.
class RemoteAdmin
{
public:
    RemoteAdmin(QTextStream& out, QTextStream& err);

    int run(QStringList arguments);

private:
    struct Reply
    {
        int status = 0;
        QJsonObject json;
        // Why there is no answer, or the answer's error message.
        QString failure;
    };
    Reply send(const QByteArray& method, const QString& path, const QJsonObject& body);
    Reply send(const QByteArray& method, const QString& path, QIODevice* body, qint64 size);
    bool configure(QStringList& arguments);
    bool signIn(const QString& email);
    int fail(const QString& reason);
    // The folder's tar stream in a private temporary file, or null (and
    // m_failure) when it can't be made.
    std::unique_ptr<QFile> archived(const QString& folder);

    QTextStream& m_out;
    QTextStream& m_err;
    RemoteEndpoint m_endpoint;
    QNetworkAccessManager m_network;
    QString m_failure;
};
