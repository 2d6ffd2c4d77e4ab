#pragma once

#include "item/qdeclarativeitem_p.h"
#include "qdeclarativebasepositioner_p.h"

#include <private/qquicktransition_p.h>
#include <private/qquicktransitionmanager_p_p.h>

#include <deque>
#include <memory>
#include <optional>

class QDeclarativeBasePositionerPrivate : public QDeclarativeItemPrivate,
                                          public QDeclarativeItemChangeListener
{
    Q_DECLARE_PUBLIC(QDeclarativeBasePositioner)

public:
    using Cells = QDeclarativeBasePositioner::Cells;

    /** A child as it was when it was placed. */
    struct Child
    {
        QGraphicsObject *item;
        QSizeF size;
        std::optional<QSizeF> content; ///< what the children take up as far as this one, if they have a place
        bool placed;
    };

    /** Only there when a transition is. */
    struct Transitions
    {
        QPointer<QQuickTransition> add;
        QPointer<QQuickTransition> move;
        QQuickTransitionManager addManager;
        QQuickTransitionManager moveManager;
    };

    void watch(QGraphicsObject *);
    void unwatch(QGraphicsObject *);
    void unwatchAll();
    std::size_t indexOf(const QGraphicsObject *) const;
    void noteChange(std::size_t index);
    void childChanged(QGraphicsObject *);
    bool isChanged(std::size_t index) const;
    bool sortIn(std::size_t index);
    void relayoutChanged();
    void relayoutLater();
    void mirrorChange() override;
    void place();
    bool hasConflict() const;
    void warnOfConflict();
    void findFirstChanged();
    std::optional<QSizeF> collectCells();
    void noteContents(std::optional<QSizeF> content);
    void applyCells();
    void applyWithTransitions();
    Transitions &needTransitions();

    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override;
    void itemSiblingOrderChanged(QDeclarativeItem *) override;
    void itemVisibilityChanged(QDeclarativeItem *item) override { childChanged(item); }
    void itemOpacityChanged(QDeclarativeItem *item) override { childChanged(item); }

    std::unique_ptr<Transitions> transitions;
    std::deque<Child> watched;
    std::size_t firstChanged = 0; ///< of the watched: those before it stand where they belong
    bool isForeign = false; ///< some children are no items of this module, which do not tell of every change
    Cells cells;
    int spacing = 0;
    Qt::LayoutDirection layoutDirection = Qt::LeftToRight;
    int nesting = 0;
    QGraphicsObject *moving = nullptr; ///< the child that is being put into its place
    bool isPlacing = false;
    bool placeAgain = false;
    bool isQueued = false;
    bool hasWarned = false;
};
