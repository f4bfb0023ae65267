#pragma once

#include "platform/VLRDefaultsDomainFile.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <map>
#include <memory>
#include <optional>

// The program's settings. The standard domain is the file
// $XDG_CONFIG_HOME/Veluria/Veluria.conf; each persistent domain is a file of
// its own in the same folder, named after the domain. Values keep their type
// (booleans, numbers, strings, dates, and anything QVariant can stream).
// Used on the GUI thread only.
class VLRUserDefaults
{
public:
    // The settings kept in the folder; a second instance on the same folder
    // reads the files afresh, as a restart would.
    explicit VLRUserDefaults(const QString& directory);

    // $XDG_CONFIG_HOME/Veluria: the program's own folder.
    static QString standardDirectory();

    // An invalid QVariant when nothing is stored under the key.
    QVariant objectForKey(const QString& key);
    // An invalid value removes the key.
    void setObject(const QVariant& value, const QString& key);
    void removeObjectForKey(const QString& key);

    // false when absent; otherwise QVariant's reading of the value as a boolean.
    bool boolForKey(const QString& key);
    void setBool(bool value, const QString& key);

    // The string stored under the key, or a number as text; null otherwise.
    QString stringForKey(const QString& key);

    // nullopt when the domain doesn't exist. setPersistentDomain replaces the
    // whole domain: to change one key, read it, change the copy, write it back.
    std::optional<QVariantMap> persistentDomainForName(const QString& domainName);
    void setPersistentDomain(const QVariantMap& domain, const QString& domainName);

    // Writes what couldn't be written before and reads what other programs
    // changed. True when every domain is on disk.
    bool synchronize();

private:
    VLRDefaultsDomainFile* persistentDomainFile(const QString& domainName);
    QString pathForDomain(const QString& domainName) const;

    QString m_directory;
    VLRDefaultsDomainFile m_standardDomain;
    std::map<QString, std::unique_ptr<VLRDefaultsDomainFile>> m_persistentDomains;
};
