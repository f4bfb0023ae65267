#include "shell/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

Translations::Translations(const QLocale& locale)
{
    // Tries the locale's languages in order, e.g. de-AT, then de.
    if (!m_client.load(locale, QStringLiteral("veluria"), QStringLiteral("_"), QStringLiteral(":/translations")))
        return;
    QCoreApplication::installTranslator(&m_client);
    if (m_qt.load(QLocale(m_client.language()), QStringLiteral("qtbase"), QStringLiteral("_"),
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qt);
}
