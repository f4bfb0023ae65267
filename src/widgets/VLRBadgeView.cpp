#include "widgets/VLRBadgeView.h"

#include "app/VLRColors.h"
#include "widgets/VLRFonts.h"
#include "widgets/VLRImageCatalogue.h"

#include <QPainter>

namespace {

constexpr qreal kEllipseHeight = 16;
constexpr qreal kBadgeFontSize = 11;

} // namespace

VLRBadgeView::VLRBadgeView(QWidget* parent)
    : QWidget(parent)
    , m_color(VLRColors::badgeColor())
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

VLRBadgeView::VLRBadgeView(const QRectF& frame, QWidget* parent)
    : VLRBadgeView(parent)
{
    setFrame(frame);
}

void VLRBadgeView::setFrame(const QRectF& frame)
{
    m_frame = frame;
    setGeometry(frame.toRect());
}

void VLRBadgeView::setIsWarning(bool isWarning)
{
    m_isWarning = isWarning;
    updateLayer();
    update();
}

void VLRBadgeView::setBadgeValue(qint64 badgeValue)
{
    const bool changed = badgeValue != m_badgeValue;
    m_badgeValue = badgeValue;
    m_ellipseRect = ellipseFrame();
    if (changed)
        updateLayer();
    update();
}

void VLRBadgeView::setColor(const QColor& color)
{
    m_color = color;
    update();
}

QString VLRBadgeView::badgeText() const
{
    return m_badgeValue >= 100 ? QStringLiteral("99+") : QString::number(m_badgeValue);
}

QRectF VLRBadgeView::ellipseFrame() const
{
    const qreal width = m_badgeValue < 10 ? 16 : (m_badgeValue < 100 ? 21 : 26);
    return QRectF(0, 0.5 * (height() - kEllipseHeight), width, kEllipseHeight);
}

void VLRBadgeView::updateLayer()
{
    if (m_isWarning && m_badgeValue >= 1) {
        m_layer.emplace();
        m_layer->contents =
            VLRImageCatalogue::imageNamed(QStringLiteral("warning_triangle"), size(), devicePixelRatioF());
    } else {
        m_layer.reset();
    }
}

void VLRBadgeView::resizeEvent(QResizeEvent* event)
{
    // The triangle is rendered for the view's size.
    if (m_layer)
        updateLayer();
    QWidget::resizeEvent(event);
}

void VLRBadgeView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_layer)
        m_layer->paintBackground(painter, rect());
    if (m_badgeValue < 0 || m_isWarning)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ellipse = ellipseFrame();
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_color);
    painter.drawEllipse(ellipse);
    // The line starts at the bubble's top moved down by 2, which puts the
    // digits in its middle; "99+" sits a point to the right, where it looks
    // centred.
    const QRectF textRect = ellipse.translated(m_badgeValue >= 100 ? 1 : 0, 2);
    painter.setPen(Qt::white);
    painter.setFont(VLRFonts::muli(kBadgeFontSize));
    painter.drawText(textRect, Qt::AlignTop | Qt::AlignHCenter | Qt::TextDontClip, badgeText());
}
