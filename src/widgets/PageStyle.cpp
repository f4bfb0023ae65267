#include "widgets/PageStyle.h"

#include "app/VLRColors.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRView.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>

namespace {

const char* const BackgroundColorProperty = "vlrBackgroundColor";
constexpr int FieldHeight = 34;
constexpr int MarkSize = 48;
constexpr int LinkHeight = 24;
constexpr int LinkPadding = 16;

QString rgb(const QColor& color)
{
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.alpha());
}

// The whole look of a field in one sheet, so that its background is the one
// colour it was given and no style of the desktop shows through.
QString fieldStyleSheet(const QColor& background)
{
    return QStringLiteral("QLineEdit { background-color: %1; color: %2; border: 1px solid %3; border-radius: 3px;"
                          " padding: 0px 9px; selection-background-color: %4; selection-color: white; }"
                          "QLineEdit:focus { border: 1px solid %4; }"
                          "QLineEdit:disabled { color: %5; }")
        .arg(rgb(background), rgb(VLRColors::textColor()), rgb(VLRColors::grey(206)), rgb(VLRColors::mainAppColor()),
             rgb(VLRColors::grey(151)));
}

QLabel* makeLabel(const QString& text, const QFont& font, const QColor& color, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setFont(font);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    return label;
}

} // namespace

void PageStyle::applyPageLook(VLRView* view)
{
    view->setBackgroundColor(VLRColors::grey(250));
    view->setBorderColor(VLRColors::grey(151));
    view->setBorderCornerRadius(0);
    view->setBorderWidth(1);
}

QLineEdit* PageStyle::makeTextField(const QString& placeholder, QWidget* parent)
{
    auto* field = new QLineEdit(parent);
    field->setPlaceholderText(placeholder);
    field->setFont(VLRFonts::muli(13));
    field->setFixedHeight(FieldHeight);
    setBackgroundColor(field, Qt::white);
    return field;
}

QColor PageStyle::backgroundColor(const QLineEdit* field)
{
    return field ? field->property(BackgroundColorProperty).value<QColor>() : QColor();
}

void PageStyle::setBackgroundColor(QLineEdit* field, const QColor& color)
{
    if (!field)
        return;
    field->setProperty(BackgroundColorProperty, color);
    field->setStyleSheet(fieldStyleSheet(color));
    // On a painted field the hint is drawn light, so that it still reads.
    QPalette palette = field->palette();
    palette.setColor(QPalette::PlaceholderText,
                     color == QColor(Qt::white) ? VLRColors::grey(151) : QColor::fromRgbF(1, 1, 1, 0.85f));
    field->setPalette(palette);
}

QLabel* PageStyle::makeHeading(const QString& text, QWidget* parent)
{
    return makeLabel(text, VLRFonts::muli(18, QFont::DemiBold), VLRColors::textColor(), parent);
}

QLabel* PageStyle::makeSecondaryLine(const QString& text, QWidget* parent)
{
    return makeLabel(text, VLRFonts::muli(12), VLRColors::grey(151), parent);
}

QLabel* PageStyle::makeErrorLabel(QWidget* parent)
{
    // The error colour is a fill; as text it is drawn a shade darker so that
    // it reads on the light page.
    return makeLabel(QString(), VLRFonts::muli(12), VLRColors::errorColor().darker(135), parent);
}

QLabel* PageStyle::makeMark(QWidget* parent)
{
    auto* mark = new QLabel(parent);
    mark->setPixmap(VLRImageCatalogue::imageNamed(QStringLiteral("statusItemLightMode"), QSize(MarkSize, MarkSize),
                                                  qApp->devicePixelRatio()));
    mark->setFixedSize(MarkSize, MarkSize);
    return mark;
}

VLRButton* PageStyle::makeLinkButton(const QString& title, QWidget* parent)
{
    auto* button = new VLRButton(parent);
    button->setCursor(Qt::PointingHandCursor);
    button->setTitle(title);
    const int width = int(button->attributedTitle().size().width()) + 2 * LinkPadding;
    button->setFixedSize(width, LinkHeight);
    return button;
}
