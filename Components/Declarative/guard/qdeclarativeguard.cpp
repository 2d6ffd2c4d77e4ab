#include "qdeclarativeguard.h"

#include "qdeclarativeguardedpictures_p.h"

QDeclarativeGuard::~QDeclarativeGuard() = default;

QString QDeclarativeGuard::problemOfPicture(const QString &fileName)
{
    return QDeclarativeGuardedPictures::problemOf(fileName);
}
