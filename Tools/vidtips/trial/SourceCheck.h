#pragma once

#include "ShownTip.h"

/** Finds pictures, clips and parts of the user interface that could not be loaded. */
class SourceCheck
{
public:
    /** Returns where the items are written. What QML complains about there says the same. */
    static QVector<ItemPlace> run(const ShownTip &tip);
};
