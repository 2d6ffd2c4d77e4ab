#pragma once

/** Registers the module Qt.labs.particles 1.0. */
void registerDeclarativeParticlesTypes();
