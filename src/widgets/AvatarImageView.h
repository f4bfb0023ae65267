#pragma once

#include <QPixmap>
#include <QWidget>

// A portrait filling its view, cut to the view's corner radius: half the
// width makes it round.
class AvatarImageView : public QWidget
{
    Q_OBJECT

public:
    explicit AvatarImageView(QWidget* parent = nullptr);

    QPixmap image() const { return m_image; }
    void setImage(const QPixmap& image);

    qreal cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(qreal radius);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_image;
    qreal m_cornerRadius = 0;
};
