#pragma once

#include "lists/ListItemViewController.h"

class VLRView;

// The base of the card-like rows of the lists: a root VLRView whose
// background is the page's grey or the lighter row grey.
class RowViewController : public ListItemViewController
{
    Q_OBJECT

public:
    bool darkBackground() const { return m_darkBackground; }
    // Colours the root view, building it if need be: grey 233 when dark,
    // 250 when light.
    void setDarkBackground(bool darkBackground);

protected:
    RowViewController() = default;

    // The root view of a row: a VLRView in the page's grey.
    static VLRView* makeRootView();

private:
    bool m_darkBackground = false;
};
