#pragma once

#include <QTimer>
#include <QWidget>

// A pair of arrows that steps a whole number up or down within its bounds,
// beside a field that shows the number. A click, or each repeat while the
// button is held, changes the value and sends clicked().
class Stepper : public QWidget
{
    Q_OBJECT

public:
    explicit Stepper(QWidget* parent = nullptr);

    qint64 integerValue() const { return m_value; }
    // Kept within the bounds.
    void setIntegerValue(qint64 value);

    qint64 minValue() const { return m_minValue; }
    qint64 maxValue() const { return m_maxValue; }
    void setBounds(qint64 minValue, qint64 maxValue);
    qint64 increment() const { return m_increment; }
    void setIncrement(qint64 increment) { m_increment = increment; }

    QSize sizeHint() const override;

signals:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void step();

    qint64 m_value = 0;
    qint64 m_minValue = 0;
    qint64 m_maxValue = 100;
    qint64 m_increment = 1;
    // +1 while the upper arrow is held, -1 for the lower one, 0 otherwise.
    int m_pressed = 0;
    QTimer m_repeat;
};
