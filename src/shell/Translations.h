#pragma once

#include <QLocale>
#include <QTranslator>

// The client's texts and Qt's own (dialogs, standard buttons) in the first
// language of the locale that the client is translated into, installed in the
// application while this object lives. Without such a language every text
// stays in English, Qt's too, so that the two never mix. Needs the
// application object.
class Translations
{
public:
    explicit Translations(const QLocale& locale = QLocale::system());
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

    // The language the client speaks, e.g. "de"; empty for English.
    QString language() const { return m_client.language(); }
    // Whether Qt's own translation into that language was found on the system.
    bool hasQtTranslation() const { return !m_qt.isEmpty(); }

private:
    // Each removes itself from the application when destroyed.
    QTranslator m_client;
    QTranslator m_qt;
};
