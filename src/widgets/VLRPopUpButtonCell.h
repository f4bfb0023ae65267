#pragma once

#include <QComboBox>

// The pop-up button of the file drop page: in place of the platform's frame
// it draws the picture "file_drop_workspace_popup", unscaled from its top left
// corner, under the chosen item's text.
class VLRPopUpButtonCell : public QComboBox
{
    Q_OBJECT

public:
    explicit VLRPopUpButtonCell(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
