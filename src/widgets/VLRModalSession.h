#pragma once

#include <QDialog>
#include <QPointer>

// A dialog shown modal to the whole application while the event loop goes on
// running; its answer is asked for step by step with run().
class VLRModalSession
{
public:
    // The dialog is still up.
    static constexpr qint64 VLRModalResponseContinue = -1002;
    // The dialog went away without an answer.
    static constexpr qint64 VLRModalResponseAbort = -1001;

    // Shows the dialog application-modal; it is not owned.
    static VLRModalSession beginModalSessionForWindow(QDialog* window);

    QDialog* window() const { return m_window; }

    // VLRModalResponseContinue while the dialog is up, then its result code.
    qint64 run() const;

private:
    explicit VLRModalSession(QDialog* window);

    QPointer<QDialog> m_window;
};
