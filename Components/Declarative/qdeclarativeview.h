#pragma once

#include <QtDeclarative/qdeclarative.h>

#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsView>

#include <memory>

/**
 * A widget that shows a QML 1 user interface in a scene of its own.
 *
 * The view owns its engine, its scene and the root object. GUI thread only.
 */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeView : public QGraphicsView
{
    Q_OBJECT
    Q_PROPERTY(ResizeMode resizeMode READ resizeMode WRITE setResizeMode)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(QUrl source READ source WRITE setSource DESIGNABLE true)

public:
    enum ResizeMode {
        SizeViewToRootObject, ///< the view takes the root object's size, whenever that changes
        SizeRootObjectToView, ///< the root object takes the view's size
    };
    Q_ENUM(ResizeMode)
    enum Status { Null, Ready, Loading, Error };
    Q_ENUM(Status)

    explicit QDeclarativeView(QWidget *parent = nullptr);
    explicit QDeclarativeView(const QUrl &source, QWidget *parent = nullptr);
    ~QDeclarativeView() override;

    /** The QML file shown. Setting it loads the file, also when it is the current one. */
    QUrl source() const;
    void setSource(const QUrl &);

    /** The view's engine, owned by the view. */
    QDeclarativeEngine *engine() const;

    /** The context in which the root object is made; set context properties here before setSource(). */
    QDeclarativeContext *rootContext() const;

    /** The item at the root of the file, or null while there is none. */
    QGraphicsObject *rootObject() const;

    ResizeMode resizeMode() const;
    void setResizeMode(ResizeMode);

    Status status() const;

    /** What went wrong when status() is Error, in file order. */
    QList<QDeclarativeError> errors() const;

    /** The root object's size, else the widget's own hint. */
    QSize sizeHint() const override;

    /** The size of the root object right after loading. */
    QSize initialSize() const;

Q_SIGNALS:
    /** Emitted when the view was resized, after the root object followed it where it has to. */
    void sceneResized(QSize size);
    void statusChanged(QDeclarativeView::Status status);

protected:
    void resizeEvent(QResizeEvent *) override;
    void timerEvent(QTimerEvent *) override;

    /** Puts @p object into the scene as the root; it must be a QGraphicsObject. */
    virtual void setRootObject(QObject *object);

private:
    class Private;
    std::unique_ptr<Private> const d;
};
