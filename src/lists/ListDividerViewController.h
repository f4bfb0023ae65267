#pragma once

#include "lists/ListItemViewController.h"
#include "widgets/VLRButton.h"
#include "widgets/VLRTextField.h"

#include <QPointer>

class ListDividerViewControllerDelegate;

// A heading row of a list, with an action button for the marketplace's new
// and updates groups. The type is read once, when the view is built.
class ListDividerViewController : public ListItemViewController
{
    Q_OBJECT

public:
    enum Type : quint64 {
        Today = 1,
        Yesterday = 2,
        ThisWeek = 3,
        LastWeek = 4,
        Earlier = 5,
        New = 6,
        Updates = 7,
        Installed = 8,
        NotInstalled = 9,
    };

    ListDividerViewController() = default;
    ~ListDividerViewController() override;

    quint64 type() const { return m_type; }
    // Stored only: set it before the view is built.
    void setType(quint64 type) { m_type = type; }

    ListDividerViewControllerDelegate* delegate() const { return m_delegate; }
    void setDelegate(ListDividerViewControllerDelegate* delegate) { m_delegate = delegate; }

    VLRTextField* label() const { return m_label; }
    VLRButton* button() const { return m_button; }

    // The button's action: tells the delegate, whatever the type.
    void buttonClicked();

protected:
    QWidget* loadView() override;

private:
    quint64 m_type = 0;
    ListDividerViewControllerDelegate* m_delegate = nullptr;
    QPointer<VLRTextField> m_label;
    QPointer<VLRButton> m_button;
};
