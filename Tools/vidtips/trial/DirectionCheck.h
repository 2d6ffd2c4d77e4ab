#pragma once

#include "ShownTip.h"

/** Finds texts of right-to-left languages that do not begin at the right. */
class DirectionCheck
{
public:
    static void run(const ShownTip &tip);

private:
    static bool standsWrong(const ShownTip &tip, const ShownText &text);
};
