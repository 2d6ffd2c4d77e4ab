#pragma once

/**
 * Graphics View's private item header, which items derive their private data from.
 *
 * It declares a list type of its own that has the name of our alias for the engine's, so it is renamed while
 * the header is read. Include this header, never the private one.
 */
#define QDeclarativeListProperty QGraphicsItemListProperty
#include <private/qgraphicsitem_p.h>
#undef QDeclarativeListProperty
