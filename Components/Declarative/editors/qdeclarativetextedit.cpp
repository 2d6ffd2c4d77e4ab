#include "qdeclarativetextedit_p_p.h"

#include "engine/qdeclarativerounding_p.h"

#include <QtCore/QScopedValueRollback>
#include <QtCore/QSignalBlocker>
#include <QtCore/QtMath>
#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QFontMetrics>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QPainter>
#include <QtGui/QTextBlock>

#include <utility>

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

void QDeclarativeTextEditPrivate::updateLayout()
{
    Q_Q(QDeclarativeTextEdit);
    if (!componentIsComplete || isSizing)
        return;
    q->prepareGeometryChange();
    layOut();
    updateSizes();
    q->update();
}

void QDeclarativeTextEditPrivate::layOut()
{
    // Absolute, or the layout would turn it round again for text that runs from right to left.
    QTextOption option(effectiveAlignment() | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapMode(wrapMode));
    const QTextOption before = document.defaultTextOption();
    if (option.alignment() != before.alignment() || option.wrapMode() != before.wrapMode())
        document.setDefaultTextOption(option);
    if (widthIsSet) {
        document.setTextWidth(itemWidth);
        return;
    }
    document.setTextWidth(-1);
    // The lines are aligned in a width that is no less than the longest of them.
    if (!(option.alignment() & Qt::AlignLeft))
        document.setTextWidth(qCeil(document.idealWidth()));
}

void QDeclarativeTextEditPrivate::updateSizes()
{
    Q_Q(QDeclarativeTextEdit);
    const qreal ideal = document.idealWidth();
    const QSizeF painted(qCeil(ideal), QDeclarativeRounding::bounded(document.size().height()));
    {
        const QScopedValueRollback<bool> sizing(isSizing, true);
        q->setImplicitWidth(widthIsSet ? naturalWidth() : painted.width());
        q->setImplicitHeight(painted.height());
    }
    q->setContentsSize(QDeclarativeRounding::bounded(painted));
    updateOffset();
    updateLineCount();
    if (painted != paintedSize) {
        paintedSize = painted;
        Q_EMIT q->paintedSizeChanged();
    }
}

void QDeclarativeTextEditPrivate::updateLineCount()
{
    Q_Q(QDeclarativeTextEdit);
    int lines = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        lines += block.layout()->lineCount();
    if (lines == lineCount)
        return;
    lineCount = lines;
    if (componentIsComplete)
        Q_EMIT q->lineCountChanged();
}

void QDeclarativeTextEditPrivate::updateOffset()
{
    Q_Q(QDeclarativeTextEdit);
    const qreal room = heightIsSet ? itemHeight - QDeclarativeRounding::bounded(document.size().height()) : 0;
    qreal to = 0;
    if (vAlign == QDeclarativeTextEdit::AlignBottom)
        to = int(room);
    else if (vAlign == QDeclarativeTextEdit::AlignVCenter)
        to = int(room / 2);
    if (to != offset) {
        q->prepareGeometryChange();
        offset = to;
        q->update();
    }
    q->setBaselineOffset(QFontMetrics(font).ascent() + offset + document.documentMargin());
    noteCursor();
}

qreal QDeclarativeTextEditPrivate::naturalWidth()
{
    const qreal width = document.textWidth();
    if (wrapMode == QDeclarativeTextEdit::NoWrap || !implicitWidthIsRead)
        return document.idealWidth();
    document.setTextWidth(-1);
    const qreal natural = document.idealWidth();
    document.setTextWidth(width);
    return natural;
}

qreal QDeclarativeTextEditPrivate::implicitWidth() const
{
    // Wrapped text is laid out a second time for the width it would have, but only if that is asked for.
    if (!implicitWidthIsRead) {
        auto *self = const_cast<QDeclarativeTextEditPrivate *>(this);
        self->implicitWidthIsRead = true;
        if (wrapMode != QDeclarativeTextEdit::NoWrap)
            self->updateLayout();
    }
    return itemImplicitWidth;
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
        control.setHtml(text);
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

QRectF QDeclarativeTextEditPrivate::exactCursorRect() const
{
    return control.cursorRect().translated(0, offset);
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

void QDeclarativeTextEditPrivate::mirrorChange()
{
    QDeclarativeTextEditorPrivate::mirrorChange();
    updateLayout();
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
    d_func()->control.cut();
}

void QDeclarativeTextEdit::copy()
{
    d_func()->control.copy();
}

void QDeclarativeTextEdit::paste()
{
    d_func()->control.paste();
}

int QDeclarativeTextEditPrivate::positionAt(const QPointF &point) const
{
    const QAbstractTextDocumentLayout *layout = document.documentLayout();
    const int position = layout->hitTest(point, Qt::FuzzyHit);
    const QTextCursor cursor = control.textCursor();
    const QRectF paragraph = layout->blockBoundingRect(cursor.block());
    if (position <= cursor.position() || point.y() < paragraph.top() || point.y() >= paragraph.bottom())
        return position;
    // What is being composed is shown at the cursor but not part of the text yet.
    const int composed = cursor.block().layout()->preeditAreaText().length();
    return qMax(cursor.position(), position - composed);
}

QRectF QDeclarativeTextEdit::positionToRectangle(int position) const
{
    Q_D(const QDeclarativeTextEdit);
    QTextCursor cursor(const_cast<QDeclarativeTextDocument *>(&d->document));
    cursor.setPosition(position);
    return d->control.cursorRect(cursor).translated(0, d->offset);
}

int QDeclarativeTextEdit::positionAt(int x, int y) const
{
    Q_D(const QDeclarativeTextEdit);
    return d->positionAt(QPointF(x, y - d->offset));
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

void QDeclarativeTextEdit::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    Q_D(QDeclarativeTextEdit);
    if (newGeometry.width() != oldGeometry.width())
        d->updateLayout();
    else if (newGeometry.height() != oldGeometry.height() && d->componentIsComplete && !d->isSizing)
        d->updateOffset();
    QDeclarativeTextEditor::geometryChanged(newGeometry, oldGeometry);
}

QRectF QDeclarativeTextEdit::boundingRect() const
{
    Q_D(const QDeclarativeTextEdit);
    // What is above a text that stands lower is left to what is below the item.
    QRectF rect = QDeclarativeTextEditor::boundingRect();
    if (!clip() && d->fillColor.alpha() == 0)
        rect.setTop(qMax(rect.top(), d->offset * d->contentsScale));
    return rect;
}

QRectF QDeclarativeTextEdit::drawnRect() const
{
    Q_D(const QDeclarativeTextEdit);
    const QRectF text(QPointF(0, d->offset), d->document.size());
    // Slanted letters reach over the advance of their line, and the cursor stands behind the last one.
    const qreal overhang = d->paintedSize.height() / (4 * qMax(1, d->lineCount)) + d->control.cursorWidth();
    return text.adjusted(-overhang, 0, overhang, 1);
}

void QDeclarativeTextEdit::drawContents(QPainter *painter)
{
    Q_D(QDeclarativeTextEdit);
    auto context = d->control.getPaintContext(nullptr);
    const bool isLit = std::exchange(context.cursorPosition, -1) != -1;
    painter->translate(0, d->offset);
    d->document.documentLayout()->draw(painter, context);
    painter->translate(0, -d->offset);
    d->drawCursor(painter, cursorRectangle(), isLit);
}

#include "moc_qdeclarativetextedit_p.cpp"
