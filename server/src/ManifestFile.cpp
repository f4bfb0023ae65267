#include "ManifestFile.h"

#include "HttpConnection.h"
#include "RequestContext.h"

#include "sdk/versions/VersionManifest.h"

#include <QFile>

ManifestFile::ManifestFile(const QString& path)
    : m_path(path)
{ }

QByteArray ManifestFile::read(QString* failure) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        *failure = file.errorString();
        return {};
    }
    const QByteArray json = file.read(VersionManifest::MaximumSize + 1);
    vlr::OptionalError error;
    VersionManifest::parse(json, QStringLiteral("0"), &error);
    if (error) {
        *failure = error->localizedDescription;
        return {};
    }
    return json;
}

void ManifestFile::check() const
{
    if (m_path.isEmpty())
        return;
    QString failure;
    if (read(&failure).isEmpty())
        qWarning("The version manifest %s can't be served until it is fixed: %s", qPrintable(m_path),
                 qPrintable(failure));
}

bool ManifestFile::handle(HttpConnection* c, const QStringList& path) const
{
    if (path != QStringList{QStringLiteral("manifest")})
        return false;
    if (c->request().method != "GET") {
        RequestContext::methodNotAllowed(c);
        return true;
    }
    QString failure;
    const QByteArray json = m_path.isEmpty() ? QByteArray() : read(&failure);
    if (json.isEmpty()) {
        if (!m_path.isEmpty())
            qWarning("The version manifest %s is not served: %s", qPrintable(m_path), qPrintable(failure));
        c->respondError(404, 404, QStringLiteral("This server has no version manifest."));
        return true;
    }
    c->respond(200, json, {{"Cache-Control", "no-cache"}});
    return true;
}
