#pragma once

#include <QIconEngine>
#include <QString>

// The engine behind VLRImageCatalogue::iconNamed: every size and density an
// icon is asked for is rendered from the drawing, so that a tray, a button and
// a menu each get a sharp picture. The disabled form is drawn in grey at half
// strength.
class VLRImageIconEngine : public QIconEngine
{
public:
    explicit VLRImageIconEngine(const QString& name);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QString key() const override;
    QString iconName() override;
    bool isNull() override;
    QIconEngine* clone() const override;

private:
    QPixmap render(const QSize& logicalSize, qreal devicePixelRatio, QIcon::Mode mode) const;

    QString m_name;
};
