#pragma once

#include <QtWidgets/QGraphicsTransform>

/** Moves an item by a distance in pixels, without a change of its position. */
class QDeclarativeTranslate : public QGraphicsTransform
{
    Q_OBJECT
    Q_PROPERTY(qreal x READ x WRITE setX NOTIFY xChanged)
    Q_PROPERTY(qreal y READ y WRITE setY NOTIFY yChanged)

public:
    explicit QDeclarativeTranslate(QObject *parent = nullptr);

    qreal x() const { return m_x; }
    void setX(qreal);
    qreal y() const { return m_y; }
    void setY(qreal);

    void applyTo(QMatrix4x4 *matrix) const override;

Q_SIGNALS:
    void xChanged();
    void yChanged();

private:
    qreal m_x = 0;
    qreal m_y = 0;
};
