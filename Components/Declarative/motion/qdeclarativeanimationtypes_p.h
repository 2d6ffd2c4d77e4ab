#pragma once

/** Registers the animations, which are Qt's own, with the signal completed() that QML 1 has. */
void registerDeclarativeAnimationTypes();
