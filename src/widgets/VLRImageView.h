#pragma once

#include <QPixmap>
#include <QWidget>

// A view that shows one picture, centred and scaled down to fit when it is
// larger than the view.
class VLRImageView : public QWidget
{
    Q_OBJECT

public:
    explicit VLRImageView(QWidget* parent = nullptr);

    QPixmap image() const { return m_image; }
    // Showing the picture already on show does nothing, not even a signal.
    void setImage(const QPixmap& image);

signals:
    // The picture on show is another one.
    void imageChanged(const QPixmap& image);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_image;
};
