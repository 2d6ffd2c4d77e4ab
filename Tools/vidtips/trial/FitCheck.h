#pragma once

#include "ShownTip.h"

/** Finds texts that have no room, and tips for which there is none. */
class FitCheck
{
public:
    static void run(const ShownTip &tip);

private:
    static void checkText(const ShownTip &tip, const ShownText &text);
};
