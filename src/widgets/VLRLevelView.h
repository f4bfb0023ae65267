#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>

// A horizontal level bar that follows its value with a slow rise and an
// instant fall. It redraws only when the whole level it shows changes.
class VLRLevelView : public QWidget
{
    Q_OBJECT

public:
    explicit VLRLevelView(QWidget* parent = nullptr);

    QColor barColor() const { return m_barColor; }
    void setBarColor(const QColor& color);
    QColor backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const QColor& color);
    QColor borderColor() const { return m_borderColor; }
    void setBorderColor(const QColor& color);
    // 0 or less draws no border.
    qreal borderWidth() const { return m_borderWidth; }
    void setBorderWidth(qreal width);
    qreal barInset() const { return m_barInset; }
    void setBarInset(qreal inset);
    qreal minValue() const { return m_minValue; }
    void setMinValue(qreal value);
    qreal maxValue() const { return m_maxValue; }
    void setMaxValue(qreal value);

    // The level to reach; the bar gets there by itself, tick by tick.
    qint64 integerValue() const { return m_integerValue; }
    void setIntegerValue(qint64 value) { m_integerValue = value; }

    // What the bar shows now.
    qreal smoothedValue() const { return m_smoothedValue; }

    // Ticks every 0.03 seconds for as long as the view lives.
    const QTimer* smoothingTicker() const { return &m_smoothingTimer; }

protected:
    void paintEvent(QPaintEvent* event) override;

private slots:
    void smoothingTimer();

private:
    QColor m_barColor = QColor(0, 0, 255);
    QColor m_backgroundColor = Qt::transparent;
    QColor m_borderColor = QColor(128, 128, 128);
    qreal m_borderWidth = 2;
    qreal m_barInset = 2;
    qreal m_minValue = 0;
    qreal m_maxValue = 1000;
    qint64 m_integerValue = 0;
    qreal m_smoothedValue = 0;
    QTimer m_smoothingTimer;
};
