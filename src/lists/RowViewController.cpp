#include "lists/RowViewController.h"

#include "app/VLRColors.h"
#include "widgets/VLRView.h"

void RowViewController::setDarkBackground(bool darkBackground)
{
    m_darkBackground = darkBackground;
    if (auto* root = qobject_cast<VLRView*>(view()))
        root->setBackgroundColor(VLRColors::grey(darkBackground ? 233 : 250));
}

VLRView* RowViewController::makeRootView()
{
    auto* root = new VLRView();
    root->setBackgroundColor(VLRColors::grey(233));
    return root;
}
