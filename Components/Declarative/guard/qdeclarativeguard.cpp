#include "qdeclarativeguard.h"

QDeclarativeGuard::~QDeclarativeGuard() = default;
