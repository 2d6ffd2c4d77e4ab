#include "qdeclarativetexteditor_p.h"

#include "guard/qdeclarativeguardedfunctions_p.h"

#include <QtCore/QTextBoundaryFinder>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtQml/qqmlinfo.h>

QDeclarativeTextEditor::QDeclarativeTextEditor(QDeclarativeTextEditorPrivate &dd, QDeclarativeItem *parent)
    : QDeclarativePaintedItem(dd, parent)
{
    Q_D(QDeclarativeTextEditor);
    d->font = QGuiApplication::font();
    setAcceptedMouseButtons(Qt::LeftButton);
    setFlag(ItemAcceptsInputMethod);
}

QDeclarativeTextEditor::~QDeclarativeTextEditor() = default;

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

void QDeclarativeTextEditorPrivate::updateInputMethod()
{
    Q_Q(QDeclarativeTextEditor);
    q->setFlag(QGraphicsItem::ItemAcceptsInputMethod, !readOnly);
    q->setInputMethodHints(effectiveHints());
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

// Who presses keys wants what they do, and who wrote the content does not know what the clipboard holds.
bool QDeclarativeTextEditorPrivate::isRefused(const char *function) const
{
    const QString what = QStringLiteral("the clipboard by %1()").arg(QLatin1String(function));
    return QDeclarativeGuardedFunctions::refuses(qmlEngine(q_func()), what);
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

#include "moc_qdeclarativetexteditor_p.cpp"
