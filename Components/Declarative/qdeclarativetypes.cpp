#include "qdeclarativetypes_p.h"
