#pragma once

/** Registers the elements that take the mouse, the keys and the focus. */
void registerDeclarativeInputTypes();
