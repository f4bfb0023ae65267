#include "workspaces/VisibleText.h"

QString VisibleText::oneLine(const QString& text)
{
    if (text.isNull())
        return QStringLiteral("");
    QString line = text;
    for (QChar& c : line) {
        const QChar::Category category = c.category();
        // Format marks include the direction overrides and isolates; joiners
        // of the scripts that need them are format marks too, and stay.
        const bool joiner = c.unicode() == 0x200C || c.unicode() == 0x200D;
        if (category == QChar::Other_Control || (category == QChar::Other_Format && !joiner)
            || category == QChar::Separator_Line || category == QChar::Separator_Paragraph)
            c = QChar::ReplacementCharacter;
    }
    return line;
}
