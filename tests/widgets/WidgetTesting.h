#pragma once

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

// What the tests of the kit share: views made in place, the events the
// desktop would send them, and what they then show.

// A child of the given type at the given place in its parent.
template <typename View> View* placed(QWidget* parent, const QRect& geometry)
{
    auto* view = new View(parent);
    view->setGeometry(geometry);
    return view;
}

// A move holds no button, so only a view that tracks the mouse hears it.
inline void sendMouse(QWidget* widget, QEvent::Type type, const QPointF& position = QPointF(5, 5))
{
    QMouseEvent event(type, position, position, widget->mapToGlobal(position),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

inline void sendEnterOrLeave(QWidget* widget, bool enter)
{
    QEnterEvent entered(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QEvent left(QEvent::Leave);
    QCoreApplication::sendEvent(widget, enter ? static_cast<QEvent*>(&entered) : &left);
}

inline std::unique_ptr<QMimeData> filesMimeData(const QStringList& paths)
{
    auto data = std::make_unique<QMimeData>();
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls.append(QUrl::fromLocalFile(path));
    data->setUrls(urls);
    return data;
}

// True when the widget takes the drag, as a copy.
inline bool sendDragEnter(QWidget* widget, const QMimeData* data)
{
    QDragEnterEvent event(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
    return event.isAccepted() && event.dropAction() == Qt::CopyAction;
}

// Qt delivers a drop only to a widget that a drag has entered. True when the
// drop is taken.
inline bool sendDrop(QWidget* widget, const QMimeData* data)
{
    sendDragEnter(widget, data);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
    return event.isAccepted();
}

// Runs a private slot, as its timer would.
inline void invokeTimes(QObject* object, const char* slot, int times = 1)
{
    for (int i = 0; i < times; ++i)
        ASSERT_TRUE(QMetaObject::invokeMethod(object, slot)) << slot;
}

inline QImage rendered(QWidget* widget, const QRegion& region = QRegion(), const QColor& ground = Qt::white)
{
    QImage image(widget->size(), QImage::Format_ARGB32);
    image.fill(ground);
    widget->render(&image, QPoint(), region, QWidget::DrawChildren);
    return image;
}
