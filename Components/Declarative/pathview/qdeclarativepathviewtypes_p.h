#pragma once

/** Registers the view of a model along a path. */
void registerDeclarativePathViewTypes();
