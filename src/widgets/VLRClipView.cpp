#include "widgets/VLRClipView.h"

VLRClipView::VLRClipView(QWidget* parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    // Qt shifts the pixels already on screen only under an opaque viewport;
    // one that filled itself through its children would repaint the content
    // at every step of the scroll.
    viewport()->setAutoFillBackground(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
}
