#include "qdeclarativetexteditor_p.h"

#include "engine/qdeclarativerounding_p.h"

#include <QtCore/QTextBoundaryFinder>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtGui/QPainter>
#include <QtGui/QStyleHints>
#include <QtQml/QQmlContext>
#include <QtQml/qqmlinfo.h>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsSceneMouseEvent>
#include <QtWidgets/QStyle>

QDeclarativeTextEditor::QDeclarativeTextEditor(QDeclarativeTextEditorPrivate &dd, QDeclarativeItem *parent)
    : QDeclarativePaintedItem(dd, parent)
{
    Q_D(QDeclarativeTextEditor);
    d->font = QGuiApplication::font();
    setAcceptedMouseButtons(Qt::LeftButton);
    setFlag(ItemAcceptsInputMethod);
}

QDeclarativeTextEditor::~QDeclarativeTextEditor() = default;

void QDeclarativeTextEditorPrivate::activeFocusChange(bool active)
{
    Q_Q(QDeclarativeTextEditor);
    const QPointer<QDeclarativeTextEditor> guard(q);
    // The selection goes before anybody hears of the focus that went, unless that comes back with the window.
    if (!active && (!scene || scene->isActive()))
        leaveFocus();
    if (guard)
        QDeclarativePaintedItemPrivate::activeFocusChange(active);
    if (guard)
        q->setCursorVisible(active);
}

void QDeclarativeTextEditorPrivate::setSceneFocus(bool focus)
{
    hasSceneFocus = focus;
    applyCursor();
}

void QDeclarativeTextEditorPrivate::noteComposing()
{
    Q_Q(QDeclarativeTextEditor);
    if (composes() == wasComposing)
        return;
    wasComposing = !wasComposing;
    Q_EMIT q->inputMethodComposingChanged();
}

void QDeclarativeTextEditorPrivate::noteClipboard()
{
    Q_Q(QDeclarativeTextEditor);
    if (!watchesClipboard || takesClipboard() == couldPaste)
        return;
    couldPaste = !couldPaste;
    Q_EMIT q->canPasteChanged();
}

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

