#pragma once

/** Registers rectangles, positioners and the elements that make or hold other items. */
void registerDeclarativeElementsTypes();
