#include "qdeclarativetranslate_p.h"

#include <QtGui/QMatrix4x4>

QDeclarativeTranslate::QDeclarativeTranslate(QObject *parent)
    : QGraphicsTransform(parent)
{
}

void QDeclarativeTranslate::setX(qreal x)
{
    if (x == m_x)
        return;
    m_x = x;
    update();
    Q_EMIT xChanged();
}

void QDeclarativeTranslate::setY(qreal y)
{
    if (y == m_y)
        return;
    m_y = y;
    update();
    Q_EMIT yChanged();
}

void QDeclarativeTranslate::applyTo(QMatrix4x4 *matrix) const
{
    matrix->translate(float(m_x), float(m_y));
}
