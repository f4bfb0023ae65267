#pragma once

#include "widgets/VLRAvatar.h"

#include <QList>
#include <QRectF>
#include <QWidget>

// A row of round member pictures as high as the view, a quarter of that
// apart. When they don't all fit, the first place shows an ellipsis whose tool
// tip names the members left out.
class VLRAvatarListView : public QWidget
{
    Q_OBJECT

public:
    // One picture's place in the row.
    struct Slot
    {
        QRectF frame;
        VLRAvatar avatar;
    };

    explicit VLRAvatarListView(QWidget* parent = nullptr);

    QList<VLRAvatar> avatars() const { return m_avatars; }
    // Stored only: the list shows at the view's next redraw, which the caller
    // asks for.
    void setAvatars(const QList<VLRAvatar>& avatars) { m_avatars = avatars; }

    // How many pictures fit in the view's width.
    qsizetype capacity() const;

    // The places the present list takes, left to right. A view too narrow for
    // one picture shows none.
    QList<Slot> avatarSlots() const;

    // What the view shows: each drawing lays the present list over what
    // earlier drawings left, so a list that shrinks leaves its earlier
    // pictures standing past its end.
    QList<Slot> shownSlots() const { return m_shownSlots; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    QString ellipsisToolTip(qsizetype capacity) const;

    QList<VLRAvatar> m_avatars;
    QList<Slot> m_shownSlots;
};
