#pragma once

#include "widgets/VLRButton.h"
#include "widgets/VLRView.h"

#include <QObject>
#include <QPointer>

class TransfersTabSelectorDelegate;

// The three text buttons over the transfers tables, uploads (1), downloads
// (2) and completed (3), with the counts of active transfers as badges. It
// shows what it is told and reports every choice, also of the same tab.
class TransfersTabSelectorViewController : public QObject
{
    Q_OBJECT

public:
    static constexpr int Height = 34;

    explicit TransfersTabSelectorViewController(QObject* parent = nullptr);
    ~TransfersTabSelectorViewController() override;

    // Built at the first call; building selects uploads and tells the
    // delegate so.
    QWidget* view();
    void setDelegate(TransfersTabSelectorDelegate* delegate) { m_delegate = delegate; }

    void selectTab(int tab);
    void tabButtonClicked(VLRButton* sender);
    void showBadgeForUploadCount(qint64 count);
    void showBadgeForDownloadCount(qint64 count);

    VLRButton* uploadsButton() const { return m_uploadsButton; }
    VLRButton* downloadsButton() const { return m_downloadsButton; }
    VLRButton* completedButton() const { return m_completedButton; }

private:
    void loadView();
    VLRButton* makeButton(const QString& title, int tag);
    void setSelectedTab(int tab);

    QPointer<VLRView> m_view;
    QPointer<VLRButton> m_uploadsButton;
    QPointer<VLRButton> m_downloadsButton;
    QPointer<VLRButton> m_completedButton;
    TransfersTabSelectorDelegate* m_delegate = nullptr;
};
