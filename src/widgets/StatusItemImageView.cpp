#include "widgets/StatusItemImageView.h"

#include "widgets/StatusItemImageViewDelegate.h"
#include "widgets/VLRImageCatalogue.h"
#include "widgets/VLRMimeDataAdditions.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kTickInterval = 125; // milliseconds
// Tray hosts draw the icon at sizes of their own, often above the view's, so
// the pictures are rendered at twice the density at least.
constexpr qreal kMinimumDevicePixelRatio = 2;

// A template picture keeps only its shape, in the colour of the mode.
QPixmap templateRendering(const QPixmap& image, bool darkMode)
{
    if (image.isNull())
        return image;
    QPixmap tinted = image;
    QPainter painter(&tinted);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(0, 0), tinted.deviceIndependentSize()), darkMode ? Qt::white : Qt::black);
    return tinted;
}

} // namespace

StatusItemImageView::StatusItemImageView(const QRect& frame, bool supportsAnimation, QWidget* parent)
    : VLRImageView(parent)
{
    setGeometry(frame);
    setAcceptDrops(true);
    m_supportsAnimation = supportsAnimation;
    setUpImages();
    setUpAnimation();
    m_viewState = SignedOut;
}

QPixmap StatusItemImageView::imageNamed(const QString& name) const
{
    QSize size = VLRImageCatalogue::naturalSize(name);
    if (!size.isValid())
        return QPixmap();
    if (size.width() > width() || size.height() > height())
        size = size.scaled(this->size(), Qt::KeepAspectRatio);
    return VLRImageCatalogue::imageNamed(name, size, std::max(kMinimumDevicePixelRatio, devicePixelRatioF()));
}

void StatusItemImageView::setUpImages()
{
    const QPixmap greyedOut = imageNamed(QStringLiteral("statusItemGreyedOut"));
    if (m_darkMode) {
        m_greyedOutIsTemplate = true;
        m_solidImage = imageNamed(QStringLiteral("statusItemDarkMode"));
    } else {
        m_solidImage = imageNamed(QStringLiteral("statusItemLightMode"));
    }
    m_greyedOutImage = m_greyedOutIsTemplate ? templateRendering(greyedOut, m_darkMode) : greyedOut;
}

void StatusItemImageView::setUpAnimation()
{
    if (m_supportsAnimation) {
        for (int frame = 0; frame < kFrameCount; ++frame) {
            const QString name = QStringLiteral("V-icon2_%1").arg(frame, 5, 10, QLatin1Char('0'));
            if (VLRImageCatalogue::hasImageNamed(name))
                m_animationImages.append(imageNamed(name));
        }
        m_animationIndex = 0;
    }
    // Also without animation: the tick is what brings a state's picture on.
    m_animationTimer.setInterval(kTickInterval);
    connect(&m_animationTimer, &QTimer::timeout, this, &StatusItemImageView::animationTimer);
    m_animationTimer.start();
}

void StatusItemImageView::animationTimer()
{
    const QPixmap& restingImage = m_viewState == Idle ? m_solidImage : m_greyedOutImage;
    if (!m_supportsAnimation) {
        setImage(restingImage);
        return;
    }
    const quint64 frame = m_animationIndex % kFrameCount;
    if (frame == 0 && m_viewState != Busy) {
        setImage(restingImage);
        return;
    }
    // A frame that could not be loaded keeps the picture before it, and the
    // cycle goes on.
    if (frame < quint64(m_animationImages.size()))
        setImage(m_animationImages.at(qsizetype(frame)));
    ++m_animationIndex;
}

void StatusItemImageView::setDarkMode(bool darkMode)
{
    m_darkMode = darkMode;
    darkModeChanged();
}

void StatusItemImageView::darkModeChanged()
{
    setUpImages();
}

void StatusItemImageView::simulateClick()
{
    QMouseEvent event(QEvent::MouseButtonPress, QPointF(), QPointF(), QPointF(), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    mousePressEvent(&event);
}

void StatusItemImageView::mousePressEvent(QMouseEvent* event)
{
    if (m_delegate)
        m_delegate->statusItemImageViewDidReceiveMouseDownEvent(this);
    event->accept();
}

void StatusItemImageView::dragEnterEvent(QDragEnterEvent* event)
{
    if (m_delegate)
        m_delegate->statusItemImageViewDidReceiveDragEvent(this);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void StatusItemImageView::dragMoveEvent(QDragMoveEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void StatusItemImageView::dropEvent(QDropEvent* event)
{
    const QStringList files = vlr_filenames(event->mimeData());
    if (!files.isEmpty() && m_delegate)
        m_delegate->statusItemImageViewDidReceiveFiles(this, files);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}
