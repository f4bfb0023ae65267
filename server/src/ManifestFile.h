#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class HttpConnection;

// GET /v1/manifest: the version manifest that the server's configuration
// names (server/manifest), for clients that have none of their own. It is
// read at each request, so that a new release needs no restart; a file that
// is missing or not a valid manifest is logged and answered with 404 until
// it is fixed.
class ManifestFile
{
public:
    explicit ManifestFile(const QString& path);

    // Logs whether the configured manifest can be served.
    void check() const;
    // False when the path is not the manifest's.
    bool handle(HttpConnection* c, const QStringList& path) const;

private:
    // The manifest's bytes, or an empty array with the reason.
    QByteArray read(QString* failure) const;

    QString m_path;
};
