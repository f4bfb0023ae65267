#pragma once

#include <QTextEdit>

// A text view that can be switched off as a whole: not selectable, not
// editable, and its text in the disabled colour. It stays a live widget, so
// that it keeps scrolling while switched off.
class VLRTextView : public QTextEdit
{
    Q_OBJECT

public:
    explicit VLRTextView(QWidget* parent = nullptr);

    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);

private:
    bool m_enabled = true;
};
