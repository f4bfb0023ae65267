#include "widgets/VLRAvatarListView.h"

#include "app/VLRText.h"
#include "widgets/VLRImageCatalogue.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTextDocument>
#include <QToolTip>

#include <cmath>

namespace {

// The ellipsis names at most this many of the members left out.
constexpr qsizetype kEllipsisNameCount = 20;

} // namespace

VLRAvatarListView::VLRAvatarListView(QWidget* parent)
    : QWidget(parent)
{ }

qsizetype VLRAvatarListView::capacity() const
{
    const qreal h = height();
    if (h <= 0)
        return 0;
    return qsizetype(std::trunc((width() + 0.25 * h) / (1.25 * h)));
}

QString VLRAvatarListView::ellipsisToolTip(qsizetype capacity) const
{
    // The first member not shown, then one a line, then how many more.
    QString toolTip = m_avatars.at(capacity - 1).toolTip();
    for (qsizetype i = capacity; i < m_avatars.size(); ++i) {
        if (i == capacity - 1 + kEllipsisNameCount) {
            const qsizetype others = m_avatars.size() - (capacity - 1 + kEllipsisNameCount);
            toolTip += QLatin1Char('\n') + vlr::format(vlr::localized("+ %@ more"), QString::number(others));
            break;
        }
        toolTip += QStringLiteral("\n%1").arg(m_avatars.at(i).toolTip());
    }
    return toolTip;
}

QList<VLRAvatarListView::Slot> VLRAvatarListView::avatarSlots() const
{
    QList<Slot> slotList;
    const qsizetype c = capacity();
    const qsizetype n = m_avatars.size();
    // Too narrow for one picture, the ellipsis's tool tip would start at the
    // member before the first: such a view shows nothing rather than read
    // outside the list.
    if (c == 0)
        return slotList;
    const bool overflows = c < n;
    const qreal h = height();
    for (qsizetype i = 0; i < n; ++i) {
        const QRectF frame(i * 1.25 * h, 0, h, h);
        if (!overflows)
            slotList.append(Slot{frame, m_avatars.at(i)});
        else if (i == 0)
            slotList.append(
                Slot{frame,
                     VLRAvatar(VLRImageCatalogue::imageNamed(QStringLiteral("ellipsisAvatar"),
                                                             QSize(height(), height()), devicePixelRatioF()),
                               ellipsisToolTip(c))});
        else
            slotList.append(Slot{frame, m_avatars.at(i - 1)});
        if (i + 1 >= c)
            break;
    }
    return slotList;
}

void VLRAvatarListView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QList<Slot> present = avatarSlots();
    for (qsizetype i = 0; i < present.size(); ++i) {
        if (i < m_shownSlots.size())
            m_shownSlots[i] = present.at(i);
        else
            m_shownSlots.append(present.at(i));
    }
    for (const Slot& slot : std::as_const(m_shownSlots)) {
        const QPixmap image = slot.avatar.image();
        if (image.isNull())
            continue;
        QPainterPath circle;
        circle.addEllipse(slot.frame);
        painter.save();
        painter.setClipPath(circle);
        painter.drawPixmap(slot.frame, image, QRectF(image.rect()));
        painter.restore();
    }
}

bool VLRAvatarListView::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    for (const Slot& slot : std::as_const(m_shownSlots)) {
        if (slot.frame.contains(help->pos()) && !slot.avatar.toolTip().isEmpty()) {
            // Members name themselves: their names are shown as plain text.
            QToolTip::showText(help->globalPos(), Qt::convertFromPlainText(slot.avatar.toolTip()), this,
                               slot.frame.toRect());
            return true;
        }
    }
    QToolTip::hideText();
    event->ignore();
    return true;
}
