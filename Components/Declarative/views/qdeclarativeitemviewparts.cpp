#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativeitemview_p_p.h"

#include <QtQml/QQmlComponent>

/** Replaces the header or the footer. */
void QDeclarativeItemViewPrivate::recreate(QPointer<QDeclarativeItem> *part, QQmlComponent *component)
{
    if (*part)
        QDeclarativeItemPrivate::get(part->data())->removeChangeListener(this, GeometryChange);
    discard(*part);
    *part = nullptr;
    *part = component ? createPart(component, content) : nullptr;
    if (*part) {
        (*part)->setZValue(1);
        QDeclarativeItemPrivate::get(part->data())->addChangeListener(this, GeometryChange);
    }
    placeParts();
}

void QDeclarativeItemViewPrivate::placeParts()
{
    if (headerItem)
        placeHeader();
    if (footerItem)
        placeFooter();
}

/** While the first row has no item, where it stands is a guess that only brings the header closer. */
void QDeclarativeItemViewPrivate::placeHeader()
{
    if (visibleItems.empty()) {
        setPlaceOfFirst(headerSize());
        placePart(headerItem, 0);
        return;
    }
    const qreal start = startPosition();
    const qreal place = start - headerSize();
    if (visibleIndex == 0 || viewPosition() <= start || placeOf(headerItem) > place)
        placePart(headerItem, place);
}

void QDeclarativeItemViewPrivate::placeFooter()
{
    if (visibleItems.empty()) {
        placePart(footerItem, placeOfFirst());
        return;
    }
    const qreal end = endPosition();
    if (lastVisibleIndex() == visualModel->count() - 1 || end <= viewPosition() + itemHeight
        || placeOf(footerItem) < end)
        placePart(footerItem, end);
}
