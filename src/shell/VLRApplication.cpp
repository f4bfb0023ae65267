#include "shell/VLRApplication.h"

#include <QKeyEvent>
#include <QWidget>

namespace {

// The action of a key with exactly these modifiers; null for any other.
const char* editingAction(int key, Qt::KeyboardModifiers modifiers)
{
    const Qt::KeyboardModifiers held =
        modifiers & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (held == Qt::ControlModifier) {
        switch (key) {
        case Qt::Key_X:
            return "cut";
        case Qt::Key_C:
            return "copy";
        case Qt::Key_V:
            return "paste";
        case Qt::Key_Z:
            return "undo";
        case Qt::Key_A:
            return "selectAll";
        default:
            return nullptr;
        }
    }
    if (held == (Qt::ControlModifier | Qt::ShiftModifier) && key == Qt::Key_Z)
        return "redo";
    return nullptr;
}

} // namespace

VLRApplication::VLRApplication(int& argc, char** argv)
    : QApplication(argc, argv)
{ }

bool VLRApplication::notify(QObject* receiver, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && sendEditingShortcut(static_cast<QKeyEvent*>(event)))
        return true;
    return QApplication::notify(receiver, event);
}

bool VLRApplication::sendEditingShortcut(const QKeyEvent* event)
{
    const char* action = editingAction(event->key(), event->modifiers());
    if (!action)
        return false;
    for (QWidget* responder = QApplication::focusWidget(); responder; responder = responder->parentWidget()) {
        const QMetaObject* meta = responder->metaObject();
        if (meta->indexOfMethod(QMetaObject::normalizedSignature((QByteArray(action) + "()").constData())) < 0)
            continue;
        return QMetaObject::invokeMethod(responder, action);
    }
    return false;
}
