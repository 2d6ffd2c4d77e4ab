#pragma once

#include "Shape.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QVector>

class DraftingScene;

/**
 * What the pointer does on the drawing. A tool collects picks and turns them into one step of the undo
 * history; its state is small enough that cancelling is forgetting the picks.
 */
class Tool
{
    Q_DECLARE_TR_FUNCTIONS(Tool)

public:
    explicit Tool(DraftingScene *scene)
        : m_scene(scene)
    {
    }
    virtual ~Tool() = default;

    /** The left button went down at @p point. */
    virtual void press(const QPointF &point) = 0;

    /** The pointer is at @p point now. */
    virtual void move(const QPointF &point);

    /** The left button came up at @p point. */
    virtual void release(const QPointF &point) { Q_UNUSED(point) }

    /** The user says that there will be no further picks. */
    virtual void finish() { }

    /** Forgets the picks made so far. */
    virtual void cancel();

    /** Paints what the next pick would do. */
    virtual void draw(QPainter *painter) const = 0;

    /** Says what to pick next. */
    virtual QString prompt() const = 0;

    /** True while some picks were made and others are to come. */
    bool isBusy() const { return !m_picks.isEmpty(); }

protected:
    void addPick(const QPointF &point);
    void paintMarker(QPainter *painter, const QPointF &point) const;
    QPen previewPen(Qt::PenStyle style) const;
    QVector<QPointF> picksAndPointer() const { return m_picks + QVector<QPointF>{m_pointer}; }

    DraftingScene *m_scene;
    QVector<QPointF> m_picks;
    QPointF m_pointer;
};
