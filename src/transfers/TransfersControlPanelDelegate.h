#pragma once

class TransfersControlPanelViewController;

// Clicks on a control panel, each with the panel that sent it.
class TransfersControlPanelDelegate
{
public:
    virtual ~TransfersControlPanelDelegate() = default;
    virtual void transfersControlPanelDidPauseAll(TransfersControlPanelViewController* panel) = 0;
    virtual void transfersControlPanelDidResumeAll(TransfersControlPanelViewController* panel) = 0;
    virtual void transfersControlPanelDidClearAll(TransfersControlPanelViewController* panel) = 0;
};
