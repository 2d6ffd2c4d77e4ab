#pragma once

class QQmlEngine;

/** Registers the QML 1 types, and gives @p engine the functions that QML 1 has without an import. */
void prepareDeclarativeEngine(QQmlEngine *engine);
