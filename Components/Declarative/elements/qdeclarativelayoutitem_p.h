#pragma once

#include "item/qdeclarativeitem.h"

#include <QtWidgets/QGraphicsLayoutItem>

/** An item that a graphics layout can place: the layout sets its position and size within its size hints. */
class QDeclarativeLayoutItem : public QDeclarativeItem, public QGraphicsLayoutItem
{
    Q_OBJECT
    Q_INTERFACES(QGraphicsLayoutItem)
    Q_PROPERTY(QSizeF maximumSize READ maximumSize WRITE setMaximumSize NOTIFY maximumSizeChanged)
    Q_PROPERTY(QSizeF minimumSize READ minimumSize WRITE setMinimumSize NOTIFY minimumSizeChanged)
    Q_PROPERTY(QSizeF preferredSize READ preferredSize WRITE setPreferredSize NOTIFY preferredSizeChanged)

public:
    explicit QDeclarativeLayoutItem(QDeclarativeItem *parent = nullptr);

    QSizeF maximumSize() const { return m_maximumSize; }
    void setMaximumSize(const QSizeF &);
    QSizeF minimumSize() const { return m_minimumSize; }
    void setMinimumSize(const QSizeF &);
    QSizeF preferredSize() const { return m_preferredSize; }
    void setPreferredSize(const QSizeF &);

    void setGeometry(const QRectF &) override;

Q_SIGNALS:
    void maximumSizeChanged();
    void minimumSizeChanged();
    void preferredSizeChanged();

protected:
    QSizeF sizeHint(Qt::SizeHint which, const QSizeF &constraint = QSizeF()) const override;

private:
    Q_DISABLE_COPY(QDeclarativeLayoutItem)

    void announceHints();

    QSizeF m_maximumSize;
    QSizeF m_minimumSize;
    QSizeF m_preferredSize;
};

QML_DECLARE_TYPE(QDeclarativeLayoutItem)