void QDeclarativeTextEditorPrivate::updateInputMethod()
{
    Q_Q(QDeclarativeTextEditor);
    q->setFlag(QGraphicsItem::ItemAcceptsInputMethod, !readOnly);
    q->setInputMethodHints(effectiveHints());
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
    QObject *object = cursorComponent->beginCreate(context ? context : qmlContext(q));
    cursorItem = qobject_cast<QDeclarativeItem *>(object);
    if (cursorItem) {
        cursorItem->QObject::setParent(q);
        cursorItem->setParentItem(q);
        placeCursorItem();
    }
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

bool QDeclarativeTextEditorPrivate::updateAlignment()
{
    if (alignmentIsSet || !componentIsComplete)
        return false;
    const QString text = plainText();
    const bool rightToLeft = text.isEmpty()
        ? QGuiApplication::inputMethod()->inputDirection() == Qt::RightToLeft
        : text.isRightToLeft();
    const int natural = rightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    if (natural == alignment)
        return false;
    alignment = natural;
    return true;
}

Qt::Alignment QDeclarativeTextEditorPrivate::effectiveAlignment() const
{
    // What follows the text stays with it: only alignments that were set are mirrored.
    if (alignmentIsSet && isMirrored() && alignment == Qt::AlignLeft)
        return Qt::AlignRight;
    if (alignmentIsSet && isMirrored() && alignment == Qt::AlignRight)
        return Qt::AlignLeft;
    return Qt::Alignment(alignment);
}

QColor QDeclarativeTextEditor::color() const
{
    return d_func()->color;
}

void QDeclarativeTextEditor::setColor(const QColor &color)
{
    Q_D(QDeclarativeTextEditor);
    if (color == d->color)
        return;
    d->color = color;
    d->applyColors();
    update();
    Q_EMIT colorChanged(color);
}

QColor QDeclarativeTextEditor::selectionColor() const
{
    return d_func()->selectionColor;
}

void QDeclarativeTextEditor::setSelectionColor(const QColor &color)
{
    Q_D(QDeclarativeTextEditor);
    if (color == d->selectionColor)
        return;
    d->selectionColor = color;
    d->applyColors();
    update();
    Q_EMIT selectionColorChanged(color);
}

QColor QDeclarativeTextEditor::selectedTextColor() const
{
    return d_func()->selectedTextColor;
}

void QDeclarativeTextEditor::setSelectedTextColor(const QColor &color)
{
    Q_D(QDeclarativeTextEditor);
    if (color == d->selectedTextColor)
        return;
    d->selectedTextColor = color;
    d->applyColors();
    update();
    Q_EMIT selectedTextColorChanged(color);
}

QFont QDeclarativeTextEditor::font() const
{
    return d_func()->font;
}

void QDeclarativeTextEditor::setFont(const QFont &font)
{
    Q_D(QDeclarativeTextEditor);
    if (font == d->font && font.resolve() == d->font.resolve())
        return;
    d->font = font;
    d->applyFont();
    d->noteCursor();
    Q_EMIT fontChanged(font);
}

bool QDeclarativeTextEditor::isReadOnly() const
{
    return d_func()->readOnly;
}

void QDeclarativeTextEditor::setReadOnly(bool readOnly)
{
    Q_D(QDeclarativeTextEditor);
    if (readOnly == d->readOnly)
        return;
    d->readOnly = readOnly;
    d->applyInteraction();
    d->updateInputMethod();
    d->applyCursor();
    update();
    Q_EMIT readOnlyChanged(readOnly);
    d->noteClipboard();
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

bool QDeclarativeTextEditor::focusOnPress() const
{
    return d_func()->focusOnPress;
}

void QDeclarativeTextEditor::setFocusOnPress(bool focus)
{
    Q_D(QDeclarativeTextEditor);
    if (focus == d->focusOnPress)
        return;
    d->focusOnPress = focus;
    d->focusOnPressChange();
}

Qt::InputMethodHints QDeclarativeTextEditor::imHints() const
{
    return d_func()->hints;
}

void QDeclarativeTextEditor::setImHints(Qt::InputMethodHints hints)
{
    Q_D(QDeclarativeTextEditor);
    d->hints = hints;
    d->updateInputMethod();
}

bool QDeclarativeTextEditor::selectByMouse() const
{
    return d_func()->selectByMouse;
}

void QDeclarativeTextEditor::setSelectByMouse(bool select)
{
    Q_D(QDeclarativeTextEditor);
    if (select == d->selectByMouse)
        return;
    d->selectByMouse = select;
    d->applyInteraction();
    Q_EMIT selectByMouseChanged(select);
}

QDeclarativeTextEditor::SelectionMode QDeclarativeTextEditor::mouseSelectionMode() const
{
    return d_func()->mouseSelectionMode;
}

void QDeclarativeTextEditor::setMouseSelectionMode(SelectionMode mode)
{
    Q_D(QDeclarativeTextEditor);
    if (mode == d->mouseSelectionMode)
        return;
    d->mouseSelectionMode = mode;
    d->applyInteraction();
    Q_EMIT mouseSelectionModeChanged(mode);
}

bool QDeclarativeTextEditor::canPaste() const
{
    Q_D(const QDeclarativeTextEditor);
    if (d->watchesClipboard)
        return d->couldPaste;
    // Asking the clipboard may go to another process, so only an item whose answer is wanted follows it.
    auto *self = const_cast<QDeclarativeTextEditorPrivate *>(d);
    self->watchesClipboard = true;
    self->couldPaste = d->takesClipboard();
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [self] { self->noteClipboard(); });
    return d->couldPaste;
}

bool QDeclarativeTextEditor::isComposing() const
{
    return d_func()->composes();
}

bool QDeclarativeTextEditor::isRightToLeft(int start, int end)
{
    if (start > end) {
        qmlWarning(this)
            << "isRightToLeft(start, end) called with the end property being smaller than the start.";
        return false;
    }
    return d_func()->plainText().mid(start, end - start).isRightToLeft();
}

void QDeclarativeTextEditor::openSoftwareInputPanel()
{
    QGuiApplication::inputMethod()->show();
}

void QDeclarativeTextEditor::closeSoftwareInputPanel()
{
    QGuiApplication::inputMethod()->hide();
}

/** The word boundary at @p position, or the next one in the direction of @p step. */
static int wordBoundary(const QString &text, int position, int step)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    finder.setPosition(position);
    if (finder.isAtBoundary())
        return position;
    const int found = step < 0 ? finder.toPreviousBoundary() : finder.toNextBoundary();
    return found < 0 ? position : found;
}

