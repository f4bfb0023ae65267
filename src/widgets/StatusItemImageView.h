#pragma once

#include "widgets/VLRImageView.h"

#include <QList>
#include <QTimer>

class StatusItemImageViewDelegate;

// The picture of the client's state in the status area: greyed out when
// signed out (state 1), solid when signed in and idle (2), and a 33-frame
// animation while busy (3). The view picks its picture itself at every tick
// of a timer of 0.125 seconds that runs for the view's whole life; setting
// the state only stores it. A busy cycle that has begun runs to its end,
// whatever the state does meanwhile.
//
// imageChanged() tells whoever shows the picture elsewhere (the tray icon)
// that it is another one; a tick that keeps the picture says nothing.
class StatusItemImageView : public VLRImageView
{
    Q_OBJECT

public:
    static constexpr int kFrameCount = 33;

    enum ViewState : qint64 {
        SignedOut = 1,
        Idle = 2, // signed in, nothing going on
        Busy = 3,
    };

    StatusItemImageView(const QRect& frame, bool supportsAnimation, QWidget* parent = nullptr);

    qint64 viewState() const { return m_viewState; }
    void setViewState(qint64 viewState) { m_viewState = viewState; }

    StatusItemImageViewDelegate* delegate() const { return m_delegate; }
    void setDelegate(StatusItemImageViewDelegate* delegate) { m_delegate = delegate; }

    bool supportsAnimation() const { return m_supportsAnimation; }
    // The frames found, in order; empty without animation support.
    QList<QPixmap> animationImages() const { return m_animationImages; }
    // How many frames have been shown; a cycle rests where this is a multiple
    // of 33.
    quint64 animationIndex() const { return m_animationIndex; }
    QPixmap greyedOutImage() const { return m_greyedOutImage; }
    QPixmap solidImage() const { return m_solidImage; }
    const QTimer* animationTicker() const { return &m_animationTimer; }

    // The desktop's dark mode: the solid picture changes at once and shows
    // from the next tick; the greyed-out one becomes a template, tinted for
    // the mode, and stays a template from then on.
    bool isDarkMode() const { return m_darkMode; }
    void setDarkMode(bool darkMode);

    // A click made by the program, as the script command toggles the popover.
    void simulateClick();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private slots:
    void animationTimer();

private:
    void darkModeChanged();
    void setUpImages();
    void setUpAnimation();
    QPixmap imageNamed(const QString& name) const;

    QList<QPixmap> m_animationImages;
    QPixmap m_greyedOutImage;
    QPixmap m_solidImage;
    QTimer m_animationTimer;
    quint64 m_animationIndex = 0;
    bool m_supportsAnimation = false;
    bool m_darkMode = false;
    bool m_greyedOutIsTemplate = false;
    StatusItemImageViewDelegate* m_delegate = nullptr;
    qint64 m_viewState = 0;
};
