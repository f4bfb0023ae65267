#pragma once

#include "widgets/VLRLayer.h"

#include <QRectF>
#include <QWidget>

#include <optional>

// The count bubble beside a button's title, or, as a warning, a triangle.
class VLRBadgeView : public QWidget
{
    Q_OBJECT

public:
    explicit VLRBadgeView(QWidget* parent = nullptr);
    explicit VLRBadgeView(const QRectF& frame, QWidget* parent = nullptr);

    QRectF frame() const { return m_frame; }
    void setFrame(const QRectF& frame);

    bool isWarning() const { return m_isWarning; }
    void setIsWarning(bool isWarning);

    qint64 badgeValue() const { return m_badgeValue; }
    void setBadgeValue(qint64 badgeValue);

    QColor color() const { return m_color; }
    void setColor(const QColor& color);

    // The bubble's place as of the last setBadgeValue(): 16 wide below 10,
    // 21 up to 99, 26 from 100, 16 high, centred in height.
    QRectF ellipseRect() const { return m_ellipseRect; }

    // The triangle, while the view shows one.
    const VLRLayer* layer() const { return m_layer ? &*m_layer : nullptr; }

    // "99+" from 100 on, else the number.
    QString badgeText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QRectF ellipseFrame() const;
    void updateLayer();

    QRectF m_frame;
    bool m_isWarning = false;
    qint64 m_badgeValue = 0;
    QColor m_color;
    QRectF m_ellipseRect;
    std::optional<VLRLayer> m_layer;
};
