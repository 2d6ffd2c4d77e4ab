#pragma once

/** Registers Item with all that every item has, and what places the items that scripts make. */
void registerDeclarativeItemTypes();
