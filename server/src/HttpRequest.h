#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrlQuery>

// One request as the connection parsed it; header names in lower case.
struct HttpRequest
{
    QByteArray method;
    QString path;
    QUrlQuery query;
    QHash<QByteArray, QByteArray> headers;
    qint64 contentLength = 0;
    QByteArray body;

    QByteArray header(const char* name) const { return headers.value(QByteArray(name)); }
    // The bearer token of the Authorization header, or an empty array.
    QByteArray bearerToken() const
    {
        const QByteArray value = header("authorization");
        return value.startsWith("Bearer ") ? value.mid(7).trimmed() : QByteArray();
    }
};
