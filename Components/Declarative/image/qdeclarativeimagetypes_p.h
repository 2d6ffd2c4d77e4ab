#pragma once

/** Registers the elements that show pictures. */
void registerDeclarativeImageTypes();
