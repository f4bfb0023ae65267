#include "widgets/VLRButton.h"

#include "app/VLRColors.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRLabel.h"
#include "widgets/VLRTextFieldAdditions.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace {

constexpr qreal kTitleFontSize = 12;
// The title label is made this much taller than its text and rounded into
// place; the title looks centred in the button that way.
constexpr qreal kTitleVerticalOffset = -3;
constexpr qreal kBadgeWidth = 26;
constexpr qreal kWarningBadgeSize = 16;

const QColor kPressedBackground = QColor::fromRgbF(0, 0, 0, 0.1f);

VLRAttributedString emptyTitle()
{
    VLRAttributedString title;
    title.font = VLRFonts::muli(kTitleFontSize);
    title.foregroundColor = VLRColors::textColor();
    title.alignment = Qt::AlignHCenter;
    return title;
}

} // namespace

VLRButton::VLRButton(QWidget* parent)
    : QAbstractButton(parent)
{
    initialize();
}

VLRButton::VLRButton(const QRect& frame, QWidget* parent)
    : QAbstractButton(parent)
{
    setGeometry(frame);
    initialize();
}

void VLRButton::initialize()
{
    m_titleLabel = VLRLabel::labelCenteredInFrameAttributedStringVerticalOffset(QRectF(rect()), emptyTitle(),
                                                                                kTitleVerticalOffset, this);
    m_centeredTitleFrame = m_titleLabel->frame();
}

void VLRButton::resizeEvent(QResizeEvent* event)
{
    // The title stays centred on the bounds, keeping any shift for a badge.
    if (!m_titleLabel) {
        QAbstractButton::resizeEvent(event);
        return;
    }
    const qreal shift = m_titleLabel->frame().x() - m_centeredTitleFrame.x();
    m_centeredTitleFrame = VLRLabel::labelFrameCenteredInFrame(QRectF(rect()), m_titleLabel->attributedStringValue(),
                                                               kTitleVerticalOffset);
    m_titleLabel->setFrame(m_centeredTitleFrame.translated(shift, 0));
    QAbstractButton::resizeEvent(event);
}

void VLRButton::setLayerBackgroundColor(const QColor& color)
{
    if (!m_layer)
        m_layer.emplace();
    m_layer->backgroundColor = color;
    update();
}

void VLRButton::showImage(const QPixmap& image)
{
    m_image = image;
    update();
}

void VLRButton::setBackgroundColor(const QColor& color)
{
    m_backgroundColor = color;
    setLayerBackgroundColor(color);
}

void VLRButton::setDefaultImage(const QPixmap& image)
{
    m_defaultImage = image;
    showImage(image);
}

void VLRButton::setMouseOverImage(const QPixmap& image)
{
    m_mouseOverImage = image;
    if (!image.isNull() && m_mouseOverStyle != VLRMouseOverStyleImage)
        setMouseOverStyle(VLRMouseOverStyleImage);
}

void VLRButton::setClickedImage(const QPixmap& image)
{
    m_clickedImage = image;
    if (!image.isNull() && m_clickStyle != VLRClickStyleImage)
        setClickStyle(VLRClickStyleImage);
}

void VLRButton::setTextColor(const QColor& color)
{
    m_textColor = color;
    setTitleTextColor(color);
    if (color.isValid() && m_mouseOverStyle != VLRMouseOverStyleText)
        setMouseOverStyle(VLRMouseOverStyleText);
}

void VLRButton::setTitleTextColor(const QColor& color)
{
    if (m_titleLabel->stringValue().isEmpty())
        return;
    VLRAttributedString title = attributedTitle();
    title.foregroundColor = color;
    setAttributedTitle(title);
}

void VLRButton::moveTitleFromPlatform()
{
    const QString platformTitle = QAbstractButton::text();
    if (platformTitle.isEmpty())
        return;
    QAbstractButton::setText(QString());
    m_titleLabel->setStringValue(platformTitle);
}

QString VLRButton::title()
{
    moveTitleFromPlatform();
    return m_titleLabel->stringValue();
}

void VLRButton::setTitle(const QString& title)
{
    m_titleLabel->setStringValue(title);
}

VLRAttributedString VLRButton::attributedTitle()
{
    moveTitleFromPlatform();
    return m_titleLabel->attributedStringValue();
}

void VLRButton::setAttributedTitle(const VLRAttributedString& title)
{
    m_titleLabel->setAttributedStringValue(title);
}

