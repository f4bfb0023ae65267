#include "widgets/VLRWindowAdditions.h"

#include "widgets/StatusItemImageView.h"

#include <QWidget>

namespace {

std::function<bool()>& popoverIsShownProvider()
{
    static std::function<bool()> provider;
    return provider;
}

bool isStatusBarWindow(const QWidget* window)
{
    return window->findChild<const StatusItemImageView*>() != nullptr
        || qobject_cast<const StatusItemImageView*>(window) != nullptr;
}

} // namespace

bool vlr_canBecomeKeyWindow(const QWidget* window)
{
    if (!window)
        return false;
    if (!isStatusBarWindow(window->window()))
        return true;
    const std::function<bool()>& provider = popoverIsShownProvider();
    return provider && provider();
}

void vlr_setPopoverIsShownProvider(std::function<bool()> provider)
{
    popoverIsShownProvider() = std::move(provider);
}
