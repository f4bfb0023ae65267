#pragma once

#include <QScrollArea>

// A scrolling area whose content moves as it is without being drawn again:
// the visible part is shifted and only what comes into view is painted.
class VLRClipView : public QScrollArea
{
    Q_OBJECT

public:
    explicit VLRClipView(QWidget* parent = nullptr);
};
