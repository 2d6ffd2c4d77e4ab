#pragma once

#include <QtDeclarative/qdeclarative.h>

#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsView>

#include <memory>

/**
 * A widget that shows a QML 1 user interface in a scene of its own.
 *
 * The view owns its engine, its scene and the root object. A host that wants the root object in a scene of
 * its own calls setScene() before setSource(). GUI thread only.
 */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeView : public QGraphicsView
{
    Q_OBJECT
    /** Which of view and root object takes the other's size. */
    Q_PROPERTY(ResizeMode resizeMode READ resizeMode WRITE setResizeMode)
    /** How far loading has come. */
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    /** The QML file shown. */
    Q_PROPERTY(QUrl source READ source WRITE setSource DESIGNABLE true)
    /** The widget's style sheet, which can name pictures. */
    Q_PROPERTY(QString styleSheet READ styleSheet WRITE setStyleSheet)

public:
    /** Which of view and root object takes the other's size. */
    enum ResizeMode {
        SizeViewToRootObject, ///< the view takes the root object's size, also none, whenever that changes
        SizeRootObjectToView, ///< the view begins with the root object's size; later that takes the view's
    };
    Q_ENUM(ResizeMode)
    /** How far loading has come. */
    enum Status {
        Null, ///< no file is set
        Ready, ///< the root object is there
        Loading, ///< the file or something it needs is on its way
        Error, ///< there is no root object, and errors() says why
    };
    Q_ENUM(Status)

    /** Makes a view that shows nothing inside @p parent, if there is one. */
    explicit QDeclarativeView(QWidget *parent = nullptr);

    /** Makes a view inside @p parent, if there is one, and loads @p source. */
    explicit QDeclarativeView(const QUrl &source, QWidget *parent = nullptr);

    /** Deletes everything of the view; where a script of it is on the stack, what that needs goes later. */
    ~QDeclarativeView() override;

    /** Returns the QML file shown, empty at first. */
    QUrl source() const;

    /**
     * Deletes the root object and loads @p url, also when it is the current file. Emits statusChanged(); a
     * file over the network is ready later. While a script of the view is on the stack, all that waits until
     * it has returned.
     */
    void setSource(const QUrl &url);

    /** The view's engine, owned by the view. */
    QDeclarativeEngine *engine() const;

    /** The context in which the root object is made; set context properties here before setSource(). */
    QDeclarativeContext *rootContext() const;

    /** The item at the root of the file, or null while there is none. */
    QGraphicsObject *rootObject() const;

    /** Returns which of view and root object takes the other's size; the view does at first. */
    ResizeMode resizeMode() const;

    /** Sets which of view and root object takes the other's size, and sees to it at once. */
    void setResizeMode(ResizeMode mode);

    /** Returns how far loading has come. */
    Status status() const;

    /** What went wrong when status() is Error, in file order. */
    QList<QDeclarativeError> errors() const;

    /** The root object's size, else the widget's own hint. */
    QSize sizeHint() const override;

    /** The size of the root object right after loading. */
    QSize initialSize() const;

public Q_SLOTS:
    /** Sets the widget's style sheet, which is refused while the engine has a guard. */
    void setStyleSheet(const QString &styleSheet);

Q_SIGNALS:
    /** Emitted when the view was resized, after the root object followed it where it has to. */
    void sceneResized(QSize size);

    /** Emitted when loading came to @p status. */
    void statusChanged(QDeclarativeView::Status status);

protected:
    /** Shows the view's tool tip and help, unless they are rich texts and the engine has a guard. */
    bool event(QEvent *event) override;

    /** Resizes the root object where it follows the view, and emits sceneResized(). */
    void resizeEvent(QResizeEvent *event) override;

    /** Paints the scene; on a screen that is scaled, pictures are smoothed whatever their items say. */
    void paintEvent(QPaintEvent *event) override;

    /** Takes over the root object's new size, once for all changes of a turn. */
    void timerEvent(QTimerEvent *event) override;

    /**
     * Puts @p object into the view's scene as the root.
     *
     * An object that is no QGraphicsObject is deleted, with a warning; the view is ready then, and shows
     * nothing.
     */
    virtual void setRootObject(QObject *object);

private:
    class Private;
    std::unique_ptr<Private> d;
};
