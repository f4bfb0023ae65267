#pragma once

#include "platform/ClientServices.h"
#include "service/VLRTypes.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRTextView.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewDelegate.h"
#include "workspaces/FileDropPage.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QParallelAnimationGroup>
#include <QPointer>
#include <QStringList>

#include <optional>

class FileInfoViewController;

// The file drop tab: a form that publishes files and a comment into a chosen
// workspace, or creates a workspace. It sends nothing itself; its delegate
// does the work and answers through the completion handlers, on the GUI
// thread.
//
// Two modes: publish (the popup shows a workspace and the comment is there)
// and create (the popup's last item, a name field, the comment folded away).
// Two file states: no file (the add-file button in the middle) and files
// chosen (the button up, the file info faded in). A real change of either
// is animated; the same state set again is placed at once.
//
// updateFiles() is the one entry for files from outside: a drop on the
// popover or the tray, a drop on a workspace's row, the desktop's "Publish
// with Veluria" actions, all through the main controller.
class FileDropViewController : public QObject, public FileDropPage, public VLRViewDelegate
{
    Q_OBJECT

public:
    // How long the add-file button takes to move and the file info to fade,
    // and how long the form takes to change mode.
    static constexpr int FileStateAnimationMilliseconds = 1500;
    static constexpr int ModeAnimationMilliseconds = 1000;
    // The popup's last item; the same in every language.
    static inline const QString CreateWorkspaceItemTitle = QStringLiteral("-- Create Workspace --");

    explicit FileDropViewController(const ClientServices& services, QObject* parent = nullptr);
    ~FileDropViewController() override;

    QWidget* view() override;
    void setDelegate(FileDropViewControllerDelegate* delegate) override { m_delegate = delegate; }

    void updateWorkspaces(const VLRWorkspaceList& workspaces) override;
    void updateState() override;
    void updateFiles(const QStringList& files) override { setFilesToUpload(files); }
    void selectWorkspace(const VLRWorkspacePtr& workspace) override;
    void clearFields() override;
    void refreshButtonState() override;

    // Any new list replaces the earlier one; none means no file.
    void setFilesToUpload(const std::optional<QStringList>& files);
    const std::optional<QStringList>& filesToUpload() const { return m_filesToUpload; }

    bool creatingWorkspace() const { return m_creatingWorkspace; }
    void setCreatingWorkspace(bool creatingWorkspace);
    qint64 selectedWorkspaceIndex() const { return m_selectedWorkspaceIndex; }
    void setSelectedWorkspaceIndex(qint64 index) { m_selectedWorkspaceIndex = index; }
    qint64 state() const { return m_state; }

    // Actions of the view.
    void buttonClicked();
    void addFile();
    void workspaceSelectionChanged();
    void resendButtonClicked();
    void viewDidReceiveDroppedFiles(VLRView* view, const QStringList& files) override;

    // Elements of the view; nullptr until it is built.
    VLRButton* addFileButton() const { return m_addFileButton; }
    FileInfoViewController* fileInfoViewController() const { return m_fileInfoViewController; }
    VLRView* fileInfoView() const { return m_fileInfoView; }
    QLabel* workspaceLabel() const { return m_workspaceLabel; }
    QComboBox* workspacePopUp() const { return m_workspacePopUp; }
    QLineEdit* newWorkspaceNameField() const { return m_newWorkspaceNameField; }
    QLabel* commentLabel() const { return m_commentLabel; }
    VLRTextView* commentView() const { return m_commentView; }
    VLRButton* button() const { return m_button; }
    QLabel* emailConfirmView() const { return m_emailConfirmView; }
    VLRButton* resendConfirmButton() const { return m_resendConfirmButton; }
    // The open panel while it is up.
    QFileDialog* openPanel() const { return m_openPanel; }
    // The running animations, or nullptr.
    QParallelAnimationGroup* fileStateAnimation() const { return m_fileStateAnimation; }
    QParallelAnimationGroup* modeAnimation() const { return m_modeAnimation; }
    // The opacity the element shows, 1 for an element never faded.
    static qreal alphaOf(QWidget* element);

private:
    void loadView();
    void publish();
    void createWorkspace();
    void enableControls(bool enabled);
    void moveAddFileButtonToCenter(bool center, bool animate);
    void moveElementsForCreateMode(bool create, bool animate);
    void setConstraintsForCreateMode(bool create);
    void setCommentElementsAlpha(qreal alpha);
    void notify(const QString& title, const QString& text);
    QList<QWidget*> commentElements() const;
    static bool archiveMode();

    ClientServices m_services;
    QPointer<VLRView> m_view;
    QPointer<VLRButton> m_addFileButton;
    FileInfoViewController* m_fileInfoViewController = nullptr;
    QPointer<VLRView> m_fileInfoView;
    QPointer<QFrame> m_topDivider;
    QPointer<QLabel> m_workspaceLabel;
    QPointer<QComboBox> m_workspacePopUp;
    QPointer<QLineEdit> m_newWorkspaceNameField;
    QPointer<QFrame> m_bottomDivider;
    QPointer<QLabel> m_commentLabel;
    QPointer<VLRTextView> m_commentView;
    QPointer<VLRButton> m_button;
    QPointer<VLRView> m_dropAreaView;
    QPointer<QLabel> m_emailConfirmView;
    QPointer<VLRButton> m_resendConfirmButton;
    VLRWorkspaceList m_workspaces;
    qint64 m_state = 0;
    bool m_creatingWorkspace = false;
    FileDropViewControllerDelegate* m_delegate = nullptr;
    qint64 m_selectedWorkspaceIndex = 0;
    std::optional<QStringList> m_filesToUpload;

    QPointer<QFileDialog> m_openPanel;
    QPointer<QParallelAnimationGroup> m_fileStateAnimation;
    QPointer<QParallelAnimationGroup> m_modeAnimation;
};
