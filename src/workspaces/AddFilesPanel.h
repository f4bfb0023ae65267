#pragma once

#include <QFileDialog>
#include <QStringList>

// The file drop's open panel: files and folders alike, several at once, and
// new folders may be made. Qt's own dialog chooses either files or folders;
// this one takes whatever is selected in its list when the user confirms,
// and a double click still opens a folder to look inside.
class AddFilesPanel : public QFileDialog
{
    Q_OBJECT

public:
    explicit AddFilesPanel(const QString& title, QWidget* parent = nullptr);

    // What the user chose, as paths; empty until the panel was confirmed.
    QStringList chosenPaths() const { return m_chosenPaths; }

    void accept() override;

private:
    QStringList selectedPaths() const;

    QStringList m_chosenPaths;
};
