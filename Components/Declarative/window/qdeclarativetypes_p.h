#pragma once

/** Registers those of the QML 1 types that need no engine for it, once. */
void registerOwnDeclarativeTypes();
