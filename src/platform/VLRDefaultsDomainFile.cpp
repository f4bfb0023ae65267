#include "platform/VLRDefaultsDomainFile.h"

#include "platform/VLRDefaultsValueCodec.h"
#include "service/VLRLogFormat.h"
#include "service/VLRPrivateFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

VLRDefaultsDomainFile::VLRDefaultsDomainFile(QString path)
    : m_path(std::move(path))
{ }

const std::optional<QVariantMap>& VLRDefaultsDomainFile::contents()
{
    if (!m_loaded)
        load();
    return m_contents;
}

void VLRDefaultsDomainFile::setContents(const QVariantMap& contents)
{
    m_loaded = true;
    m_contents = contents;
    m_unsaved = !write();
}

bool VLRDefaultsDomainFile::synchronize()
{
    if (m_unsaved)
        m_unsaved = !write();
    else
        load();
    return !m_unsaved;
}

void VLRDefaultsDomainFile::load()
{
    m_loaded = true;
    if (m_path.isEmpty() || !QFileInfo(m_path).isFile()) {
        m_contents.reset();
        return;
    }
    QSettings settings(m_path, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError)
        reportFailure(QStringLiteral("cannot read %1").arg(m_path));
    QVariantMap contents;
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys)
        contents.insert(key, VLRDefaultsValueCodec::decode(settings.value(key)));
    m_contents = contents;
}

bool VLRDefaultsDomainFile::write()
{
    if (m_path.isEmpty()) {
        reportFailure(QStringLiteral("there is no configuration folder"));
        return false;
    }
    const QString folder = QFileInfo(m_path).absolutePath();
    // The address the user signs in with is kept here: folder and files are
    // the user's alone, also when an older version left them wider.
    if (!VLRPrivateFiles::makeFolder(folder, true)) {
        reportFailure(QStringLiteral("cannot create the folder %1").arg(folder));
        return false;
    }
    {
        QSettings settings(m_path, QSettings::IniFormat);
        settings.clear();
        const QVariantMap contents = m_contents.value_or(QVariantMap());
        for (auto it = contents.cbegin(); it != contents.cend(); ++it)
            settings.setValue(it.key(), VLRDefaultsValueCodec::encode(it.value()));
        settings.sync();
        if (settings.status() != QSettings::NoError) {
            reportFailure(QStringLiteral("cannot write %1").arg(m_path));
            return false;
        }
    }
    // An empty domain still exists: QSettings writes no file for no keys.
    QFile file(m_path);
    if (!file.exists() && !file.open(QIODevice::WriteOnly)) {
        reportFailure(QStringLiteral("cannot write %1: %2").arg(m_path, file.errorString()));
        return false;
    }
    file.close();
    VLRPrivateFiles::restrictFile(m_path);
    return true;
}

void VLRDefaultsDomainFile::reportFailure(const QString& reason)
{
    if (m_failureReported)
        return;
    m_failureReported = true;
    VLRLogFormat(5, QStringLiteral("SDKClient"), "User defaults: %@; the values are kept in memory for this run",
                 reason);
}
