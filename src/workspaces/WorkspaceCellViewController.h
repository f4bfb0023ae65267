#pragma once

#include "lists/RowViewController.h"
#include "service/VLRObject.h"
#include "service/VLRTypes.h"
#include "widgets/AvatarImageView.h"
#include "widgets/VLRAvatarListView.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRView.h"
#include "widgets/VLRViewDelegate.h"

#include "widgets/VLRTextField.h"

#include <QPointer>

class WorkspaceCellViewControllerDelegate;

// One card of the workspace list: the workspace's name and last change, the
// owner's round picture and the other members' pictures. A click opens the
// workspace; files dropped on the card go to the delegate. The member
// pictures stay current while the cell lives, by observing the record's
// members and each member's avatar; name and date change with the next list.
//
// The view is built when the list first shows the cell, so a list of
// thousands builds only the cards in sight.
class WorkspaceCellViewController : public RowViewController, public VLRViewDelegate, public VLRKeyValueObserver
{
    Q_OBJECT

public:
    explicit WorkspaceCellViewController(const VLRWorkspacePtr& workspace);
    ~WorkspaceCellViewController() override;

    const VLRWorkspacePtr& workspace() const { return m_workspace; }
    void setWorkspace(const VLRWorkspacePtr& workspace) { m_workspace = workspace; }
    WorkspaceCellViewControllerDelegate* delegate() const { return m_delegate; }
    void setDelegate(WorkspaceCellViewControllerDelegate* delegate) { m_delegate = delegate; }
    const VLRWorkspaceUserList& workspaceUsers() const { return m_workspaceUsers; }
    void setWorkspaceUsers(const VLRWorkspaceUserList& users) { m_workspaceUsers = users; }

    // Actions of the view and the pointer.
    void cellClicked();
    void mouseEntered();
    void mouseExited();
    void viewDidReceiveDroppedFiles(VLRView* view, const QStringList& files) override;

    void observeValueForKeyPath(const QString& keyPath, VLRObject* object, const vlr::KeyValueChange& change,
                                void* context) override;

    // Elements of the view; nullptr until it is built.
    VLRTextField* nameLabel() const { return m_nameLabel; }
    VLRTextField* createdLabel() const { return m_createdLabel; }
    VLRTextField* dateLabel() const { return m_dateLabel; }
    VLRButton* cellButton() const { return m_cellButton; }
    AvatarImageView* ownerAvatarView() const { return m_ownerAvatarView; }
    VLRAvatarListView* avatarListView() const { return m_avatarListView; }

protected:
    QWidget* loadView() override;
    bool event(QEvent* event) override;

private:
    void updateAvatars();
    void updateLabels();
    void observeAvatars(bool observe);

    QPointer<VLRTextField> m_nameLabel;
    QPointer<VLRTextField> m_createdLabel;
    QPointer<VLRTextField> m_dateLabel;
    QPointer<VLRButton> m_cellButton;
    QPointer<AvatarImageView> m_ownerAvatarView;
    QPointer<VLRAvatarListView> m_avatarListView;
    QPointer<VLRView> m_dropView;
    QPointer<VLRView> m_backgroundView;
    QPointer<VLRView> m_backgroundBorderView;
    bool m_mousedOver = false;
    VLRWorkspacePtr m_workspace;
    WorkspaceCellViewControllerDelegate* m_delegate = nullptr;
    VLRWorkspaceUserList m_workspaceUsers;
};
