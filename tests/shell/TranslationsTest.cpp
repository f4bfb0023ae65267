#include "shell/Translations.h"
#include "app/VLRText.h"

#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

TEST(TranslationsTest, TheLocaleChoosesTheLanguageAndEnglishIsTheFallback)
{
    const bool systemHasQtGerman =
        QFile::exists(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + QStringLiteral("/qtbase_de.qm"));
    {
        // A region without a file of its own gets its language.
        const Translations german(QLocale(QLocale::German, QLocale::Austria));
        EXPECT_EQ(german.language(), "de");
        EXPECT_EQ(vlr::localized("Quit Veluria"), "Veluria beenden");
        EXPECT_EQ(german.hasQtTranslation(), systemHasQtGerman);
        if (systemHasQtGerman) {
            EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), "Abbrechen");
        }
    }
    EXPECT_EQ(vlr::localized("Quit Veluria"), "Quit Veluria");
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), "Cancel");

    // A language the client doesn't speak leaves Qt's texts in English too.
    const Translations french(QLocale(QLocale::French, QLocale::France));
    EXPECT_TRUE(french.language().isEmpty());
    EXPECT_FALSE(french.hasQtTranslation());
    EXPECT_EQ(vlr::localized("Quit Veluria"), "Quit Veluria");
}

// Every shipped translation: each message finished, with as many %@ as its
// English text, in the context that vlr::localized looks in, and given by the
// compiled file in the program.
TEST(TranslationsTest, EveryMessageOfEveryLanguageIsFinishedAndKeepsItsPlaceholders)
{
    const QDir folder(QStringLiteral(VELURIA_SOURCE_DIR "/src/resources/translations"));
    const QStringList files = folder.entryList({QStringLiteral("veluria_*.ts")}, QDir::Files);
    ASSERT_FALSE(files.isEmpty());
    for (const QString& name : files) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        const QString language = name.mid(8).chopped(3);
        const Translations translations{QLocale(language)};
        ASSERT_EQ(translations.language().left(2), language.left(2)) << name.toStdString();

        QXmlStreamReader xml(&file);
        QString context, source, translation;
        int messages = 0;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == QLatin1String("name")) {
                context = xml.readElementText();
            } else if (xml.name() == QLatin1String("source")) {
                source = xml.readElementText();
            } else if (xml.name() == QLatin1String("translation")) {
                const bool finished = xml.attributes().value(QLatin1String("type")).isEmpty();
                translation = xml.readElementText();
                const std::string what = (name + QStringLiteral(": ") + source).toStdString();
                ++messages;
                EXPECT_EQ(context, "vlr") << what;
                EXPECT_TRUE(finished && !translation.isEmpty()) << what << " is unfinished";
                EXPECT_EQ(translation.count(QStringLiteral("%@")), source.count(QStringLiteral("%@"))) << what;
                EXPECT_EQ(vlr::localized(source.toUtf8().constData()), translation) << what;
            }
        }
        EXPECT_FALSE(xml.hasError()) << name.toStdString() << ": " << xml.errorString().toStdString();
        EXPECT_GT(messages, 0) << name.toStdString();
    }
}
