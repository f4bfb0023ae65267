#include "lists/ListItemViewController.h"

ListItemViewController::~ListItemViewController()
{
    delete m_view;
}

QWidget* ListItemViewController::view()
{
    if (!m_view)
        m_view = loadView();
    return m_view;
}
