#pragma once

/** Registers the QML 1 types that are Qt's own and have no picture, but for animations. */
void registerDeclarativeEngineTypes();
