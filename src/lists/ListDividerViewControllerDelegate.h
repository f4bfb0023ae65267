#pragma once

class ListDividerViewController;

class ListDividerViewControllerDelegate
{
public:
    virtual ~ListDividerViewControllerDelegate() = default;
    virtual void listDividerViewControllerHadButtonClick(ListDividerViewController* divider) = 0;
};
