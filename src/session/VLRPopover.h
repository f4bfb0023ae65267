#pragma once

#include "session/Popover.h"

#include <QPointer>
#include <QWidget>

// The one window that hangs from the status item: frameless, above other
// windows, placed against the status item's rectangle (below it when there is
// room, above it otherwise) and kept on the screen. It closes when it loses
// the focus, as a popover does.
class VLRPopover : public QWidget, public Popover
{
    Q_OBJECT

public:
    static constexpr int Gap = 4;

    explicit VLRPopover(QWidget* parent = nullptr);

    bool isShown() const override { return isVisible(); }
    void performClose() override { hide(); }
    void showRelativeToRect(const QRect& rect, QWidget* ofView, int preferredEdge) override;
    void setContentView(QWidget* view) override;
    QWidget* window() override { return this; }

    // Where the popover goes for an anchor rectangle in screen coordinates,
    // within the screen's available area.
    static QPoint placement(const QSize& size, const QRect& anchor, const QRect& available);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QPointer<QWidget> m_contentView;
    bool m_wasActive = false;
};
