#pragma once

/** Registers the surface that is flicked. */
void registerDeclarativeFlickableTypes();
