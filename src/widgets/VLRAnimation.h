#pragma once

#include <QAbstractAnimation>
#include <QEasingCurve>
#include <QList>
#include <QPixmap>
#include <QPointer>

class VLRImageView;

// Runs a sequence of pictures through an image view by progress rather than
// by a timer of its own: at progress p the frame shown is the count of frames
// times p, cut to a whole number; at the very end it is the first again.
class VLRAnimation : public QAbstractAnimation
{
    Q_OBJECT

public:
    // The duration in seconds.
    VLRAnimation(qreal duration, const QEasingCurve& animationCurve, QObject* parent = nullptr);

    int duration() const override { return m_duration; }
    QEasingCurve animationCurve() const { return m_animationCurve; }

    // From 0 at the start to 1 at the end, in time.
    float currentProgress() const { return m_currentProgress; }
    void setCurrentProgress(float progress);
    // The progress through the animation's curve.
    qreal currentValue() const { return m_animationCurve.valueForProgress(m_currentProgress); }

    qint64 currentFrame() const { return m_currentFrame; }

    QList<QPixmap> animationImages() const { return m_animationImages; }
    void setAnimationImages(const QList<QPixmap>& images) { m_animationImages = images; }

    // Not owned.
    VLRImageView* animationImageView() const { return m_animationImageView; }
    void setAnimationImageView(VLRImageView* view) { m_animationImageView = view; }

protected:
    void updateCurrentTime(int currentTime) override;

private:
    int m_duration;
    QEasingCurve m_animationCurve;
    float m_currentProgress = 0;
    qint64 m_currentFrame = 0;
    QList<QPixmap> m_animationImages;
    QPointer<VLRImageView> m_animationImageView;
};
