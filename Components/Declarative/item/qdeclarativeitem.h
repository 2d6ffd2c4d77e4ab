#pragma once

#include <QtDeclarative/qdeclarative.h>

#include <QtQml/QJSValue>

#include <QtGui/QTransform>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsTransform>

struct QDeclarativeAnchorLine;
class QDeclarativeAnchors;
class QDeclarativeItemPrivate;
class QQuickState;
class QQuickTransition;

/**
 * The base of every visual QML 1 item: a graphics object with a size, anchors, states and focus.
 *
 * An item paints nothing until it clears QGraphicsItem::ItemHasNoContents. Items are owned by their QObject
 * parent and by their parent item, whichever goes first. GUI thread only.
 */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeItem : public QGraphicsObject, public QDeclarativeParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QDeclarativeParserStatus)
    /** The item around this one, in whose coordinates it lies; null at the root. */
    Q_PROPERTY(QDeclarativeItem *parent READ parentItem WRITE setParentItem NOTIFY parentChanged
                   DESIGNABLE false FINAL)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(), QQmlListProperty<QObject> data READ data DESIGNABLE false)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QQmlListProperty<QObject> resources READ resources DESIGNABLE false)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QQmlListProperty<QGraphicsObject> children READ children NOTIFY childrenChanged
                           DESIGNABLE false)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QQmlListProperty<QQuickState> states READ states DESIGNABLE false)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QQmlListProperty<QQuickTransition> transitions READ transitions DESIGNABLE false)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QString state READ state WRITE setState NOTIFY stateChanged)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QRectF childrenRect READ childrenRect NOTIFY childrenRectChanged
                           DESIGNABLE false FINAL)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QDeclarativeAnchors *anchors READ anchors DESIGNABLE false CONSTANT FINAL)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(), QDeclarativeAnchorLine left READ left CONSTANT FINAL)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(), QDeclarativeAnchorLine right READ right CONSTANT FINAL)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QDeclarativeAnchorLine horizontalCenter READ horizontalCenter CONSTANT FINAL)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(), QDeclarativeAnchorLine top READ top CONSTANT FINAL)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(), QDeclarativeAnchorLine bottom READ bottom CONSTANT FINAL)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QDeclarativeAnchorLine verticalCenter READ verticalCenter CONSTANT FINAL)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(),
                       QDeclarativeAnchorLine baseline READ baseline CONSTANT FINAL)
    /** The distance of the baseline from the item's top, in pixels; 0 at first. */
    Q_PROPERTY(qreal baselineOffset READ baselineOffset WRITE setBaselineOffset NOTIFY baselineOffsetChanged)
    /** Whether painting of the item and its children is cut at its rectangle; false at first. */
    Q_PROPERTY(bool clip READ clip WRITE setClip NOTIFY clipChanged)
    /** Whether the item has the focus within its focus scope. */
    Q_PROPERTY(bool focus READ hasFocus WRITE setFocus NOTIFY focusChanged FINAL)
    /** Whether the item gets the keys. */
    Q_PROPERTY(bool activeFocus READ hasActiveFocus NOTIFY activeFocusChanged FINAL)
    /** The transforms that apply before scale and rotation, first one first. */
    Q_PROPERTY(QQmlListProperty<QGraphicsTransform> transform READ transform DESIGNABLE false FINAL)
    /** The point that stays where it is under scale and rotation; the centre at first. */
    Q_PROPERTY(TransformOrigin transformOrigin READ transformOrigin WRITE setTransformOrigin NOTIFY
                   transformOriginChanged)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(), QPointF transformOriginPoint READ computeTransformOrigin)
    /** Whether painting antialiases and filters; false at first. */
    Q_PROPERTY(bool smooth READ smooth WRITE setSmooth NOTIFY smoothChanged)
    /** The width in pixels that the item takes where none is set. */
    Q_PROPERTY(
        qreal implicitWidth READ implicitWidth WRITE setImplicitWidth NOTIFY implicitWidthChanged REVISION 1)
    /** The height in pixels that the item takes where none is set. */
    Q_PROPERTY(qreal implicitHeight READ implicitHeight WRITE setImplicitHeight NOTIFY implicitHeightChanged
                   REVISION 1)
    Q_CLASSINFO("DefaultProperty", "data")

