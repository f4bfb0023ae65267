#include "lists/ListSeparatorViewController.h"

#include "app/VLRColors.h"
#include "widgets/VLRView.h"

QWidget* ListSeparatorViewController::loadView()
{
    auto* root = new VLRView();
    root->setBackgroundColor(VLRColors::grey(233));
    return root;
}
