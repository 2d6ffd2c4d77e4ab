#pragma once

/** Registers animations and the state changes that move items. */
void registerDeclarativeMotionTypes();
