#pragma once

#include <functional>

class QWidget;

// Which windows may become the key window. Every window may, but for the one
// that holds the status item's view: that one only while the popover shows,
// as the popover's owner tells through the function installed here.
bool vlr_canBecomeKeyWindow(const QWidget* window);

// Installs the question "is the popover shown?"; without one the answer is no.
void vlr_setPopoverIsShownProvider(std::function<bool()> provider);
