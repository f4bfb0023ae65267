#include "widgets/VLRFonts.h"

#include "widgets/WidgetsLog.h"

#include <QApplication>
#include <QDir>
#include <QFontDatabase>
#include <QStringList>
#include <QtMath>

namespace {

const QString kDesignFamily = QStringLiteral("Muli");

QString registerFontFiles()
{
    const QDir folder(QStringLiteral(":/fonts"));
    const QStringList files = folder.entryList({QStringLiteral("*.ttf")}, QDir::Files, QDir::Name);
    QString family;
    for (const QString& file : files) {
        const int id = QFontDatabase::addApplicationFont(folder.filePath(file));
        if (id < 0) {
            qCWarning(lcWidgets, "Font file %s could not be registered", qUtf8Printable(file));
            continue;
        }
        const QStringList families = QFontDatabase::applicationFontFamilies(id);
        if (family.isNull() && !families.isEmpty())
            family = families.constFirst();
    }
    if (family.isNull()) {
        qCWarning(lcWidgets, "No font file of the \"Muli\" typeface could be loaded; text uses the default face");
        return family;
    }
    if (family != kDesignFamily)
        QFont::insertSubstitution(kDesignFamily, family);
    return family;
}

} // namespace

QString VLRFonts::loadMuli()
{
    static const QString family = registerFontFiles();
    return family;
}

void VLRFonts::useMuliThroughout()
{
    // The default face replaces the faces a theme gave single classes too.
    QApplication::setFont(muli(12));
}

QFont VLRFonts::muli(qreal pointSize, QFont::Weight weight)
{
    const QString family = loadMuli();
    QFont font(family.isNull() ? kDesignFamily : family);
    font.setPixelSize(qMax(1, qRound(pointSize)));
    font.setWeight(weight);
    return font;
}
