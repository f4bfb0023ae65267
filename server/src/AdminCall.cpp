#include "AdminCall.h"

#include "BlobStore.h"

#include <QFileInfo>
#include <QJsonArray>

QString AdminCall::option(const QString& name) const
{
    // Never null: an option not given is an empty text, as in the database.
    const QJsonValue value = options.value(name);
    return (value.isArray() ? value.toArray().last() : value).toString(QStringLiteral(""));
}

QStringList AdminCall::values(const QString& name) const
{
    const QJsonValue value = options.value(name);
    if (!value.isArray())
        return value.isString() ? QStringList{value.toString()} : QStringList();
    QStringList all;
    for (const QJsonValue& each : value.toArray())
        all.append(each.toString());
    return all;
}

bool AdminCall::flag(const QString& name) const
{
    return options.value(name).toBool();
}

QString AdminCall::file(const QString& key) const
{
    const QString sha256 = files.value(key).toString();
    if (!store || !BlobStore::isDigest(sha256))
        return {};
    const QString path = store->contentPath(sha256);
    return QFileInfo(path).isFile() ? path : QString();
}
