#pragma once

#include "ShownTip.h"

/** Finds what can be pressed and is too small, or has no name, as assistive technology sees the tip. */
class PressCheck
{
public:
    static void run(const ShownTip &tip);
};
