#include "qdeclarativetextedit_p_p.h"

#include <QtCore/QSignalBlocker>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtGui/QInputMethodEvent>

QDeclarativeTextEdit::QDeclarativeTextEdit(QDeclarativeItem *parent)
    : QDeclarativeTextEditor(*new QDeclarativeTextEditPrivate(this), parent)
{
    d_func()->init();
}

QDeclarativeTextEdit::~QDeclarativeTextEdit()
{
    Q_D(QDeclarativeTextEdit);
    // They go after this object, which no signal may reach then.
    d->control.disconnect(this);
    d->document.disconnect(this);
}

void QDeclarativeTextEditPrivate::init()
{
    Q_Q(QDeclarativeTextEdit);
    q->setFlag(QGraphicsItem::ItemUsesExtendedStyleOption);
    document.setUndoRedoEnabled(true);
    document.setDefaultFont(font);
    control.setDragEnabled(false);
    control.setAcceptRichText(false);
    control.setIgnoreUnusedNavigationEvents(true);
    applyInteraction();
    applyColors();
    QObject::connect(&control, &QWidgetTextControl::textChanged, q, [this] { textChange(); });
    QObject::connect(&control, &QWidgetTextControl::selectionChanged, q, [this] { selectionChange(); });
    QObject::connect(&control, &QWidgetTextControl::cursorPositionChanged, q, [this] { cursorChange(); });
    QObject::connect(&control, &QWidgetTextControl::microFocusChanged, q, [this] { cursorRectChange(); });
    QObject::connect(&control, &QWidgetTextControl::linkActivated, q, &QDeclarativeTextEdit::linkActivated);
    QObject::connect(&control, &QWidgetTextControl::updateRequest, q, [this](const QRectF &rect) {
        if (rect.isValid())
            q_func()->updateContents(rect.translated(0, offset));
        else
            q_func()->update();
    });
    QObject::connect(&document, &QDeclarativeTextDocument::loaded, q, [this] { updateLayout(); });
}

bool QDeclarativeTextEditPrivate::isMarkup(const QString &text) const
{
    return format == QDeclarativeTextEdit::RichText
        || (format == QDeclarativeTextEdit::AutoText && Qt::mightBeRichText(text));
}

void QDeclarativeTextEditPrivate::takeText(const QString &text)
{
    isRich = isMarkup(text);
    control.setAcceptRichText(isRich);
    if (isRich)
        control.setHtml(document.bounded(text));
    else
        control.setPlainText(text);
}

void QDeclarativeTextEditPrivate::textChange()
{
    Q_Q(QDeclarativeTextEdit);
    const bool realigned = updateAlignment();
    updateLayout();
    if (!componentIsComplete) {
        // Counted now too, so that only those lines are announced later that the item's width makes.
        document.size();
        updateLineCount();
    }
    if (realigned)
        Q_EMIT q->horizontalAlignmentChanged(q->hAlign());
    Q_EMIT q->textChanged(q->text());
}

void QDeclarativeTextEditPrivate::cursorChange()
{
    Q_Q(QDeclarativeTextEdit);
    placeCursorItem();
    Q_EMIT q->cursorPositionChanged();
    noteSelectionEnds();
}

void QDeclarativeTextEditPrivate::cursorRectChange()
{
    Q_Q(QDeclarativeTextEdit);
    lastCursorRect = q->cursorRectangle();
    placeCursorItem();
    q->updateMicroFocus();
    Q_EMIT q->cursorRectangleChanged();
}

void QDeclarativeTextEditPrivate::selectionChange()
{
    Q_Q(QDeclarativeTextEdit);
    Q_EMIT q->selectionChanged();
    noteSelectionEnds();
}

void QDeclarativeTextEditPrivate::noteSelectionEnds()
{
    Q_Q(QDeclarativeTextEdit);
    if (q->selectionStart() != lastSelectionStart) {
        lastSelectionStart = q->selectionStart();
        Q_EMIT q->selectionStartChanged();
    }
    if (q->selectionEnd() != lastSelectionEnd) {
        lastSelectionEnd = q->selectionEnd();
        Q_EMIT q->selectionEndChanged();
    }
}

void QDeclarativeTextEditPrivate::applyFont()
{
    document.setDefaultFont(font);
    updateLayout();
}

void QDeclarativeTextEditPrivate::applyColors()
{
    QPalette palette = control.palette();
    palette.setColor(QPalette::Text, color);
    if (selectionColor.isValid())
        palette.setColor(QPalette::Highlight, selectionColor);
    if (selectedTextColor.isValid())
        palette.setColor(QPalette::HighlightedText, selectedTextColor);
    control.setPalette(palette);
}

