#include "widgets/VLRImageCatalogue.h"

#include "widgets/WidgetsLog.h"

#include "widgets/VLRImageIconEngine.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QSet>
#include <QSvgRenderer>
#include <QtMath>

#include <map>
#include <memory>

namespace {

// One parsed drawing a name, kept for the life of the process: parsing costs
// more than rendering, and the set of names is small and fixed.
std::map<QString, std::unique_ptr<QSvgRenderer>>& renderers()
{
    static std::map<QString, std::unique_ptr<QSvgRenderer>> cache;
    return cache;
}

// A missing picture is a fault of the program, not of the user: say so once a
// name rather than at every redraw.
void warnOnce(const QString& name, const char* what)
{
    static QSet<QString> warned;
    if (warned.contains(name))
        return;
    warned.insert(name);
    qCWarning(lcWidgets, "Image \"%s\": %s", qUtf8Printable(name), what);
}

QSvgRenderer* rendererFor(const QString& name)
{
    auto& cache = renderers();
    const auto found = cache.find(name);
    if (found != cache.end())
        return found->second.get();
    const QString path = VLRImageCatalogue::resourcePathForName(name);
    if (!QFile::exists(path)) {
        warnOnce(name, "no such image in the resources");
        return nullptr;
    }
    auto renderer = std::make_unique<QSvgRenderer>(path);
    if (!renderer->isValid()) {
        warnOnce(name, "the drawing cannot be read");
        return nullptr;
    }
    return cache.emplace(name, std::move(renderer)).first->second.get();
}

} // namespace

QString VLRImageCatalogue::resourcePathForName(const QString& name)
{
    static const QString pdf = QStringLiteral(".pdf");
    const QString base = name.endsWith(pdf) ? name.chopped(pdf.size()) : name;
    return QStringLiteral(":/images/%1.svg").arg(base);
}

bool VLRImageCatalogue::hasImageNamed(const QString& name)
{
    return !name.isEmpty() && QFile::exists(resourcePathForName(name));
}

QSize VLRImageCatalogue::naturalSize(const QString& name)
{
    if (name.isEmpty())
        return {};
    QSvgRenderer* renderer = rendererFor(name);
    return renderer ? renderer->defaultSize() : QSize();
}

QPixmap VLRImageCatalogue::imageNamed(const QString& name)
{
    return imageNamed(name, QSize(), qGuiApp ? qGuiApp->devicePixelRatio() : 1.0);
}

QPixmap VLRImageCatalogue::imageNamed(const QString& name, const QSize& logicalSize, qreal devicePixelRatio)
{
    if (name.isEmpty())
        return {};
    QSvgRenderer* renderer = rendererFor(name);
    if (!renderer)
        return {};
    const QSize size = logicalSize.isEmpty() ? renderer->defaultSize() : logicalSize;
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    const QSize pixels(qCeil(size.width() * ratio), qCeil(size.height() * ratio));
    if (pixels.isEmpty())
        return {};

    const QString key =
        QStringLiteral("vlr-image:%1:%2x%3@%4").arg(name).arg(size.width()).arg(size.height()).arg(ratio);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;

    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        renderer->render(&painter, QRectF(QPointF(0, 0), QSizeF(pixels)));
    }
    pixmap = QPixmap::fromImage(std::move(image));
    pixmap.setDevicePixelRatio(ratio);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QIcon VLRImageCatalogue::iconNamed(const QString& name)
{
    if (name.isEmpty() || !rendererFor(name))
        return {};
    return QIcon(new VLRImageIconEngine(name));
}
