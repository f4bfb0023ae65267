#pragma once

#include <QComboBox>

// The environment selector of the sign-in page: a pop-up button framed like
// the page's entry fields, with the chosen domain name and a small chevron.
class EnvironmentPopUp : public QComboBox
{
    Q_OBJECT

public:
    explicit EnvironmentPopUp(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
