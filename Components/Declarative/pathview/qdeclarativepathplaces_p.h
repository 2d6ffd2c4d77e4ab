#pragma once

#include <QtCore/QVector>

#include <private/qbezier_p.h>
#include <private/qquickpath_p_p.h>

/**
 * Where the places of a path are: their points, and the values of the path's attributes there.
 *
 * A place is a part of the path's length, from 0 at its start to 1. A PathPercent moves the place of the
 * element before it, and the elements up to there with it; the elements after the last PathPercent keep their
 * own. Within a curve places go by the curve's parameter. Points stand in steps of a fifth of a pixel, which
 * is what an item's place is rounded to.
 */
class QDeclarativePathPlaces
{
public:
    QDeclarativePathPlaces() = default;

    /** Reads @p path as it is now. */
    explicit QDeclarativePathPlaces(const QQuickPath &path);

    /** Whether there is no path to stand on; one that is still being declared is none yet. */
    bool isEmpty() const { return m_pieces.isEmpty(); }

    QStringList attributes() const { return m_attributes; }

    /** The point at @p place, which is bounded to the path. */
    QPointF pointAt(qreal place) const;

    /** The value of the attribute @p name at @p place; 0 where nothing gives it one, and beyond the
     * PathPercent of the whole path. */
    qreal attributeAt(const QString &name, qreal place) const;

    /** The place, in thousandths, whose point is nearest to @p point, and in @p nearest that point. */
    qreal nearestTo(const QPointF &point, QPointF *nearest = nullptr) const;

private:
    struct Piece
    {
        QBezier curve;
        qreal length;
        qreal start; ///< the length of the path before it
    };

    /** Where an element ends, or the path starts. */
    struct Mark
    {
        qreal place;
        qreal part; ///< of the path's length, where no PathPercent has moved it
        qreal stretch; ///< of the element that ends here, by its PathPercent
        QHash<QString, qreal> values;
    };

    void addPieces(const QPainterPath &);
    void addMarks(const QQuickPathPrivate &);
    int markAfter(qreal place) const;
    QPointF exactPointAt(qreal place) const;

    QVector<Piece> m_pieces;
    QVector<Mark> m_marks;
    QStringList m_attributes;
    qreal m_length = 0;
    qreal m_steps = 1; ///< from start to end of the path
};
