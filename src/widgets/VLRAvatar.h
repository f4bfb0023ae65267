#pragma once

#include <QPixmap>
#include <QString>

// One member's picture in an avatar list, with the name its tool tip shows.
class VLRAvatar
{
public:
    VLRAvatar(const QPixmap& image, const QString& toolTip);

    QPixmap image() const { return m_image; }
    QString toolTip() const { return m_toolTip; }

private:
    QPixmap m_image;
    QString m_toolTip;
};
