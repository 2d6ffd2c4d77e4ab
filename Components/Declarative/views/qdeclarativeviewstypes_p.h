#pragma once

/** Registers the views of models. */
void registerDeclarativeViewsTypes();
