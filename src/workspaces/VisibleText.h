#pragma once

#include <QString>

// Text that other people wrote, made fit for one line of a label or menu:
// control characters, line breaks and the invisible marks that turn the
// direction of text around become visible replacement signs, so that a name
// can neither break a row apart nor disguise itself. Never read as markup by
// the callers either: they show it as plain text.
class VisibleText
{
public:
    VisibleText() = delete;

    static QString oneLine(const QString& text);
};
