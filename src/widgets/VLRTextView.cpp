#include "widgets/VLRTextView.h"

#include <QTextCursor>

VLRTextView::VLRTextView(QWidget* parent)
    : QTextEdit(parent)
{ }

void VLRTextView::setEnabled(bool enabled)
{
    m_enabled = enabled;
    setReadOnly(!enabled);
    setTextInteractionFlags(enabled ? Qt::TextEditorInteraction : Qt::NoTextInteraction);
    const QColor color = palette().color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Text);
    // The text there is now and the text still to come.
    QTextCharFormat format;
    format.setForeground(color);
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.mergeCharFormat(format);
    setTextColor(color);
}