void VLRButton::setBadgeValue(qint64 value)
{
    if (value == m_badgeValue)
        return;
    m_badgeValue = value;
    if (value <= 0) {
        if (m_badgeView)
            m_badgeView->hide();
        m_titleLabel->setFrame(m_centeredTitleFrame);
        return;
    }
    if (!m_badgeView) {
        const qreal x = width() - kBadgeWidth;
        const QRectF frame = m_badgeIsWarning
            ? QRectF(x, 0.5 * (height() - kWarningBadgeSize), kWarningBadgeSize, kWarningBadgeSize)
            : QRectF(x, 0, kBadgeWidth, height());
        m_badgeView = new VLRBadgeView(frame, this);
        m_badgeView->setIsWarning(m_badgeIsWarning);
        offsetBadge();
    }
    m_badgeView->show();
    m_badgeView->setBadgeValue(value);
    if (title().isEmpty())
        return;
    // Title and badge are centred as a pair; the rounding is single precision,
    // halves away from zero.
    const qreal titleWidth = layoutSizeForAttributedString(attributedTitle()).width();
    const qreal ellipseWidth = m_badgeView->ellipseRect().width();
    m_titleLabel->setFrame(m_centeredTitleFrame.translated(std::roundf(float((ellipseWidth + 1) * -0.5)), 0));
    QRectF badgeFrame = m_badgeView->frame();
    badgeFrame.moveLeft(std::roundf(float((titleWidth + width() - ellipseWidth + 1) * 0.5)));
    m_badgeView->setFrame(badgeFrame);
    offsetBadge();
}

void VLRButton::offsetBadge()
{
    // The shift is added to where the badge stands now, so a vertical offset
    // adds up with every value a titled button shows.
    if (m_badgeOffset.isNull() || !m_badgeView)
        return;
    m_badgeView->setFrame(m_badgeView->frame().translated(m_badgeOffset));
}

void VLRButton::setBadgeOffset(const QPointF& offset)
{
    m_badgeOffset = offset;
    offsetBadge();
}

void VLRButton::setBadgeIsWarning(bool badgeIsWarning)
{
    if (badgeIsWarning == m_badgeIsWarning)
        return;
    // The badge is made anew in the frame of its new look.
    const qint64 value = m_badgeValue;
    setBadgeValue(0);
    // The old badge stays behind, hidden, as a child of the button.
    m_badgeView = nullptr;
    m_badgeIsWarning = badgeIsWarning;
    setBadgeValue(value);
}

bool VLRButton::drivesClicks() const
{
    return (m_clickStyle == VLRClickStyleBackground || m_clickStyle == VLRClickStyleImage) && isEnabled();
}

bool VLRButton::drivesMouseOver() const
{
    return (m_mouseOverStyle == VLRMouseOverStyleBackground || m_mouseOverStyle == VLRMouseOverStyleImage
            || m_mouseOverStyle == VLRMouseOverStyleText)
        && isEnabled();
}

void VLRButton::mousePressEvent(QMouseEvent* event)
{
    if (!drivesClicks() || event->button() != Qt::LeftButton) {
        QAbstractButton::mousePressEvent(event);
        return;
    }
    if (m_clickStyle == VLRClickStyleBackground)
        setLayerBackgroundColor(kPressedBackground);
    else
        showImage(m_clickedImage);
    event->accept();
}

void VLRButton::mouseReleaseEvent(QMouseEvent* event)
{
    if (!drivesClicks() || event->button() != Qt::LeftButton) {
        QAbstractButton::mouseReleaseEvent(event);
        return;
    }
    if (m_clickStyle == VLRClickStyleBackground)
        setLayerBackgroundColor(Qt::transparent);
    else
        showImage(m_defaultImage);
    event->accept();
    // Wherever the pointer is now: these buttons act at every release.
    emit clicked(isChecked());
}

void VLRButton::enterEvent(QEnterEvent* event)
{
    if (!drivesMouseOver()) {
        QAbstractButton::enterEvent(event);
        return;
    }
    if (m_mouseOverStyle == VLRMouseOverStyleBackground)
        setLayerBackgroundColor(kPressedBackground);
    else if (m_mouseOverStyle == VLRMouseOverStyleImage)
        showImage(m_mouseOverImage);
    else
        setTitleTextColor(m_mouseOverTextColor);
}

void VLRButton::leaveEvent(QEvent* event)
{
    if (!drivesMouseOver()) {
        QAbstractButton::leaveEvent(event);
        return;
    }
    if (m_mouseOverStyle == VLRMouseOverStyleBackground)
        setLayerBackgroundColor(Qt::transparent);
    else if (m_mouseOverStyle == VLRMouseOverStyleImage)
        showImage(m_defaultImage);
    else
        setTitleTextColor(m_textColor);
}

void VLRButton::setEnabled(bool enabled)
{
    QAbstractButton::setEnabled(enabled);
    // Also when it was enabled already: enabling is how a page clears the
    // darkening a press or the pointer left behind.
    if (enabled && m_backgroundColor.isValid())
        setLayerBackgroundColor(m_backgroundColor);
}

void VLRButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_layer)
        m_layer->paintBackground(painter, rect());
    if (m_image.isNull())
        return;
    QSizeF size = m_image.deviceIndependentSize();
    if (size.width() > width() || size.height() > height())
        size = size.scaled(QSizeF(this->size()), Qt::KeepAspectRatio);
    QRectF target(QPointF(0, 0), size);
    target.moveCenter(QRectF(rect()).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // A disabled button shows its picture faded.
    if (!isEnabled())
        painter.setOpacity(0.5);
    painter.drawPixmap(target, m_image, QRectF(m_image.rect()));
}
