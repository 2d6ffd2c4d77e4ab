#include "qdeclarativepathplaces_p.h"

#include <algorithm>
#include <cmath>

namespace {

const int stepsPerPixel = 5;
const int searchSteps = 1000;

/** How many elements of @p path the last of its PathPercents may move. */
int percentReach(const QQuickPathPrivate &path)
{
    int curves = 0;
    int reach = 0;
    for (QQuickPathElement *element : path._pathElements) {
        if (qobject_cast<QQuickCurve *>(element))
            ++curves;
        else if (qobject_cast<QQuickPathPercent *>(element))
            reach = curves;
    }
    return reach;
}

/** The names of the attributes of @p path, also while it is still being declared. */
QStringList attributesOf(const QQuickPathPrivate &path)
{
    QStringList names;
    for (QQuickPathElement *element : path._pathElements) {
        const auto *attribute = qobject_cast<QQuickPathAttribute *>(element);
        if (attribute && !names.contains(attribute->name()))
            names.append(attribute->name());
    }
    return names;
}

QBezier straight(const QPointF &from, const QPointF &to)
{
    return QBezier::fromPoints(from, (2 * from + to) / 3, (from + 2 * to) / 3, to);
}

} // namespace

QDeclarativePathPlaces::QDeclarativePathPlaces(const QQuickPath &path)
    : m_attributes(attributesOf(*QQuickPathPrivate::get(&path)))
{
    addPieces(path.path());
    addMarks(*QQuickPathPrivate::get(&path));
    m_steps = qMax<qreal>(1, std::ceil(m_length * stepsPerPixel));
}

void QDeclarativePathPlaces::addPieces(const QPainterPath &path)
{
    QPointF from;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPointF to = path.elementAt(i);
        QBezier curve = straight(from, to);
        if (path.elementAt(i).isCurveTo()) {
            curve = QBezier::fromPoints(from, to, path.elementAt(i + 1), path.elementAt(i + 2));
            i += 2;
        }
        from = curve.pt4();
        if (path.elementAt(i).isMoveTo())
            continue;
        const qreal length = curve.length();
        m_pieces.append({curve, length, m_length});
        m_length += length;
    }
}

void QDeclarativePathPlaces::addMarks(const QQuickPathPrivate &path)
{
    // What Qt knows of a path is stretched so that it ends at 1, whatever the last PathPercent says.
    const int reach = percentReach(path);
    for (int i = 0; i < path._attributePoints.count(); ++i) {
        const auto &point = path._attributePoints.at(i);
        const bool isMoved = i <= reach;
        m_marks.append({isMoved ? point.percent : point.origpercent, point.origpercent,
                        isMoved ? point.scale : 1, point.values});
    }
}

QPointF QDeclarativePathPlaces::pointAt(qreal place) const
{
    if (isEmpty())
        return {};
    const qreal step = qBound<qreal>(0, std::round(place * (m_steps + 1)), m_steps);
    return exactPointAt(step / m_steps);
}

/** The first mark that lies beyond @p place, or else the last one, but never the start of the path. */
int QDeclarativePathPlaces::markAfter(qreal place) const
{
    const auto mark = std::find_if(m_marks.begin() + 1, m_marks.end() - 1,
                                   [place](const Mark &candidate) { return candidate.place > place; });
    return int(mark - m_marks.begin());
}

QPointF QDeclarativePathPlaces::exactPointAt(qreal place) const
{
    const Mark &mark = m_marks.at(markAfter(place));
    const Mark &before = *(&mark - 1);
    const qreal length = m_length * (before.part + (place - before.place) * mark.stretch);
    const auto piece = std::find_if(m_pieces.begin(), m_pieces.end() - 1, [length](const Piece &candidate) {
        return candidate.start + candidate.length >= length;
    });
    const qreal t = piece->length > 0 ? (length - piece->start) / piece->length : 0;
    return piece->curve.pointAt(qBound<qreal>(0, t, 1));
}

qreal QDeclarativePathPlaces::attributeAt(const QString &name, qreal place) const
{
    if (isEmpty() || place > m_marks.last().place)
        return 0;
    const Mark &mark = m_marks.at(markAfter(place));
    const Mark &before = *(&mark - 1);
    const qreal from = before.values.value(name);
    if (mark.place == before.place)
        return from;
    return from + (mark.values.value(name) - from) * (place - before.place) / (mark.place - before.place);
}

qreal QDeclarativePathPlaces::nearestTo(const QPointF &point, QPointF *nearest) const
{
    QPointF best = pointAt(0);
    qreal place = 0;
    qreal least = -1;
    for (int step = 1; step < searchSteps; ++step) {
        const QPointF candidate = pointAt(qreal(step) / searchSteps);
        const QPointF way = candidate - point;
        const qreal squared = QPointF::dotProduct(way, way);
        if (least >= 0 && squared >= least)
            continue;
        least = squared;
        best = candidate;
        place = qreal(step) / searchSteps;
    }
    if (nearest)
        *nearest = best;
    return place;
}
