#pragma once

#include "widgets/VLRButton.h"
#include "widgets/VLRView.h"

#include <QLabel>
#include <QObject>
#include <QPointer>

#include <cstdint>

class TransfersControlPanelDelegate;

// The strip under a transfers table. In active mode it tells the speed and
// the time left and offers pause all or resume all; otherwise it offers to
// clear the completed list. It reports clicks and decides nothing.
class TransfersControlPanelViewController : public QObject
{
    Q_OBJECT

public:
    static constexpr int Height = 34;

    explicit TransfersControlPanelViewController(QObject* parent = nullptr);
    ~TransfersControlPanelViewController() override;

    QWidget* view();
    void setDelegate(TransfersControlPanelDelegate* delegate) { m_delegate = delegate; }

    bool activeTransfersMode() const { return m_activeTransfersMode; }
    void setActiveTransfersMode(bool active);
    bool transfersPaused() const { return m_transfersPaused; }
    void setTransfersPaused(bool paused);
    // Kilobits a second.
    double transferSpeed() const { return m_transferSpeed; }
    void setTransferSpeed(double speed);
    // 0 is unknown.
    uint64_t secondsLeft() const { return m_secondsLeft; }
    void setSecondsLeft(uint64_t seconds);
    // Throws "Wrong mode" in active mode.
    void showClearCompletedButton(bool show);

    // Actions of the buttons.
    void pauseResumeAll();
    void clearCompleted();

    QLabel* speedTimeLeftLabel() const { return m_speedTimeLeftLabel; }
    VLRButton* pauseResumeAllButton() const { return m_pauseResumeAllButton; }
    VLRButton* clearCompletedButton() const { return m_clearCompletedButton; }

private:
    void loadView();
    void setBytesTimeLeftLabel();
    void setPauseResumeAllButton();
    void applyMode();

    QPointer<VLRView> m_view;
    QPointer<QLabel> m_speedTimeLeftLabel;
    QPointer<VLRButton> m_pauseResumeAllButton;
    QPointer<VLRButton> m_clearCompletedButton;
    bool m_activeTransfersMode = false;
    bool m_transfersPaused = false;
    double m_transferSpeed = 0;
    uint64_t m_secondsLeft = 0;
    TransfersControlPanelDelegate* m_delegate = nullptr;
};
