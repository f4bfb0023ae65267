#pragma once

#include "lists/ListItemViewController.h"

// A blank gap between rows, in the page's grey; the list that holds it gives
// its height.
class ListSeparatorViewController : public ListItemViewController
{
    Q_OBJECT

public:
    ListSeparatorViewController() = default;

protected:
    QWidget* loadView() override;
};