void QDeclarativeTextEditPrivate::applyInteraction()
{
    Qt::TextInteractionFlags flags = Qt::LinksAccessibleByMouse;
    if (!readOnly)
        flags |= Qt::TextSelectableByKeyboard | Qt::TextEditable;
    if (selectByMouse)
        flags |= Qt::TextSelectableByMouse;
    control.setTextInteractionFlags(flags);
    control.setWordSelectionEnabled(mouseSelectionMode == QDeclarativeTextEditor::SelectWords);
}

void QDeclarativeTextEditPrivate::applyCursor()
{
    if (blinks() == controlBlinks)
        return;
    controlBlinks = !controlBlinks;
    QFocusEvent event(controlBlinks ? QEvent::FocusIn : QEvent::FocusOut, Qt::OtherFocusReason);
    control.processEvent(&event);
}

QString QDeclarativeTextEditPrivate::plainText() const
{
    return document.toPlainText();
}

bool QDeclarativeTextEditPrivate::takesClipboard() const
{
    return control.canPaste();
}

bool QDeclarativeTextEditPrivate::composes() const
{
    return control.isPreediting();
}

void QDeclarativeTextEditPrivate::endComposing()
{
    if (!control.isPreediting())
        return;
    QGuiApplication::inputMethod()->commit();
    // What the input method does not enter goes.
    if (control.isPreediting()) {
        QInputMethodEvent nothing;
        process(&nothing);
    }
    updateLayout();
}

void QDeclarativeTextEditPrivate::leaveFocus()
{
    Q_Q(QDeclarativeTextEdit);
    endComposing();
    QTextCursor cursor = control.textCursor();
    if (persistentSelection || !cursor.hasSelection())
        return;
    cursor.clearSelection();
    {
        const QSignalBlocker blocker(control);
        control.setTextCursor(cursor);
    }
    q->update();
    noteSelectionEnds();
}

void QDeclarativeTextEditPrivate::focusOnPressChange()
{
    Q_Q(QDeclarativeTextEdit);
    Q_EMIT q->activeFocusOnPressChanged(focusOnPress);
}

QString QDeclarativeTextEdit::text() const
{
    Q_D(const QDeclarativeTextEdit);
    if (!d->componentIsComplete)
        return d->givenText;
    return d->isRich ? d->document.toHtml() : d->document.toPlainText();
}

void QDeclarativeTextEdit::setText(const QString &text)
{
    Q_D(QDeclarativeTextEdit);
    if (text == this->text())
        return;
    if (!d->componentIsComplete)
        d->givenText = text;
    d->takeText(text);
    Q_EMIT textChanged(text);
}

QDeclarativeTextEdit::HAlignment QDeclarativeTextEdit::hAlign() const
{
    return HAlignment(d_func()->alignment);
}

void QDeclarativeTextEdit::setHAlign(HAlignment alignment)
{
    Q_D(QDeclarativeTextEdit);
    const bool changed = alignment != d->alignment;
    d->alignmentIsSet = true;
    d->alignment = alignment;
    d->updateLayout();
    if (changed)
        Q_EMIT horizontalAlignmentChanged(alignment);
}

void QDeclarativeTextEdit::resetHAlign()
{
    Q_D(QDeclarativeTextEdit);
    d->alignmentIsSet = false;
    const bool changed = d->updateAlignment();
    d->updateLayout();
    if (changed)
        Q_EMIT horizontalAlignmentChanged(hAlign());
}

QDeclarativeTextEdit::VAlignment QDeclarativeTextEdit::vAlign() const
{
    return d_func()->vAlign;
}

void QDeclarativeTextEdit::setVAlign(VAlignment alignment)
{
    Q_D(QDeclarativeTextEdit);
    if (alignment == d->vAlign)
        return;
    d->vAlign = alignment;
    d->updateLayout();
    Q_EMIT verticalAlignmentChanged(alignment);
}

QDeclarativeTextEdit::WrapMode QDeclarativeTextEdit::wrapMode() const
{
    return d_func()->wrapMode;
}

void QDeclarativeTextEdit::setWrapMode(WrapMode mode)
{
    Q_D(QDeclarativeTextEdit);
    if (mode == d->wrapMode)
        return;
    d->wrapMode = mode;
    d->updateLayout();
    Q_EMIT wrapModeChanged();
}

