#pragma once

#include <QRect>

class QWidget;

// The one window that hangs from the status item.
class Popover
{
public:
    static constexpr int MaxYEdge = 3;

    virtual ~Popover() = default;
    virtual bool isShown() const = 0;
    virtual void performClose() = 0;
    // Opens against the rectangle of the view (its frame), on the given edge.
    virtual void showRelativeToRect(const QRect& rect, QWidget* ofView, int preferredEdge) = 0;
    virtual void setContentView(QWidget* view) = 0;
    // The popover's window, for following the status item when it moves.
    virtual QWidget* window() = 0;
};
