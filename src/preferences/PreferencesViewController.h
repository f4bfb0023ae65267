#pragma once

#include "platform/ClientServices.h"
#include "preferences/PreferencesPage.h"
#include "service/VLRObject.h"
#include "service/VLRTypes.h"
#include "widgets/AvatarImageView.h"
#include "widgets/Stepper.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRTextField.h"
#include "widgets/VLRView.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QObject>
#include <QParallelAnimationGroup>
#include <QPointer>

// The preferences tab: who is signed in, the client's four settings, and log
// in or out, uninstall, help and quit. Two settings go straight to the user
// defaults, the start at login and the cache size to the delegate.
class PreferencesViewController : public QObject, public PreferencesPage, public VLRKeyValueObserver
{
    Q_OBJECT

public:
    // A megabyte of the cache field, in bytes, and the smallest limit.
    static constexpr double BytesPerMegabyte = 1e6;
    static constexpr quint64 MinimumDownloadCacheMegabytes = 100;
    static constexpr qint64 MinimumDownloadCacheSize = 100000000;
    // How long the log in/out button takes to slide and the details to fade.
    static constexpr int UserInfoAnimationMilliseconds = 800;
    // The program that removes the client from this computer.
    static inline const QString UninstallerExecutableName = QStringLiteral("veluria-uninstall");

    explicit PreferencesViewController(const ClientServices& services, QObject* parent = nullptr);
    ~PreferencesViewController() override;

    QWidget* view() override;
    void setDelegate(PreferencesViewControllerDelegate* delegate) override { m_delegate = delegate; }
    PreferencesViewControllerDelegate* delegate() const { return m_delegate; }

    bool loggedIn() const { return m_loggedIn; }
    void setLoggedIn(bool loggedIn) override;
    void updateWithUser(const VLRUserPtr& user) override;
    const VLRUserPtr& user() const { return m_user; }
    void updateDownloadCacheSize(qint64 bytes) override;

    // Actions of the view.
    void logInOrOut();
    void showNotifications(QCheckBox* sender);
    void launchVeluriaAtStartup(QCheckBox* sender);
    void autoOpenAssets(QCheckBox* sender);
    void limitDownloadCacheSize(QCheckBox* sender);
    void downloadCacheSizeStepper(Stepper* sender);
    void uninstall();
    void help();
    void quit();

    // Callbacks of the cache field.
    void controlTextDidChange(QLineEdit* field);
    void controlTextDidEndEditing(QLineEdit* field);

    void observeValueForKeyPath(const QString& keyPath, VLRObject* object, const vlr::KeyValueChange& change,
                                void* context) override;

    // Elements of the view; nullptr until it is built.
    QWidget* userInfoView() const { return m_userInfoView; }
    QWidget* controlsView() const { return m_controlsView; }
    AvatarImageView* avatarView() const { return m_avatarView; }
    VLRTextField* nameField() const { return m_nameField; }
    VLRTextField* emailField() const { return m_emailField; }
    VLRButton* loginLogoutButton() const { return m_loginLogoutButton; }
    QCheckBox* showNotificationsCheckBox() const { return m_showNotificationsCheckBox; }
    QCheckBox* launchAtStartupCheckBox() const { return m_launchAtStartupCheckBox; }
    QCheckBox* autoOpenCheckBox() const { return m_autoOpenCheckBox; }
    QCheckBox* downloadCacheSizeCheckBox() const { return m_downloadCacheSizeCheckBox; }
    QLineEdit* downloadCacheSizeField() const { return m_downloadCacheSizeField; }
    Stepper* downloadCacheSizeStepper() const { return m_downloadCacheSizeStepper; }
    VLRButton* uninstallButton() const { return m_uninstallButton; }
    VLRButton* helpButton() const { return m_helpButton; }
    VLRButton* quitButton() const { return m_quitButton; }
    VLRTextField* versionLabel() const { return m_versionLabel; }

private:
    void loadView();
    QWidget* makeUserInfoView();
    QWidget* makeControlsView();
    QWidget* makeButtonsRow();
    void restoreStateFromUserDefaults();
    void updateDownloadCacheSizeFields(qint64 bytes);
    void enableDownloadCacheUI(bool enabled);
    void storeDownloadCacheSize();
    void updateAvatar();
    void setConstraintsForNoName(bool noName);
    void showUserInfo(bool show);
    void updateLoginLogoutButton();

    QPointer<VLRView> m_view;
    QPointer<QWidget> m_userInfoView;
    QPointer<QWidget> m_controlsView;
    QPointer<AvatarImageView> m_avatarView;
    QPointer<VLRTextField> m_nameField;
    QPointer<VLRTextField> m_emailField;
    QPointer<VLRButton> m_loginLogoutButton;
    QPointer<QCheckBox> m_showNotificationsCheckBox;
    QPointer<QCheckBox> m_launchAtStartupCheckBox;
    QPointer<QCheckBox> m_autoOpenCheckBox;
    QPointer<QCheckBox> m_downloadCacheSizeCheckBox;
    QPointer<QLineEdit> m_downloadCacheSizeField;
    QPointer<Stepper> m_downloadCacheSizeStepper;
    QPointer<VLRButton> m_uninstallButton;
    QPointer<VLRButton> m_helpButton;
    QPointer<VLRButton> m_quitButton;
    QPointer<VLRTextField> m_versionLabel;
    bool m_loggedIn = false;
    ClientServices m_services;
    PreferencesViewControllerDelegate* m_delegate = nullptr;
    VLRUserPtr m_user;

    QPointer<QParallelAnimationGroup> m_userInfoAnimation;
};
