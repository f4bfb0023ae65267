#include "session/WorkspaceLocationOpenPanel.h"

#include "service/VLRError.h"
#include "session/WorkspaceLocationDelegate.h"

#include <QMessageBox>

WorkspaceLocationOpenPanel::WorkspaceLocationOpenPanel(const QString& title, WorkspaceLocationDelegate* delegate)
    : QFileDialog(nullptr, title)
    , m_delegate(delegate)
{
    setAttribute(Qt::WA_DeleteOnClose);
    // Non-native, so that a script can close it from outside.
    setOption(QFileDialog::DontUseNativeDialog);
    setOption(QFileDialog::ShowDirsOnly);
    // Read-only takes away the panel's "New Folder": the question is about
    // a folder that is there.
    setOption(QFileDialog::ReadOnly);
    setFileMode(QFileDialog::Directory);
    setAcceptMode(QFileDialog::AcceptOpen);
}

QUrl WorkspaceLocationOpenPanel::URL() const
{
    const QStringList chosen = selectedFiles();
    return chosen.isEmpty() ? QUrl() : QUrl::fromLocalFile(chosen.first());
}

void WorkspaceLocationOpenPanel::accept()
{
    vlr::OptionalError refusal;
    if (m_delegate && !m_delegate->panelValidateURL(this, URL(), &refusal)) {
        if (refusal) {
            auto* box = new QMessageBox(QMessageBox::Warning, windowTitle(), refusal->localizedDescription,
                                        QMessageBox::Ok, this);
            box->setAttribute(Qt::WA_DeleteOnClose);
            box->open();
        }
        return;
    }
    QFileDialog::accept();
}
