#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

// The values of one defaults domain and the INI file that keeps them. The
// values are read once and then kept in memory for the run; every change is
// written through at once. When the file can't be written the values live on
// in memory for this run, and one log line says what failed.
class VLRDefaultsDomainFile
{
public:
    // An empty path keeps the values in memory alone.
    explicit VLRDefaultsDomainFile(QString path);

    // nullopt while the domain doesn't exist: no file and nothing set.
    const std::optional<QVariantMap>& contents();

    void setContents(const QVariantMap& contents);

    // Writes values that couldn't be written before, otherwise reads the file
    // again to see what other programs changed. True when memory and disk agree.
    bool synchronize();

private:
    void load();
    bool write();
    void reportFailure(const QString& reason);

    QString m_path;
    std::optional<QVariantMap> m_contents;
    bool m_loaded = false;
    bool m_unsaved = false;
    bool m_failureReported = false;
};
