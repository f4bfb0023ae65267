#pragma once

#include "session/TabBar.h"
#include "widgets/VLRDropTargetButton.h"
#include "widgets/VLRDropTargetButtonDelegate.h"
#include "widgets/VLRView.h"

#include <QObject>
#include <QPointer>

// The popover's tab bar: five picture buttons whose tag is their tab number.
// Which tab may be selected is its delegate's decision.
class TabSelectorViewController : public QObject, public TabBar, public VLRDropTargetButtonDelegate
{
    Q_OBJECT

public:
    static constexpr int BarWidth = 360;
    static constexpr int BarHeight = 48;

    explicit TabSelectorViewController(QObject* parent = nullptr);
    ~TabSelectorViewController() override;

    QWidget* view() override;
    void setDelegate(TabSelectorViewControllerDelegate* delegate) override { m_delegate = delegate; }
    TabSelectorViewControllerDelegate* delegate() const { return m_delegate; }

    int selectedTab() const override { return m_selectedTab; }
    void selectTab(int tab) override;
    void tabButtonClicked(VLRButton* button);
    void showActiveUploads(bool uploads, bool downloads) override;
    void setBadgeValue(qint64 value, int forTab, bool isWarning) override;
    void enableDisableTabs() override;
    void hideUnusedTabs();

    void dropTargetButtonDidReceiveDragEvent(VLRDropTargetButton* button) override;
    void dropTargetButtonDidReceiveFiles(VLRDropTargetButton* button, const QStringList& files) override;

    VLRDropTargetButton* fileDropButton() const { return m_fileDropButton; }
    VLRDropTargetButton* workspacesButton() const { return m_workspacesButton; }
    VLRButton* marketplaceButton() const { return m_marketplaceButton; }
    VLRButton* transfersButton() const { return m_transfersButton; }
    VLRButton* settingsButton() const { return m_settingsButton; }
    bool activeUploads() const { return m_activeUploads; }
    bool activeDownloads() const { return m_activeDownloads; }

private:
    void loadView();
    void setSelectedTab(int tab);
    void setTransfersTabIcon();
    VLRButton* buttonForTab(int tab) const;
    VLRButton* makeButton(VLRButton* button, int tab, int x);

    QPointer<VLRView> m_view;
    int m_selectedTab = 0;
    QPointer<VLRDropTargetButton> m_fileDropButton;
    QPointer<VLRDropTargetButton> m_workspacesButton;
    QPointer<VLRButton> m_marketplaceButton;
    QPointer<VLRButton> m_transfersButton;
    QPointer<VLRButton> m_settingsButton;
    bool m_activeUploads = false;
    bool m_activeDownloads = false;
    TabSelectorViewControllerDelegate* m_delegate = nullptr;
};
