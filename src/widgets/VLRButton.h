#pragma once

#include "widgets/VLRAttributedString.h"
#include "widgets/VLRBadgeView.h"
#include "widgets/VLRLayer.h"

#include <QAbstractButton>
#include <QPointF>
#include <QPointer>
#include <QRectF>

#include <optional>

class VLRLabel;

// What a press and a release do.
enum VLRClickStyle : quint64 {
    VLRClickStyleNone = 0, // the platform's
    VLRClickStyleBackground = 1, // background black at 0.1 while pressed
    VLRClickStyleImage = 2, // clickedImage while pressed
};

// What entering and leaving with the pointer do.
enum VLRMouseOverStyle : quint64 {
    VLRMouseOverStyleNone = 0, // the platform's
    VLRMouseOverStyleBackground = 1, // background black at 0.1 while over
    VLRMouseOverStyleImage = 2, // mouseOverImage while over
    VLRMouseOverStyleText = 3, // the title in mouseOverTextColor while over
};

// The program's one button: pictures and colours come from the page that
// uses it; its title is a label of its own that moves aside for a badge; a
// count or a warning badge sits beside the title. clicked() is its action.
//
// Setters imply styles, so the order of calls matters: images then a text
// colour end with mouse-over style 3, the other way round with 2.
class VLRButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit VLRButton(QWidget* parent = nullptr);
    // With its frame known from the start, so that the title is centred on it.
    explicit VLRButton(const QRect& frame, QWidget* parent = nullptr);

    VLRBadgeView* badgeView() const { return m_badgeView; }
    QRectF centeredTitleFrame() const { return m_centeredTitleFrame; }
    VLRLabel* titleLabel() const { return m_titleLabel; }

    VLRClickStyle clickStyle() const { return m_clickStyle; }
    void setClickStyle(VLRClickStyle style) { m_clickStyle = style; }
    VLRMouseOverStyle mouseOverStyle() const { return m_mouseOverStyle; }
    void setMouseOverStyle(VLRMouseOverStyle style) { m_mouseOverStyle = style; }

    QColor backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const QColor& color);
    // Enabling puts the background colour back, whatever the state was.
    void setEnabled(bool enabled);

    QPixmap defaultImage() const { return m_defaultImage; }
    void setDefaultImage(const QPixmap& image);
    QPixmap mouseOverImage() const { return m_mouseOverImage; }
    void setMouseOverImage(const QPixmap& image);
    QPixmap clickedImage() const { return m_clickedImage; }
    void setClickedImage(const QPixmap& image);
    // The picture on show now.
    QPixmap image() const { return m_image; }

    QColor textColor() const { return m_textColor; }
    void setTextColor(const QColor& color);
    QColor mouseOverTextColor() const { return m_mouseOverTextColor; }
    void setMouseOverTextColor(const QColor& color) { m_mouseOverTextColor = color; }

    // The title lives in titleLabel. A title given to the QAbstractButton's
    // own text moves there at the first reading, and that text reads empty
    // from then on.
    QString title();
    void setTitle(const QString& title);
    VLRAttributedString attributedTitle();
    void setAttributedTitle(const VLRAttributedString& title);

    // 0 or less: no badge.
    qint64 badgeValue() const { return m_badgeValue; }
    void setBadgeValue(qint64 value);
    QPointF badgeOffset() const { return m_badgeOffset; }
    void setBadgeOffset(const QPointF& offset);
    bool badgeIsWarning() const { return m_badgeIsWarning; }
    void setBadgeIsWarning(bool badgeIsWarning);

    // The background on the layer, or nullptr while it has none.
    const VLRLayer* layer() const { return m_layer ? &*m_layer : nullptr; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void initialize();
    void setLayerBackgroundColor(const QColor& color);
    void showImage(const QPixmap& image);
    void setTitleTextColor(const QColor& color);
    void moveTitleFromPlatform();
    void offsetBadge();
    bool drivesClicks() const;
    bool drivesMouseOver() const;

    QPointer<VLRBadgeView> m_badgeView;
    QRectF m_centeredTitleFrame;
    bool m_badgeIsWarning = false;
    VLRClickStyle m_clickStyle = VLRClickStyleNone;
    VLRMouseOverStyle m_mouseOverStyle = VLRMouseOverStyleNone;
    QColor m_backgroundColor;
    QPixmap m_defaultImage;
    QPixmap m_mouseOverImage;
    QPixmap m_clickedImage;
    QPixmap m_image;
    QColor m_textColor;
    QColor m_mouseOverTextColor;
    VLRLabel* m_titleLabel = nullptr;
    qint64 m_badgeValue = 0;
    QPointF m_badgeOffset;
    std::optional<VLRLayer> m_layer;
};
