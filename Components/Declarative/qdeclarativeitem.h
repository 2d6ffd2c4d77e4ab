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
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeItem : public QGraphicsObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
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
    Q_PROPERTY(qreal baselineOffset READ baselineOffset WRITE setBaselineOffset NOTIFY baselineOffsetChanged)
    Q_PROPERTY(bool clip READ clip WRITE setClip NOTIFY clipChanged)
    Q_PROPERTY(bool focus READ hasFocus WRITE setFocus NOTIFY focusChanged FINAL)
    Q_PROPERTY(bool activeFocus READ hasActiveFocus NOTIFY activeFocusChanged FINAL)
    Q_PROPERTY(QQmlListProperty<QGraphicsTransform> transform READ transform DESIGNABLE false FINAL)
    Q_PROPERTY(TransformOrigin transformOrigin READ transformOrigin WRITE setTransformOrigin NOTIFY
                   transformOriginChanged)
    Q_PRIVATE_PROPERTY(QDeclarativeItem::d_func(), QPointF transformOriginPoint READ computeTransformOrigin)
    Q_PROPERTY(bool smooth READ smooth WRITE setSmooth NOTIFY smoothChanged)
    Q_PROPERTY(
        qreal implicitWidth READ implicitWidth WRITE setImplicitWidth NOTIFY implicitWidthChanged REVISION 1)
    Q_PROPERTY(qreal implicitHeight READ implicitHeight WRITE setImplicitHeight NOTIFY implicitHeightChanged
                   REVISION 1)
    Q_CLASSINFO("DefaultProperty", "data")

public:
    enum TransformOrigin { TopLeft, Top, TopRight, Left, Center, Right, BottomLeft, Bottom, BottomRight };
    Q_ENUM(TransformOrigin)

    explicit QDeclarativeItem(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeItem() override;

    /** Returns the parent item when it is a QDeclarativeItem, else null. */
    QDeclarativeItem *parentItem() const;
    void setParentItem(QDeclarativeItem *parent);

    /** The distance of the baseline from the item's top, in pixels. */
    qreal baselineOffset() const;
    void setBaselineOffset(qreal);

    /** Returns everything that is appended to the item: items become children, the rest resources. */
    QQmlListProperty<QObject> data();

    /** The transforms that apply before scale and rotation, first one first. */
    QQmlListProperty<QGraphicsTransform> transform();

    /** Whether painting of children is cut at the item's rectangle. */
    bool clip() const;
    void setClip(bool);

    QRectF boundingRect() const override;
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override;

    qreal x() const { return QGraphicsObject::x(); }
    qreal y() const { return QGraphicsObject::y(); }
    qreal width() const;
    void setWidth(qreal);
    void resetWidth();
    qreal height() const;
    void setHeight(qreal);
    void resetHeight();
    qreal implicitWidth() const;
    qreal implicitHeight() const;

    /** Sets width and height at once; both then count as set explicitly. */
    void setSize(const QSizeF &size);

    TransformOrigin transformOrigin() const;
    void setTransformOrigin(TransformOrigin);

    /** Whether painting antialiases and filters; off by default. */
    bool smooth() const;
    void setSmooth(bool);

    /** Whether the item has the focus within its focus scope; see hasActiveFocus() for the keys. */
    bool hasFocus() const;
    void setFocus(bool);
    bool hasActiveFocus() const;

    /** Whether an item that filters the mouse of its children must leave this item's gesture alone. */
    bool keepMouseGrab() const;
    void setKeepMouseGrab(bool);

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
    void childrenRectChanged(const QRectF &);
    void baselineOffsetChanged(qreal);
    void stateChanged(const QString &);
    void focusChanged(bool);
    void activeFocusChanged(bool);
    void parentChanged(QDeclarativeItem *);
    void transformOriginChanged(QDeclarativeItem::TransformOrigin);
    void smoothChanged(bool);
    void clipChanged(bool);
    Q_REVISION(1) void implicitWidthChanged();
    Q_REVISION(1) void implicitHeightChanged();

protected:
    QDeclarativeItem(QDeclarativeItemPrivate &dd, QDeclarativeItem *parent = nullptr);

    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

    /**
     * Lets Keys and KeyNavigation see keys before the item; then the event handlers below come.
     *
     * An item that has no use for a key calls the base's handler, which ignores the event and lets those
     * attached objects see it that come after the item.
     */
    bool sceneEvent(QEvent *) override;
    void keyPressEvent(QKeyEvent *) override;
    void keyReleaseEvent(QKeyEvent *) override;
    void inputMethodEvent(QInputMethodEvent *) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery) const override;

    void classBegin() override;

    /** Called when all properties of the item's component are set; call the base. */
    void componentComplete() override;

    /** Tells whether componentComplete() was called; true for items that C++ makes. */
    bool isComponentComplete() const;

    /** Called after position or size changed, in the parent's coordinates; call the base. */
    virtual void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry);

    /** The size the item takes where none is set; in pixels. */
    void setImplicitWidth(qreal);
    void setImplicitHeight(qreal);

    /** Tells whether width or height was set, rather than taken from the implicit size. */
    bool widthValid() const;
    bool heightValid() const;

private:
    friend class QDeclarativeContents;
    Q_DISABLE_COPY(QDeclarativeItem)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeItem)
};

QML_DECLARE_TYPE(QDeclarativeItem)
