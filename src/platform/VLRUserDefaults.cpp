#include "platform/VLRUserDefaults.h"

#include "service/VLRLogFormat.h"

#include <QStandardPaths>

namespace {

// The standard domain's file, which is also what a persistent domain of this
// name reads and writes.
const QString standardDomainName = QStringLiteral("Veluria");

// A domain name becomes a file name, so it may not leave the folder.
bool isValidDomainName(const QString& name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..")
        && !name.contains(QLatin1Char('/')) && !name.contains(QChar(0));
}

bool isNumber(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

} // namespace

VLRUserDefaults::VLRUserDefaults(const QString& directory)
    : m_directory(directory)
    , m_standardDomain(pathForDomain(standardDomainName))
{ }

QString VLRUserDefaults::standardDirectory()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return config.isEmpty() ? QString() : config + QStringLiteral("/Veluria");
}

QVariant VLRUserDefaults::objectForKey(const QString& key)
{
    const auto& contents = m_standardDomain.contents();
    return contents ? contents->value(key) : QVariant();
}

void VLRUserDefaults::setObject(const QVariant& value, const QString& key)
{
    if (key.isEmpty())
        return;
    if (!value.isValid()) {
        removeObjectForKey(key);
        return;
    }
    QVariantMap contents = m_standardDomain.contents().value_or(QVariantMap());
    contents.insert(key, value);
    m_standardDomain.setContents(contents);
}

void VLRUserDefaults::removeObjectForKey(const QString& key)
{
    const auto& current = m_standardDomain.contents();
    if (key.isEmpty() || !current || !current->contains(key))
        return;
    QVariantMap contents = *current;
    contents.remove(key);
    m_standardDomain.setContents(contents);
}

bool VLRUserDefaults::boolForKey(const QString& key)
{
    return objectForKey(key).toBool();
}

void VLRUserDefaults::setBool(bool value, const QString& key)
{
    setObject(QVariant(value), key);
}

QString VLRUserDefaults::stringForKey(const QString& key)
{
    const QVariant value = objectForKey(key);
    if (value.typeId() == QMetaType::QString || isNumber(value))
        return value.toString();
    return QString();
}

std::optional<QVariantMap> VLRUserDefaults::persistentDomainForName(const QString& domainName)
{
    VLRDefaultsDomainFile* file = persistentDomainFile(domainName);
    return file ? file->contents() : std::nullopt;
}

void VLRUserDefaults::setPersistentDomain(const QVariantMap& domain, const QString& domainName)
{
    VLRDefaultsDomainFile* file = persistentDomainFile(domainName);
    if (!file) {
        VLRLogFormat(5, QStringLiteral("SDKClient"), "User defaults: invalid persistent domain name \"%@\"",
                     domainName);
        return;
    }
    file->setContents(domain);
}

bool VLRUserDefaults::synchronize()
{
    bool saved = m_standardDomain.synchronize();
    for (auto& [name, file] : m_persistentDomains)
        saved = file->synchronize() && saved;
    return saved;
}

VLRDefaultsDomainFile* VLRUserDefaults::persistentDomainFile(const QString& domainName)
{
    if (!isValidDomainName(domainName))
        return nullptr;
    if (domainName == standardDomainName)
        return &m_standardDomain;
    auto& file = m_persistentDomains[domainName];
    if (!file)
        file = std::make_unique<VLRDefaultsDomainFile>(pathForDomain(domainName));
    return file.get();
}

QString VLRUserDefaults::pathForDomain(const QString& domainName) const
{
    if (m_directory.isEmpty())
        return QString();
    return m_directory + QLatin1Char('/') + domainName + QStringLiteral(".conf");
}