public:
    /** The points of an item's rectangle that scale and rotation can leave where they are. */
    enum TransformOrigin { TopLeft, Top, TopRight, Left, Center, Right, BottomLeft, Bottom, BottomRight };
    Q_ENUM(TransformOrigin)

    /** Makes an item without a size inside @p parent, which owns it, if there is one. */
    explicit QDeclarativeItem(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeItem() override;

    /** Returns the parent item when it is a QDeclarativeItem, else null. */
    QDeclarativeItem *parentItem() const;

    /** Moves the item into @p parent, or out of every item with null. Emits parentChanged() on a change. */
    void setParentItem(QDeclarativeItem *parent);

    /** Returns the distance of the baseline from the item's top, in pixels. */
    qreal baselineOffset() const;

    /** Sets the baseline's distance to @p offset pixels. Emits baselineOffsetChanged() on a change. */
    void setBaselineOffset(qreal offset);

    /** Returns everything that is appended to the item: items become children, the rest resources. */
    QQmlListProperty<QObject> data();

    /** The transforms that apply before scale and rotation, first one first. */
    QQmlListProperty<QGraphicsTransform> transform();

    /** Tells whether painting is cut at the item's rectangle. */
    bool clip() const;

    /** Sets whether painting is cut at the item's rectangle. Emits clipChanged() on a change. */
    void setClip(bool clip);

    /** Returns the item's rectangle in its own coordinates: its size from the origin. */
    QRectF boundingRect() const override;

    /** Paints nothing; items that show something override it. */
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

    /** Returns the distance from the parent's left side in pixels. */
    qreal x() const { return QGraphicsObject::x(); }

    /** Returns the distance from the parent's top in pixels. */
    qreal y() const { return QGraphicsObject::y(); }

    /** Returns the width in pixels. */
    qreal width() const;

    /** Sets the width to @p width pixels; it no longer follows the implicit width. */
    void setWidth(qreal width);

    /** Lets the width follow the implicit width again. */
    void resetWidth();

    /** Returns the height in pixels. */
    qreal height() const;

    /** Sets the height to @p height pixels; it no longer follows the implicit height. */
    void setHeight(qreal height);

    /** Lets the height follow the implicit height again. */
    void resetHeight();

    /** Returns the width in pixels that the item takes where none is set. */
    qreal implicitWidth() const;

    /** Returns the height in pixels that the item takes where none is set. */
    qreal implicitHeight() const;

    /** Sets width and height at once, in pixels; both then count as set explicitly. */
    void setSize(const QSizeF &size);

    /** Returns the point that stays where it is under scale and rotation. */
    TransformOrigin transformOrigin() const;

    /** Makes @p origin that point. Emits transformOriginChanged() on a change. */
    void setTransformOrigin(TransformOrigin origin);

    /** Tells whether painting antialiases and filters; off by default. */
    bool smooth() const;

    /** Sets whether painting antialiases and filters. Emits smoothChanged() on a change. */
    void setSmooth(bool smooth);

    /** Tells whether the item has the focus within its focus scope; see hasActiveFocus() for the keys. */
    bool hasFocus() const;

    /** Takes the focus within the focus scope, or gives it up. */
    void setFocus(bool focus);

    /** Tells whether the item gets the keys: it and every focus scope above have the focus. */
    bool hasActiveFocus() const;

    /** Tells whether an item that filters the mouse of its children must leave this item's gesture alone. */
    bool keepMouseGrab() const;

    /** Sets whether others must leave this item's gesture alone. */
    void setKeepMouseGrab(bool keep);

    using QGraphicsObject::mapFromItem;
    using QGraphicsObject::mapToItem;

    /**
     * Maps a point of @p item, or of the scene when it is null, to this item.
     *
     * The result has the properties x and y; anything that is no item gives a warning and undefined.
     */
    Q_INVOKABLE QJSValue mapFromItem(const QJSValue &item, qreal x, qreal y) const;

    /** Maps a point of this item to @p item, or to the scene when it is null. */
    Q_INVOKABLE QJSValue mapToItem(const QJSValue &item, qreal x, qreal y) const;

    /** Takes the focus, and gives it to every focus scope above. */
    Q_INVOKABLE void forceActiveFocus();

    /** The topmost visible child whose rectangle holds the point, or null. */
    Q_INVOKABLE QDeclarativeItem *childAt(qreal x, qreal y) const;

Q_SIGNALS:
    /** Emitted when the rectangle around all children changed; it is given in the item's coordinates. */
    void childrenRectChanged(const QRectF &);
    /** Emitted when the baseline moved. */
    void baselineOffsetChanged(qreal);
    /** Emitted when the item went over to the state of that name. */
    void stateChanged(const QString &);
    /** Emitted when the item got or lost the focus within its focus scope. */
    void focusChanged(bool);
    /** Emitted when the item began or ceased to get the keys. */
    void activeFocusChanged(bool);
    /** Emitted when the item moved into another item or out of every one. */
    void parentChanged(QDeclarativeItem *);
    /** Emitted when another point was made the origin of scale and rotation. */
    void transformOriginChanged(QDeclarativeItem::TransformOrigin);
    /** Emitted when smooth painting was turned on or off. */
    void smoothChanged(bool);
    /** Emitted when clipping was turned on or off. */
    void clipChanged(bool);
    /** Emitted when the implicit width changed. */
    Q_REVISION(1) void implicitWidthChanged();
    /** Emitted when the implicit height changed. */
    Q_REVISION(1) void implicitHeightChanged();

protected:
    /** Makes an item with the private part @p dd, which it owns. For the items of this library. */
    VIDTIPS_DECLARATIVE_NO_EXPORT QDeclarativeItem(QDeclarativeItemPrivate &dd,
                                                   QDeclarativeItem *parent = nullptr);

    /** Keeps properties and signals in step with the graphics item; call the base. */
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

    /**
     * Lets Keys and KeyNavigation see keys before the item; then the event handlers below come.
     *
     * An item that has no use for a key calls the base's handler, which ignores the event and lets those
     * attached objects see it that come after the item.
     */
    bool sceneEvent(QEvent *event) override;

    /** Ignores the key; see sceneEvent(). */
    void keyPressEvent(QKeyEvent *event) override;

    /** Ignores the key; see sceneEvent(). */
    void keyReleaseEvent(QKeyEvent *event) override;

    /** Ignores the input; see sceneEvent(). */
    void inputMethodEvent(QInputMethodEvent *event) override;

    /** Answers for the item that Keys forwards to, if there is one. */
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

    /** Called before the properties of the item's component are set; call the base. */
    void classBegin() override;

    /** Called when all properties of the item's component are set; call the base. */
    void componentComplete() override;

    /** Tells whether componentComplete() was called; true for items that C++ makes. */
    bool isComponentComplete() const;

    /** Called after position or size changed, in the parent's coordinates; call the base. */
    virtual void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry);

    /** Sets the width that the item takes where none is set to @p width pixels. */
    void setImplicitWidth(qreal width);

    /** Sets the height that the item takes where none is set to @p height pixels. */
    void setImplicitHeight(qreal height);

    /** Tells whether the width was set, rather than taken from the implicit size. */
    bool widthValid() const;

    /** Tells whether the height was set, rather than taken from the implicit size. */
    bool heightValid() const;

private:
    friend class QDeclarativeContents;
    Q_DISABLE_COPY(QDeclarativeItem)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeItem)
};

QML_DECLARE_TYPE(QDeclarativeItem)

/** Casts @p object to the class that @p T points to, or returns null if it is none. */
template <typename T>
inline T qobject_cast(QGraphicsObject *object)
{
    return qobject_cast<T>(static_cast<QObject *>(object));
}

/** Casts @p item to the class that @p T points to, or returns null if it is no object or none of that class.
 */
template <typename T>
inline T qobject_cast(QGraphicsItem *item)
{
    return item ? qobject_cast<T>(static_cast<QObject *>(item->toGraphicsObject())) : nullptr;
}
