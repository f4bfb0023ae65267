#include "lists/ListItemViewController.h"

ListItemViewController::~ListItemViewController()
{
    delete m_view;
}

QWidget* ListItemViewController::view()
{
    if (!m_view) {
        m_view = loadView();
        viewDidLoad();
    }
    return m_view;
}
