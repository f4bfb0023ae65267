#include "widgets/VLRAnimation.h"

#include "widgets/VLRImageView.h"

#include <cmath>

VLRAnimation::VLRAnimation(qreal duration, const QEasingCurve& animationCurve, QObject* parent)
    : QAbstractAnimation(parent)
    , m_duration(int(std::lround(duration * 1000)))
    , m_animationCurve(animationCurve)
{ }

void VLRAnimation::updateCurrentTime(int currentTime)
{
    setCurrentProgress(m_duration > 0 ? float(currentTime) / float(m_duration) : 1.0f);
}

void VLRAnimation::setCurrentProgress(float progress)
{
    m_currentProgress = progress;
    const qint64 count = m_animationImages.size();
    qint64 frame = qint64(std::trunc(float(count) * progress));
    if (frame == count)
        frame = 0;
    if (frame == m_currentFrame || frame < 0 || frame >= count)
        return;
    if (m_animationImageView)
        m_animationImageView->setImage(m_animationImages.at(frame));
    m_currentFrame = frame;
}
