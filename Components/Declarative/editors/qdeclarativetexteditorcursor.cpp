#include "qdeclarativetexteditor_p.h"

#include "engine/qdeclarativerounding_p.h"
#include "guard/qdeclarativeitemcount_p.h"

#include <QtGui/QPainter>
#include <QtQml/QQmlContext>
#include <QtQml/qqmlinfo.h>

void QDeclarativeTextEditorPrivate::noteCursor()
{
    Q_Q(QDeclarativeTextEditor);
    const QRect rect = q->cursorRectangle();
    if (rect == lastCursorRect)
        return;
    lastCursorRect = rect;
    placeCursorItem();
    // Until then nobody has read it.
    if (componentIsComplete)
        Q_EMIT q->cursorRectangleChanged();
}

void QDeclarativeTextEditorPrivate::createCursorItem()
{
    Q_Q(QDeclarativeTextEditor);
    delete cursorItem;
    if (cursorComponent && componentIsComplete) {
        if (cursorComponent->isLoading())
            QObject::connect(cursorComponent, &QQmlComponent::statusChanged, q,
                             [this] { instantiateCursorItem(); });
        else
            instantiateCursorItem();
    }
    applyCursor();
    q->update();
}

void QDeclarativeTextEditorPrivate::instantiateCursorItem()
{
    Q_Q(QDeclarativeTextEditor);
    QObject::disconnect(cursorComponent, &QQmlComponent::statusChanged, q, nullptr);
    if (cursorComponent->isError()) {
        qmlWarning(q, cursorComponent->errors()) << "Could not load cursor delegate";
        return;
    }
    QQmlContext *context = cursorComponent->creationContext();
    QObject *object = nullptr;
    if (QDeclarativeItemCount::admits(cursorComponent))
        object = cursorComponent->beginCreate(context ? context : qmlContext(q));
    cursorItem = qobject_cast<QDeclarativeItem *>(object);
    if (cursorItem) {
        cursorItem->QObject::setParent(q);
        cursorItem->setParentItem(q);
        placeCursorItem();
    }
    // None is begun while the component is at work on another, which stands around this editor.
    if (object)
        cursorComponent->completeCreate();
    if (!cursorItem) {
        delete object;
        qmlWarning(q, cursorComponent->errors()) << "Could not instantiate cursor delegate";
    }
    applyCursor();
}

void QDeclarativeTextEditorPrivate::placeCursorItem()
{
    if (!cursorItem)
        return;
    const QRectF rect = exactCursorRect();
    cursorItem->setPos(rect.topLeft());
    cursorItem->setHeight(rect.height());
}

void QDeclarativeTextEditorPrivate::drawCursor(QPainter *painter, const QRect &rect, bool isLit) const
{
    // Not left to the engines, which turn over what is below: that shows nothing on a translucent window.
    if (paintsCursor() && (isLit || !blinks()))
        painter->fillRect(rect, color);
}

bool QDeclarativeTextEditor::isCursorVisible() const
{
    return d_func()->cursorVisible;
}

void QDeclarativeTextEditor::setCursorVisible(bool visible)
{
    Q_D(QDeclarativeTextEditor);
    if (visible == d->cursorVisible)
        return;
    d->cursorVisible = visible;
    d->applyCursor();
    updateContents(d->exactCursorRect().adjusted(-1, 0, 1, 0));
    Q_EMIT cursorVisibleChanged(visible);
}

QRect QDeclarativeTextEditor::cursorRectangle() const
{
    const QRectF rect = d_func()->exactCursorRect();
    return QRect(QDeclarativeRounding::bounded(rect.x()), QDeclarativeRounding::bounded(rect.y()),
                 QDeclarativeRounding::bounded(rect.width()), QDeclarativeRounding::bounded(rect.height()));
}

QQmlComponent *QDeclarativeTextEditor::cursorDelegate() const
{
    return d_func()->cursorComponent;
}

void QDeclarativeTextEditor::setCursorDelegate(QQmlComponent *component)
{
    Q_D(QDeclarativeTextEditor);
    if (component == d->cursorComponent)
        return;
    if (d->cursorComponent)
        disconnect(d->cursorComponent, &QQmlComponent::statusChanged, this, nullptr);
    d->cursorComponent = component;
    d->createCursorItem();
    Q_EMIT cursorDelegateChanged();
}
