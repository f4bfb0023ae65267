#pragma once

#include "widgets/VLRView.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <optional>

class QLabel;

// The small panel under the file drop's add-file button that tells what is
// about to be sent: one file's name without its extension and its size, or
// several names joined and their number. A file that can't be read still
// shows its name; its size text is then left as it was.
class FileInfoViewController : public QObject
{
    Q_OBJECT

public:
    explicit FileInfoViewController(QObject* parent = nullptr);
    ~FileInfoViewController() override;

    // Built on first use.
    VLRView* view();

    // None empties both labels without hiding the panel.
    void setFilePaths(const std::optional<QStringList>& filePaths);
    const std::optional<QStringList>& filePaths() const { return m_filePaths; }
    // A null path empties both labels and hides the panel.
    void setFilePath(const QString& filePath);
    const QString& filePath() const { return m_filePath; }

    QLabel* nameLabel() const { return m_nameLabel; }
    QLabel* sizeLabel() const { return m_sizeLabel; }

private:
    void loadView();

    QPointer<QLabel> m_nameLabel;
    QPointer<QLabel> m_sizeLabel;
    QPointer<VLRView> m_selfView;
    QString m_filePath;
    std::optional<QStringList> m_filePaths;
};