int QDeclarativeTextEdit::lineCount() const
{
    return d_func()->lineCount;
}

qreal QDeclarativeTextEdit::paintedWidth() const
{
    return d_func()->paintedSize.width();
}

qreal QDeclarativeTextEdit::paintedHeight() const
{
    return d_func()->paintedSize.height();
}

QDeclarativeTextEdit::TextFormat QDeclarativeTextEdit::textFormat() const
{
    return d_func()->format;
}

void QDeclarativeTextEdit::setTextFormat(TextFormat format)
{
    Q_D(QDeclarativeTextEdit);
    if (format == d->format)
        return;
    d->format = format;
    const QString text = this->text();
    if (d->isMarkup(text) != d->isRich)
        d->takeText(text);
    Q_EMIT textFormatChanged(format);
}

QString QDeclarativeTextEdit::selectedText() const
{
    return d_func()->control.textCursor().selectedText();
}

bool QDeclarativeTextEdit::persistentSelection() const
{
    return d_func()->persistentSelection;
}

void QDeclarativeTextEdit::setPersistentSelection(bool persistent)
{
    Q_D(QDeclarativeTextEdit);
    if (persistent == d->persistentSelection)
        return;
    d->persistentSelection = persistent;
    Q_EMIT persistentSelectionChanged(persistent);
}

qreal QDeclarativeTextEdit::textMargin() const
{
    return d_func()->document.documentMargin();
}

void QDeclarativeTextEdit::setTextMargin(qreal margin)
{
    Q_D(QDeclarativeTextEdit);
    if (margin == textMargin())
        return;
    d->document.setDocumentMargin(margin);
    d->updateLayout();
    Q_EMIT textMarginChanged(margin);
}

int QDeclarativeTextEdit::cursorPosition() const
{
    return d_func()->control.textCursor().position();
}

void QDeclarativeTextEdit::setCursorPosition(int position)
{
    Q_D(QDeclarativeTextEdit);
    const QTextCursor cursor = d->control.textCursor();
    const bool isThere = cursor.position() == position && cursor.anchor() == position;
    if (position >= 0 && position <= d->endPosition() && !isThere)
        setSelection(position, position);
}

int QDeclarativeTextEdit::selectionStart() const
{
    return d_func()->control.textCursor().selectionStart();
}

int QDeclarativeTextEdit::selectionEnd() const
{
    return d_func()->control.textCursor().selectionEnd();
}

void QDeclarativeTextEdit::selectAll()
{
    d_func()->control.selectAll();
}

void QDeclarativeTextEdit::selectWord()
{
    Q_D(QDeclarativeTextEdit);
    QTextCursor cursor = d->control.textCursor();
    cursor.select(QTextCursor::WordUnderCursor);
    d->control.setTextCursor(cursor);
}

void QDeclarativeTextEdit::select(int start, int end)
{
    const int last = d_func()->endPosition();
    if (start < 0 || end < 0 || start > last || end > last)
        return;
    Q_EMIT textChanged(text());
    setSelection(start, end);
}

void QDeclarativeTextEdit::setSelection(int anchor, int pos)
{
    Q_D(QDeclarativeTextEdit);
    QTextCursor cursor = d->control.textCursor();
    cursor.setPosition(anchor);
    cursor.setPosition(pos, QTextCursor::KeepAnchor);
    d->control.setTextCursor(cursor);
}

void QDeclarativeTextEdit::deselect()
{
    Q_D(QDeclarativeTextEdit);
    QTextCursor cursor = d->control.textCursor();
    cursor.clearSelection();
    d->control.setTextCursor(cursor);
}

void QDeclarativeTextEdit::cut()
{
    Q_D(QDeclarativeTextEdit);
    if (!d->isRefused("cut"))
        d->control.cut();
}

void QDeclarativeTextEdit::copy()
{
    Q_D(QDeclarativeTextEdit);
    if (!d->isRefused("copy"))
        d->control.copy();
}

void QDeclarativeTextEdit::paste()
{
    Q_D(QDeclarativeTextEdit);
    if (!d->isRefused("paste"))
        d->control.paste();
}

void QDeclarativeTextEdit::componentComplete()
{
    Q_D(QDeclarativeTextEdit);
    QDeclarativeTextEditor::componentComplete();
    d->givenText.clear();
    d->updateAlignment();
    d->updateLayout();
    d->placeCursorItem();
}

#include "moc_qdeclarativetextedit_p.cpp"
