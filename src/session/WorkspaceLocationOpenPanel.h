#pragma once

#include <QFileDialog>
#include <QPointer>

class WorkspaceLocationDelegate;

// The folder chooser of the library's question: folders only, none created
// here, and a confirmation that the delegate may veto, which keeps the panel
// open as it was.
class WorkspaceLocationOpenPanel : public QFileDialog
{
    Q_OBJECT

public:
    WorkspaceLocationOpenPanel(const QString& title, WorkspaceLocationDelegate* delegate);

    // The folder the panel holds now, chosen or not.
    QUrl URL() const;

    void accept() override;

private:
    // The question may be replaced while this panel is open.
    QPointer<WorkspaceLocationDelegate> m_delegate;
};
