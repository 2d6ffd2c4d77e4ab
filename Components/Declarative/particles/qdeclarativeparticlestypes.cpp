#include "qdeclarativeparticlestypes_p.h"

#include "qdeclarativeparticlemotion_p.h"
#include "qdeclarativeparticles_p.h"

#include <QtQml/qqml.h>

void registerDeclarativeParticlesTypes()
{
    const char *const module = "Qt.labs.particles";
    qmlRegisterType<QDeclarativeParticleMotion>(module, 1, 0, "ParticleMotion");
    qmlRegisterType<QDeclarativeParticleMotionLinear>(module, 1, 0, "ParticleMotionLinear");
    qmlRegisterType<QDeclarativeParticleMotionGravity>(module, 1, 0, "ParticleMotionGravity");
    qmlRegisterType<QDeclarativeParticleMotionWander>(module, 1, 0, "ParticleMotionWander");
    qmlRegisterType<QDeclarativeParticles>(module, 1, 0, "Particles");
}
