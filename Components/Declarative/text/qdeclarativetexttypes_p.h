#pragma once

/** Registers text that is shown and the loader of its fonts. */
void registerDeclarativeTextTypes();
