#pragma once

/** Registers the elements in which text is edited. */
void registerDeclarativeEditorsTypes();