void QDeclarativeTextEditor::moveCursorSelection(int pos)
{
    moveCursorSelection(pos, SelectCharacters);
}

void QDeclarativeTextEditor::moveCursorSelection(int pos, SelectionMode mode)
{
    const QString text = d_func()->plainText();
    if (pos > text.length() && mode == SelectCharacters)
        return selectBeyond(pos);
    if (pos < 0 || pos > text.length())
        return;
    const int cursor = cursorPosition(), start = selectionStart(), end = selectionEnd();
    const int anchor = qMin(cursor == start ? end : start, text.length());
    if (mode == SelectCharacters) {
        setSelection(anchor, pos);
        return;
    }
    if (start == end && pos == cursor)
        return;
    // The word at the anchor stays selected when the selection changes sides.
    int from = anchor, to = anchor;
    if (start != end && cursor == end)
        to = wordBoundary(text, qMin(anchor + 1, text.length()), 1);
    else if (start != end)
        from = wordBoundary(text, qMax(anchor - 1, 0), -1);
    if (pos < from || (pos == from && cursor < anchor))
        setSelection(wordBoundary(text, to, 1), wordBoundary(text, pos, -1));
    else
        setSelection(wordBoundary(text, from, -1), wordBoundary(text, qMax(pos, to), 1));
}

void QDeclarativeTextEditor::componentComplete()
{
    Q_D(QDeclarativeTextEditor);
    QDeclarativePaintedItem::componentComplete();
    if (d->cursorComponent)
        d->createCursorItem();
}

bool QDeclarativeTextEditor::sceneEvent(QEvent *event)
{
    Q_D(QDeclarativeTextEditor);
    if (event->type() == QEvent::ShortcutOverride)
        return d->processShortcutOverride(static_cast<QKeyEvent *>(event));
    if (event->type() == QEvent::UngrabMouse)
        setKeepMouseGrab(false);
    return QDeclarativePaintedItem::sceneEvent(event);
}

void QDeclarativeTextEditor::focusInEvent(QFocusEvent *event)
{
    d_func()->setSceneFocus(true);
    QDeclarativePaintedItem::focusInEvent(event);
}

void QDeclarativeTextEditor::focusOutEvent(QFocusEvent *event)
{
    d_func()->setSceneFocus(false);
    QDeclarativePaintedItem::focusOutEvent(event);
}

void QDeclarativeTextEditor::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeTextEditor);
    d->pressPosition = event->pos();
    d->hadFocusBeforePress = hasActiveFocus();
    setKeepMouseGrab(false);
    if (d->focusOnPress)
        forceActiveFocus();
}

void QDeclarativeTextEditor::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeTextEditor);
    const QPointF moved = event->pos() - d->pressPosition;
    if (d->selectByMouse && qAbs(moved.x()) > QGuiApplication::styleHints()->startDragDistance())
        setKeepMouseGrab(true);
}

void QDeclarativeTextEditor::mouseReleaseEvent(QGraphicsSceneMouseEvent *)
{
    Q_D(QDeclarativeTextEditor);
    setKeepMouseGrab(false);
    if (!d->focusOnPress || d->readOnly || !hasActiveFocus())
        return;
    const bool atFirstPress =
        QApplication::style()->styleHint(QStyle::SH_RequestSoftwareInputPanel) == QStyle::RSIP_OnMouseClick;
    if (d->hadFocusBeforePress || atFirstPress)
        openSoftwareInputPanel();
}

#include "moc_qdeclarativetexteditor_p.cpp"
