#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

// One entry of a list: a controller whose view is built the first time
// someone asks for it, so that a list of thousands costs views only for the
// entries that are shown. The controller owns its view; the view may be
// placed in any parent and goes with the controller.
class ListItemViewController : public QObject
{
    Q_OBJECT

public:
    ~ListItemViewController() override;

    QWidget* view();
    bool isViewLoaded() const { return !m_view.isNull(); }

protected:
    ListItemViewController() = default;

    // Makes the view; called once, by the first view().
    virtual QWidget* loadView() = 0;
    // Right after loadView(), with view() answering already.
    virtual void viewDidLoad() { }

private:
    QPointer<QWidget> m_view;
};
