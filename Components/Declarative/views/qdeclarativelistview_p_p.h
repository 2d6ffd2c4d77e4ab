#pragma once

#include "qdeclarativeitemview_p_p.h"
#include "qdeclarativelistview_p.h"

/** An item of a ListView, with the heading of its section where it is the first of one. */
class QDeclarativeListItem : public QDeclarativeViewItem
{
public:
    QDeclarativeListItem(QDeclarativeItem *item, const QDeclarativeItemViewPrivate *view)
        : QDeclarativeViewItem(item)
        , view(view)
    {
    }
    ~QDeclarativeListItem() override;

    qreal position() const override { return view->placeOf(heading ? heading.data() : item); }
    qreal size() const override { return view->lengthOf(item) + headingSize(); }
    qreal endPosition() const override { return view->placeOf(item) + qMax<qreal>(1, view->lengthOf(item)); }
    qreal headingSize() const { return heading ? view->lengthOf(heading) : 0; }

    const QDeclarativeItemViewPrivate *const view;
    QPointer<QDeclarativeItem> heading;
    QString headingSection;
};

class QDeclarativeListViewPrivate : public QDeclarativeItemViewPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeListView)

public:
    QDeclarativeListViewPrivate();

    Qt::Orientation scrolled() const override { return Qt::Orientation(orientation); }
    std::unique_ptr<Item> newItem(QDeclarativeItem *) const override;
    QDeclarativeItemViewAttached *attachedTo(QDeclarativeItem *) const override;
    void setItemPosition(Item *, qreal position) override;
    qreal positionAt(int index) const override;
    qreal startPosition() const override;
    qreal endPosition() const override;
    bool addVisible(qreal from, qreal to, bool isBuffer) override;
    void placeVisible() override;
    bool rowsInserted(int index, int count, AddedItems *) override;
    void rowsMoved(int from, int to, int count) override;
    void noRowsLeft(int index) override;
    void rowsRemoved(const Item *first, qreal above) override;
    void placeHighlight() override;
    void moveHighlight() override;
    void highlightPositioned() override { placeHighlight(); }
    bool snaps() const override { return snapMode != QDeclarativeListView::NoSnap; }
    qreal snapPosition(qreal position) const override;
    qreal flickTarget(qreal natural, qreal velocity) const override;
    void viewMoved() override;
    void itemMade(Item *) override;
    void rowMade(Item *item) override { updateHeading(item); }
    qreal rowStep() const override { return step(); }
    std::unique_ptr<Item> createCurrent(int index) override;
    void currentMade() override;
    qreal currentPosition() const override { return placeOf(currentItem->item); }
    qreal firstEnd() const override;
    Span followed() const override;
    void placeCurrent() override;
    void placeUnseenCurrent() override;
    void updateAverage() override;
    qreal placeOfFirst() const override { return firstPosition; }
    void setPlaceOfFirst(qreal place) override { firstPosition = place; }
    qreal travelEnd(const Axis &) const override;

    qreal step() const { return averageSize + spacing; }
    bool append(qreal to, int most);
    bool prepend(qreal from, int most);
    void jump(qreal from, qreal to);
    void clear() override;
    int slotFor(int index) const;
    qreal placeOfSlot(int slot) const;
    bool insertAbove(int slot, int index, int count);
    void insertBelow(int slot, int index, int count, AddedItems *);
    void shift(Item *, qreal by);
    int snapIndex(qreal position) const;
    qreal rangeOffset() const { return hasRange() ? highlightBegin : 0; }
    const Item *lastRow() const;
    const Item *firstKept(int from, int count) const;
    void addSkipped();

    QString sectionAt(int index) const;
    void watchSections();
    void updateSections();
    void updateHeading(Item *);
    void dropHeading(QDeclarativeListItem *);
    void dropHeadings();

    QDeclarativeViewSection *section = nullptr;
    QString currentSection;
    QDeclarativeHighlightValue highlightPlace;
    QDeclarativeHighlightValue highlightLength;
    qreal highlightMoveSpeed = 400;
    qreal highlightResizeSpeed = 400;
    int highlightResizeDuration = -1;
    qreal spacing = 0;
    qreal firstPosition = 0; ///< of the row visibleIndex while no row has an item
    bool skipsRows = false; ///< rows among the visible ones have no item
    QDeclarativeListView::Orientation orientation = QDeclarativeListView::Vertical;
    QDeclarativeListView::SnapMode snapMode = QDeclarativeListView::NoSnap;
};
