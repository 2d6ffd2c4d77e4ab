#include "qdeclarativeview.h"
