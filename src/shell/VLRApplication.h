#pragma once

#include <QApplication>

class QKeyEvent;

// The application object. It takes the standard editing shortcuts (Ctrl+X,
// C, V, Z, A and Ctrl+Shift+Z) itself before the normal event path and sends
// the action to the focused control or the first of its parents that has it,
// so that every field of the popover edits the same way. A shortcut with
// Alt, Meta or any other modifier held is not taken.
class VLRApplication : public QApplication
{
public:
    VLRApplication(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;

    // True when the key was an editing shortcut that a control carried out.
    static bool sendEditingShortcut(const QKeyEvent* event);
};
