#pragma once

/** Registers the models, also that of Qt.labs.folderlistmodel 1.0. */
void registerDeclarativeModelsTypes();
