#pragma once

#include <QColor>
#include <QString>

class QLabel;
class QLineEdit;
class QWidget;
class VLRButton;
class VLRView;

// The look the sign-in and preferences pages share: the page itself, its
// entry fields, headings, secondary lines and the one-line error text.
class PageStyle
{
public:
    PageStyle() = delete;

    // Light background 250 with a border of 151, square corners, one wide.
    static void applyPageLook(VLRView* view);

    // An entry field in the program's face, white until painted otherwise.
    static QLineEdit* makeTextField(const QString& placeholder, QWidget* parent);
    // The background the field shows; set anew, it repaints at once.
    static QColor backgroundColor(const QLineEdit* field);
    static void setBackgroundColor(QLineEdit* field, const QColor& color);

    // Plain text only: what the service or the user wrote is never read as
    // markup.
    static QLabel* makeHeading(const QString& text, QWidget* parent);
    static QLabel* makeSecondaryLine(const QString& text, QWidget* parent);
    static QLabel* makeErrorLabel(QWidget* parent);

    // The program's mark, above a page's heading.
    static QLabel* makeMark(QWidget* parent);

    // A button whose title is a link in the body text colour, shaded while
    // the pointer is over it.
    static VLRButton* makeLinkButton(const QString& title, QWidget* parent);
};
