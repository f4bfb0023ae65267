#pragma once

#include "lists/RowViewController.h"
#include "service/VLRInstallerOperation.h"
#include "service/VLRObject.h"
#include "service/VLRTypes.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRImageView.h"
#include "widgets/VLRTextField.h"
#include "widgets/VLRView.h"

#include <QPointer>

class InstallerViewControllerDelegate;
class VLRNotificationScheduling;

// One row of the installers page: an installer's name, vendor, icon and
// versions, the install or update button while the pointer is over it, and,
// from the moment a download is handed to it, that one operation followed to
// its end ("QUEUED", percent, "INSTALLING", "CANCELING", cancel) and the end
// told in a notification. What it shows never depends on the group it stands
// in: the list sets isUpdate and isUpToDate.
//
// The installer is the one given at creation, for the row's whole life. All
// calls and the record's changes on the GUI thread.
class InstallerViewController : public RowViewController, public VLRKeyValueObserver
{
    Q_OBJECT

public:
    // Observes the installer at once; builds no view. The notifications are
    // not owned and may be null.
    InstallerViewController(const VLRInstallerPtr& installer, VLRNotificationScheduling* notifications);
    ~InstallerViewController() override;

    const VLRInstallerPtr& installer() const { return m_installer; }
    const VLRInstallerOperationPtr& operation() const { return m_operation; }

    InstallerViewControllerDelegate* delegate() const { return m_delegate; }
    void setDelegate(InstallerViewControllerDelegate* delegate) { m_delegate = delegate; }

    // Follows the operation that downloadAndInstallLatestRevision returned.
    // Ignored while another is followed; an absent or failed one is told as
    // "Error installing" and not followed.
    void monitorProgress(const VLRInstallerOperationPtr& operation);

    bool isUpdate() const { return m_isUpdate; }
    void setIsUpdate(bool isUpdate);
    bool isUpToDate() const { return m_isUpToDate; }
    void setIsUpToDate(bool isUpToDate);
    bool mousedOver() const { return m_mousedOver; }

    void onInstallButton();
    void onCancelButton();
    void mouseEntered();
    void mouseExited();

    VLRTextField* nameField() const { return m_nameField; }
    VLRTextField* versionField() const { return m_versionField; }
    VLRTextField* latestVersionField() const { return m_latestVersionField; }
    VLRTextField* manufacturerField() const { return m_manufacturerField; }
    VLRTextField* progressField() const { return m_progressField; }
    VLRImageView* iconView() const { return m_iconView; }
    VLRButton* installButton() const { return m_installButton; }
    VLRButton* cancelButton() const { return m_cancelButton; }

    void observeValueForKeyPath(const QString& keyPath, VLRObject* object, const vlr::KeyValueChange& change,
                                void* context) override;

protected:
    QWidget* loadView() override;
    void viewDidLoad() override;
    bool event(QEvent* event) override;

private:
    void updateVersionFields();
    void setConstraintsToShowLatestVersion(bool showLatest);
    void updateInstallerIcon();
    void setInstallUpdateButton();
    void updateProgressField();
    void operationDidEnd();
    void removeOperationObservers();
    void notify(const QString& title, const QString& text);

    VLRInstallerPtr m_installer;
    // Kept to remove the observer from the very product it was added to.
    VLRProductPtr m_observedProduct;
    VLRInstallerOperationPtr m_operation;
    VLRNotificationScheduling* m_notifications;
    InstallerViewControllerDelegate* m_delegate = nullptr;
    bool m_mousedOver = false;
    bool m_isUpdate = false;
    bool m_isUpToDate = false;

    QPointer<VLRView> m_backgroundView;
    QPointer<VLRView> m_backgroundBorder;
    QPointer<VLRTextField> m_nameField;
    QPointer<VLRTextField> m_versionField;
    QPointer<VLRTextField> m_latestVersionField;
    QPointer<VLRTextField> m_manufacturerField;
    QPointer<VLRTextField> m_progressField;
    QPointer<VLRImageView> m_iconView;
    QPointer<VLRButton> m_installButton;
    QPointer<VLRButton> m_cancelButton;
};
