#include "session/VLRPopover.h"

#include "session/SessionLog.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

VLRPopover::VLRPopover(QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    setObjectName(QStringLiteral("popover"));
    setWindowTitle(QStringLiteral("Veluria"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

void VLRPopover::setContentView(QWidget* view)
{
    if (m_contentView == view)
        return;
    if (m_contentView)
        layout()->removeWidget(m_contentView);
    m_contentView = view;
    if (view) {
        layout()->addWidget(view);
        setFixedSize(view->size());
    }
}

QPoint VLRPopover::placement(const QSize& size, const QRect& anchor, const QRect& available)
{
    int x = anchor.x() + anchor.width() / 2 - size.width() / 2;
    int y = anchor.bottom() + 1 + Gap;
    if (y + size.height() > available.bottom() + 1)
        y = anchor.top() - Gap - size.height();
    x = std::clamp(x, available.left(), std::max(available.left(), available.right() + 1 - size.width()));
    y = std::clamp(y, available.top(), std::max(available.top(), available.bottom() + 1 - size.height()));
    return {x, y};
}

void VLRPopover::showRelativeToRect(const QRect& rect, QWidget* ofView, int)
{
    // The status item's rectangle is in screen coordinates when it has a
    // place of its own; otherwise the pointer stands in for it.
    QRect anchor = rect;
    if (ofView && ofView->parentWidget())
        anchor = QRect(ofView->parentWidget()->mapToGlobal(rect.topLeft()), rect.size());
    if (anchor.isEmpty())
        anchor = QRect(QCursor::pos(), QSize(1, 1));
    QScreen* screen = QGuiApplication::screenAt(anchor.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(QPoint(0, 0), size());
    move(placement(size(), anchor, available));
    m_wasActive = false;
    qCDebug(lcSession, "Popover opens at %d,%d", pos().x(), pos().y());
    show();
    raise();
    activateWindow();
}

void VLRPopover::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::ActivationChange)
        return;
    if (isActiveWindow())
        m_wasActive = true;
    else if (m_wasActive && isVisible() && !QGuiApplication::focusWindow()) {
        qCDebug(lcSession, "Popover closes: another application took the focus");
        hide();
    }
}

void VLRPopover::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        hide();
    else
        QWidget::keyPressEvent(event);
}
