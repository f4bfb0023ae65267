#pragma once

#include <QObject>
#include <QPointer>

class QLineEdit;

// The three moments of an editing session in one field, as the pages react to
// them: the user's first change after the field was left alone, every change
// the user makes, and the end of the session (Return, or the focus leaving
// after a change). Changes made by the program are not the user's and are
// not told. Making the field read-only breaks the session off without an
// end, so that the next change begins a new one.
class TextFieldEditing : public QObject
{
    Q_OBJECT

public:
    // Lives as long as the field.
    explicit TextFieldEditing(QLineEdit* field);

    bool isEditing() const { return m_editing; }

signals:
    void didBeginEditing(QLineEdit* field);
    void didChange(QLineEdit* field);
    void didEndEditing(QLineEdit* field);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void textEdited();
    void editingFinished();

    QPointer<QLineEdit> m_field;
    bool m_editing = false;
};
