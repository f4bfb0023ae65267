#include "widgets/TextFieldEditing.h"

#include <QEvent>
#include <QLineEdit>

TextFieldEditing::TextFieldEditing(QLineEdit* field)
    : QObject(field)
    , m_field(field)
{
    connect(field, &QLineEdit::textEdited, this, &TextFieldEditing::textEdited);
    connect(field, &QLineEdit::editingFinished, this, &TextFieldEditing::editingFinished);
    field->installEventFilter(this);
}

bool TextFieldEditing::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_field) {
        if (event->type() == QEvent::ReadOnlyChange && m_field->isReadOnly())
            m_editing = false;
        else if (event->type() == QEvent::FocusOut)
            editingFinished();
    }
    return QObject::eventFilter(watched, event);
}

void TextFieldEditing::textEdited()
{
    if (!m_editing) {
        m_editing = true;
        emit didBeginEditing(m_field);
    }
    emit didChange(m_field);
}

void TextFieldEditing::editingFinished()
{
    // Return in a field the user did not touch ends nothing.
    if (!m_editing)
        return;
    m_editing = false;
    emit didEndEditing(m_field);
}
