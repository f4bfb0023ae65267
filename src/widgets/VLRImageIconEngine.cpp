#include "widgets/VLRImageIconEngine.h"

#include "widgets/VLRImageCatalogue.h"

#include <QImage>
#include <QPaintDevice>
#include <QPainter>

VLRImageIconEngine::VLRImageIconEngine(const QString& name)
    : m_name(name)
{ }

void VLRImageIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state)
{
    if (!painter || rect.isEmpty())
        return;
    const QSize size = actualSize(rect.size(), mode, state);
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    const QPixmap picture = render(size, ratio, mode);
    if (picture.isNull())
        return;
    const QPoint origin(rect.x() + (rect.width() - size.width()) / 2, rect.y() + (rect.height() - size.height()) / 2);
    painter->drawPixmap(QRect(origin, size), picture);
}

QPixmap VLRImageIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state)
{
    return render(actualSize(size, mode, state), 1.0, mode);
}

QSize VLRImageIconEngine::actualSize(const QSize& size, QIcon::Mode, QIcon::State)
{
    const QSize natural = VLRImageCatalogue::naturalSize(m_name);
    if (natural.isEmpty() || size.isEmpty())
        return natural.isEmpty() ? QSize() : natural;
    return natural.scaled(size, Qt::KeepAspectRatio);
}

QList<QSize> VLRImageIconEngine::availableSizes(QIcon::Mode, QIcon::State)
{
    const QSize natural = VLRImageCatalogue::naturalSize(m_name);
    if (natural.isEmpty())
        return {};
    return {natural, natural * 2};
}

QString VLRImageIconEngine::key() const
{
    return QStringLiteral("VLRImageIconEngine");
}

QString VLRImageIconEngine::iconName()
{
    return m_name;
}

bool VLRImageIconEngine::isNull()
{
    return VLRImageCatalogue::naturalSize(m_name).isEmpty();
}

QIconEngine* VLRImageIconEngine::clone() const
{
    return new VLRImageIconEngine(m_name);
}

QPixmap VLRImageIconEngine::render(const QSize& logicalSize, qreal devicePixelRatio, QIcon::Mode mode) const
{
    QPixmap picture = VLRImageCatalogue::imageNamed(m_name, logicalSize, devicePixelRatio);
    if (picture.isNull() || mode != QIcon::Disabled)
        return picture;

    QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grey = qGray(line[x]);
            line[x] = qRgba(grey, grey, grey, qAlpha(line[x]) / 2);
        }
    }
    QPixmap faded = QPixmap::fromImage(image);
    faded.setDevicePixelRatio(picture.devicePixelRatio());
    return faded;
}
