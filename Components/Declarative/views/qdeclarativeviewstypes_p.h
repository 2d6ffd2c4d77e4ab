#pragma once

/** Registers the views of models in rows. */
void registerDeclarativeViewsTypes();
