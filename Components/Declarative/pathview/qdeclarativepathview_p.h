#pragma once

#include "item/qdeclarativeitem.h"

#include <QtCore/QPointer>

#include <memory>

#include <private/qquickpath_p.h>

class QDeclarativePathView;
class QDeclarativePathViewPrivate;
class QQmlOpenMetaObject;

/**
 * What a PathView attaches to its delegates and its highlight.
 *
 * The attributes of the path are properties of it as well, with their values at the item's place.
 */
class QDeclarativePathViewAttached : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativePathView *view READ view NOTIFY viewChanged)
    Q_PROPERTY(bool isCurrentItem READ isCurrentItem NOTIFY currentItemChanged)
    Q_PROPERTY(bool onPath READ isOnPath NOTIFY pathChanged)

public:
    explicit QDeclarativePathViewAttached(QObject *item);

    QDeclarativePathView *view() const;
    void setView(QDeclarativePathView *);
    bool isCurrentItem() const { return m_isCurrentItem; }
    void setIsCurrentItem(bool);
    bool isOnPath() const { return m_isOnPath; }
    void setOnPath(bool);
    void setAttribute(const QString &name, qreal value);

Q_SIGNALS:
    void viewChanged();
    void currentItemChanged();
    void pathChanged();

private:
    QPointer<QDeclarativePathView> m_view;
    std::shared_ptr<QDeclarativePathViewAttached> m_attributeKeeper;
    QQmlOpenMetaObject *m_attributes = nullptr; ///< belongs to Qt's object data; null outside of delegates
    bool m_isCurrentItem = false;
    bool m_isOnPath = false;
};

/**
 * Shows the rows of a model along a path, which they move along in a circle.
 *
 * Rows stand at even distances of the path's length, at whole pixels. An offset of one moves every row to
 * where the next one stood. The user moves the rows by dragging one of them, or the path near them.
 */
class QDeclarativePathView : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(QVariant model READ model WRITE setModel NOTIFY modelChanged)
    Q_PROPERTY(QQuickPath *path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(int currentIndex READ currentIndex WRITE setCurrentIndex NOTIFY currentIndexChanged)
    Q_PROPERTY(qreal offset READ offset WRITE setOffset NOTIFY offsetChanged)
    Q_PROPERTY(QQmlComponent *highlight READ highlight WRITE setHighlight NOTIFY highlightChanged)
    Q_PROPERTY(QDeclarativeItem *highlightItem READ highlightItem NOTIFY highlightItemChanged)
    Q_PROPERTY(qreal preferredHighlightBegin READ preferredHighlightBegin WRITE setPreferredHighlightBegin
                   NOTIFY preferredHighlightBeginChanged)
    Q_PROPERTY(qreal preferredHighlightEnd READ preferredHighlightEnd WRITE setPreferredHighlightEnd NOTIFY
                   preferredHighlightEndChanged)
    Q_PROPERTY(HighlightRangeMode highlightRangeMode READ highlightRangeMode WRITE setHighlightRangeMode
                   NOTIFY highlightRangeModeChanged)
    Q_PROPERTY(int highlightMoveDuration READ highlightMoveDuration WRITE setHighlightMoveDuration NOTIFY
                   highlightMoveDurationChanged)
    Q_PROPERTY(qreal dragMargin READ dragMargin WRITE setDragMargin NOTIFY dragMarginChanged)
    Q_PROPERTY(qreal flickDeceleration READ flickDeceleration WRITE setFlickDeceleration NOTIFY
                   flickDecelerationChanged)
    Q_PROPERTY(bool interactive READ isInteractive WRITE setInteractive NOTIFY interactiveChanged)
    Q_PROPERTY(bool moving READ isMoving NOTIFY movingChanged)
    Q_PROPERTY(bool flicking READ isFlicking NOTIFY flickingChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(QQmlComponent *delegate READ delegate WRITE setDelegate NOTIFY delegateChanged)
    Q_PROPERTY(int pathItemCount READ pathItemCount WRITE setPathItemCount NOTIFY pathItemCountChanged)

public:
    enum HighlightRangeMode { NoHighlightRange, ApplyRange, StrictlyEnforceRange };
    Q_ENUM(HighlightRangeMode)

    explicit QDeclarativePathView(QDeclarativeItem *parent = nullptr);
    ~QDeclarativePathView() override;

    QVariant model() const;
    void setModel(const QVariant &);
    QQuickPath *path() const;
    void setPath(QQuickPath *);

    /** The current row. One beyond the rows of the model counts on from the first row. */
    int currentIndex() const;
    void setCurrentIndex(int);

    /** How far the rows have moved along, in rows, from zero up to count. The current row stays. */
    qreal offset() const;
    void setOffset(qreal);
    QQmlComponent *highlight() const;
    void setHighlight(QQmlComponent *);
    QDeclarativeItem *highlightItem() const;

    /** Where on the path the highlight should be, from 0 at its start to 1. */
    qreal preferredHighlightBegin() const;
    void setPreferredHighlightBegin(qreal);
    qreal preferredHighlightEnd() const;
    void setPreferredHighlightEnd(qreal);
    HighlightRangeMode highlightRangeMode() const;
    void setHighlightRangeMode(HighlightRangeMode);

    /** How long rows or highlight take to a new current row, in milliseconds. */
    int highlightMoveDuration() const;
    void setHighlightMoveDuration(int);

    /** How far from the path, in pixels, a drag may start that is not on an item. */
    qreal dragMargin() const;
    void setDragMargin(qreal);

    /** How fast a flick slows down, in tenths of rows per second squared. */
    qreal flickDeceleration() const;
    void setFlickDeceleration(qreal);
    bool isInteractive() const;
    void setInteractive(bool);
    bool isMoving() const;
    bool isFlicking() const;
    int count() const;
    QQmlComponent *delegate() const;
    void setDelegate(QQmlComponent *);

    /** How many rows are on the path at a time; -1 is all of them. */
    int pathItemCount() const;
    void setPathItemCount(int);

    Q_INVOKABLE void incrementCurrentIndex();
    Q_INVOKABLE void decrementCurrentIndex();

    static QDeclarativePathViewAttached *qmlAttachedProperties(QObject *);

Q_SIGNALS:
    void modelChanged();
    void pathChanged();
    void currentIndexChanged();
    void offsetChanged();
    void highlightChanged();
    void highlightItemChanged();
    void preferredHighlightBeginChanged();
    void preferredHighlightEndChanged();
    void highlightRangeModeChanged();
    void highlightMoveDurationChanged();
    void dragMarginChanged();
    void flickDecelerationChanged();
    void interactiveChanged();
    void movingChanged();
    void flickingChanged();
    void countChanged();
    void delegateChanged();
    void pathItemCountChanged();
    void snapPositionChanged();
    void movementStarted();
    void movementEnded();
    void flickStarted();
    void flickEnded();

protected:
    void componentComplete() override;
    void mousePressEvent(QGraphicsSceneMouseEvent *) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *) override;
    bool sceneEvent(QEvent *) override;
    bool sceneEventFilter(QGraphicsItem *, QEvent *) override;

private:
    Q_DISABLE_COPY(QDeclarativePathView)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativePathView)
    friend class QDeclarativePathViewAttached;
};

QML_DECLARE_TYPE(QDeclarativePathView)
QML_DECLARE_TYPEINFO(QDeclarativePathView, QML_HAS_ATTACHED_PROPERTIES)
