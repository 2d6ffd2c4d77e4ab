#pragma once

#include "item/qdeclarativeitem.h"

class QDeclarativeFlipablePrivate;

/**
 * Shows one of two items, depending on which side its transforms turn towards the viewer.
 *
 * The other one is made fully transparent, so that it takes no mouse either. Both can be given once. The back
 * is turned by itself, so that it does not look mirrored when the flipable was turned over.
 */
class QDeclarativeFlipable : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(QGraphicsObject *front READ front WRITE setFront NOTIFY frontChanged)
    Q_PROPERTY(QGraphicsObject *back READ back WRITE setBack NOTIFY backChanged)
    Q_PROPERTY(Side side READ side NOTIFY sideChanged)

public:
    enum Side { Front, Back };
    Q_ENUM(Side)

    explicit QDeclarativeFlipable(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeFlipable() override;

    QGraphicsObject *front() const;
    void setFront(QGraphicsObject *);
    QGraphicsObject *back() const;
    void setBack(QGraphicsObject *);
    Side side() const;

Q_SIGNALS:
    void frontChanged();
    void backChanged();
    void sideChanged();

protected:
    void componentComplete() override;
    QVariant itemChange(GraphicsItemChange, const QVariant &) override;

private Q_SLOTS:
    void updateSide();

private:
    Q_DISABLE_COPY(QDeclarativeFlipable)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeFlipable)
};

QML_DECLARE_TYPE(QDeclarativeFlipable)
