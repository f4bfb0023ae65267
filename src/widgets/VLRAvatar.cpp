#include "widgets/VLRAvatar.h"

VLRAvatar::VLRAvatar(const QPixmap& image, const QString& toolTip)
    : m_image(image)
    , m_toolTip(toolTip)
{ }
