#pragma once

#include "platform/ClientServices.h"
#include "session/MainViewControllerParts.h"

// The popover, tab bar and pages of this program, ready for the main
// controller.
MainViewControllerParts makeClientParts(const ClientServices& services);
