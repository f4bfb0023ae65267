#include "shell/ClientParts.h"

MainViewControllerParts makeClientParts()
{
    // Each page joins here as it is built; until then its part stays empty
    // and the main controller leaves it out.
    return MainViewControllerParts();
}
