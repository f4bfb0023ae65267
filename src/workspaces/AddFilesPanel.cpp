#include "workspaces/AddFilesPanel.h"

#include <QAbstractItemView>
#include <QFileSystemModel>
#include <QItemSelectionModel>

AddFilesPanel::AddFilesPanel(const QString& title, QWidget* parent)
    : QFileDialog(parent, title)
{
    setAttribute(Qt::WA_DeleteOnClose);
    // Not the desktop's own dialog, so that the program can close it, and so
    // that its list can be read.
    setOption(QFileDialog::DontUseNativeDialog);
    setFileMode(QFileDialog::ExistingFiles);
    setAcceptMode(QFileDialog::AcceptOpen);
    for (QAbstractItemView* view : findChildren<QAbstractItemView*>())
        view->setSelectionMode(QAbstractItemView::ExtendedSelection);
}

QStringList AddFilesPanel::selectedPaths() const
{
    // The list and the detail view share one selection; either will do.
    for (const QAbstractItemView* view : findChildren<QAbstractItemView*>()) {
        const QItemSelectionModel* selection = view->selectionModel();
        if (!view->isVisible() || !selection)
            continue;
        QStringList paths;
        for (const QModelIndex& index : selection->selectedRows())
            paths.append(index.data(QFileSystemModel::FilePathRole).toString());
        paths.removeAll(QString());
        if (!paths.isEmpty())
            return paths;
    }
    return {};
}

void AddFilesPanel::accept()
{
    // Nothing selected, as with a name typed by hand: Qt's own rules apply.
    const QStringList paths = selectedPaths();
    if (paths.isEmpty()) {
        QFileDialog::accept();
        if (result() == QDialog::Accepted)
            m_chosenPaths = selectedFiles();
        return;
    }
    m_chosenPaths = paths;
    done(QDialog::Accepted);
}
