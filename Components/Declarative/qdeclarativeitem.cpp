#include "qdeclarativeitem.h"
