#include "qdeclarativetextinput_p_p.h"

#include "engine/qdeclarativerounding_p.h"

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>

QDeclarativeTextInput::QDeclarativeTextInput(QDeclarativeItem *parent)
    : QDeclarativeTextEditor(*new QDeclarativeTextInputPrivate, parent)
{
    d_func()->init();
}

QDeclarativeTextInput::~QDeclarativeTextInput()
{
    Q_D(QDeclarativeTextInput);
    // It goes after this object, which no signal may reach then.
    d->control.disconnect(this);
}

void QDeclarativeTextInputPrivate::init()
{
    Q_Q(QDeclarativeTextInput);
    control.setAccessibleObject(q);
    control.setCursorWidth(cursorWidth);
    control.setPasswordCharacter(QLatin1Char('*'));
    control.setFont(font);
    selectionColor = control.palette().color(QPalette::Highlight);
    selectedTextColor = control.palette().color(QPalette::HighlightedText);
    applyColors();
    QObject::connect(&control, &QWidgetLineControl::displayTextChanged, q, [this] {
        updateLayout();
        Q_EMIT q_func()->displayTextChanged();
    });
    QObject::connect(&control, &QWidgetLineControl::textChanged, q, [this] { textChange(); });
    QObject::connect(&control, &QWidgetLineControl::selectionChanged, q, [this] { selectionChange(); });
    QObject::connect(&control, &QWidgetLineControl::cursorPositionChanged, q, [this] { cursorChange(); });
    QObject::connect(&control, &QWidgetLineControl::accepted, q, &QDeclarativeTextInput::accepted);
    QObject::connect(&control, &QWidgetLineControl::updateNeeded, q, [this](const QRect &rect) {
        if (rect.isEmpty())
            q_func()->update();
        else
            q_func()->updateContents(rect.translated(-scroll, 0));
    });
    QObject::connect(&control, &QWidgetLineControl::updateMicroFocus, q, [this] {
        updateScroll();
        q_func()->updateMicroFocus();
    });
    QObject::connect(&control, &QWidgetLineControl::resetInputContext, q,
                     [] { QGuiApplication::inputMethod()->reset(); });
}

void QDeclarativeTextInputPrivate::textChange()
{
    Q_Q(QDeclarativeTextInput);
    if (updateAlignment()) {
        updateScroll();
        Q_EMIT q->horizontalAlignmentChanged(q->hAlign());
    }
    Q_EMIT q->textChanged();
    noteAcceptable();
}

void QDeclarativeTextInputPrivate::noteAcceptable()
{
    Q_Q(QDeclarativeTextInput);
    if (control.hasAcceptableInput() == wasAcceptable)
        return;
    wasAcceptable = !wasAcceptable;
    Q_EMIT q->acceptableInputChanged();
}

void QDeclarativeTextInputPrivate::cursorChange()
{
    Q_Q(QDeclarativeTextInput);
    beyond = -1;
    updateScroll();
    q->update();
    Q_EMIT q->cursorPositionChanged();
    if (!control.hasSelectedText())
        noteSelectionEnds();
}

void QDeclarativeTextInputPrivate::selectionChange()
{
    Q_Q(QDeclarativeTextInput);
    q->update();
    Q_EMIT q->selectedTextChanged();
    noteSelectionEnds();
}

void QDeclarativeTextInputPrivate::noteSelectionEnds()
{
    Q_Q(QDeclarativeTextInput);
    const bool selects = control.hasSelectedText();
    const int start = selects ? control.selectionStart() : q->cursorPosition();
    const int end = selects && beyond < 0 ? control.selectionEnd() : q->cursorPosition();
    if (start != lastSelectionStart) {
        lastSelectionStart = start;
        Q_EMIT q->selectionStartChanged();
    }
    if (end != lastSelectionEnd) {
        lastSelectionEnd = end;
        Q_EMIT q->selectionEndChanged();
    }
}

void QDeclarativeTextInputPrivate::moveCursor(int position, bool selects)
{
    control.moveCursor(position, selects);
    forgetBeyond();
}

/** Says that the cursor is where it is again. */
void QDeclarativeTextInputPrivate::forgetBeyond()
{
    if (beyond >= 0)
        cursorChange();
}

void QDeclarativeTextInputPrivate::applyFont()
{
    control.setFont(font);
    updateLayout();
}

void QDeclarativeTextInputPrivate::applyColors()
{
    QPalette palette = control.palette();
    palette.setColor(QPalette::Text, color);
    palette.setColor(QPalette::Highlight, selectionColor);
    palette.setColor(QPalette::HighlightedText, selectedTextColor);
    control.setPalette(palette);
}

void QDeclarativeTextInputPrivate::applyInteraction()
{
    control.setReadOnly(readOnly);
}

void QDeclarativeTextInputPrivate::applyCursor()
{
    control.setBlinkingCursorEnabled(blinks());
    // Shows a cursor that does not blink, which has gone out perhaps when it did.
    control.updateCursorBlinking();
}

QString QDeclarativeTextInputPrivate::plainText() const
{
    return control.surroundingText();
}

bool QDeclarativeTextInputPrivate::takesClipboard() const
{
    return !readOnly && !QGuiApplication::clipboard()->text().isEmpty();
}

bool QDeclarativeTextInputPrivate::composes() const
{
    return control.composeMode();
}

void QDeclarativeTextInputPrivate::leaveFocus()
{
    control.commitPreedit();
    noteComposing();
    control.updatePasswordEchoEditing(false);
    control.deselect();
}

void QDeclarativeTextInputPrivate::focusOnPressChange()
{
    Q_Q(QDeclarativeTextInput);
    Q_EMIT q->activeFocusOnPressChanged(focusOnPress);
}

Qt::InputMethodHints QDeclarativeTextInputPrivate::effectiveHints() const
{
    if (control.echoMode() == QDeclarativeTextInput::Normal)
        return hints;
    Qt::InputMethodHints secret =
        Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText;
    // What is typed may be seen while it is, so the input method need not hide it.
    if (control.echoMode() == QDeclarativeTextInput::PasswordEchoOnEdit)
        secret &= ~Qt::ImhHiddenText;
    return hints | secret;
}

QString QDeclarativeTextInput::text() const
{
    return d_func()->control.text();
}

void QDeclarativeTextInput::setText(const QString &text)
{
    Q_D(QDeclarativeTextInput);
    if (text != this->text())
        d->control.setText(text);
}

QDeclarativeTextInput::HAlignment QDeclarativeTextInput::hAlign() const
{
    return HAlignment(d_func()->alignment);
}

void QDeclarativeTextInput::setHAlign(HAlignment alignment)
{
    Q_D(QDeclarativeTextInput);
    const bool changed = alignment != d->alignment;
    d->alignmentIsSet = true;
    d->alignment = alignment;
    d->updateScroll();
    if (changed)
        Q_EMIT horizontalAlignmentChanged(alignment);
}

void QDeclarativeTextInput::resetHAlign()
{
    Q_D(QDeclarativeTextInput);
    d->alignmentIsSet = false;
    const bool changed = d->updateAlignment();
    d->updateScroll();
    if (changed)
        Q_EMIT horizontalAlignmentChanged(hAlign());
}

QString QDeclarativeTextInput::selectedText() const
{
    return d_func()->control.selectedText();
}

int QDeclarativeTextInput::maxLength() const
{
    return d_func()->control.maxLength();
}

void QDeclarativeTextInput::setMaxLength(int length)
{
    Q_D(QDeclarativeTextInput);
    if (length == d->control.maxLength() || length < 0)
        return;
    d->control.setMaxLength(length);
    Q_EMIT maximumLengthChanged(length);
}

QValidator *QDeclarativeTextInput::validator() const
{
    return const_cast<QValidator *>(d_func()->control.validator());
}

void QDeclarativeTextInput::setValidator(QValidator *validator)
{
    Q_D(QDeclarativeTextInput);
    if (validator == d->control.validator())
        return;
    d->control.setValidator(validator);
    d->noteAcceptable();
    Q_EMIT validatorChanged();
}

QString QDeclarativeTextInput::inputMask() const
{
    return d_func()->control.inputMask();
}

void QDeclarativeTextInput::setInputMask(const QString &mask)
{
    Q_D(QDeclarativeTextInput);
    if (mask == d->control.inputMask())
        return;
    d->control.setInputMask(mask);
    d->noteAcceptable();
    Q_EMIT inputMaskChanged(d->control.inputMask());
}

bool QDeclarativeTextInput::hasAcceptableInput() const
{
    return d_func()->control.hasAcceptableInput();
}

QDeclarativeTextInput::EchoMode QDeclarativeTextInput::echoMode() const
{
    return EchoMode(d_func()->control.echoMode());
}

void QDeclarativeTextInput::setEchoMode(EchoMode mode)
{
    Q_D(QDeclarativeTextInput);
    if (mode == echoMode())
        return;
    Q_EMIT textChanged();
    d->control.setEchoMode(mode);
    d->updateInputMethod();
    d->updateLayout();
    Q_EMIT echoModeChanged(mode);
}

QString QDeclarativeTextInput::passwordCharacter() const
{
    return d_func()->control.passwordCharacter();
}

void QDeclarativeTextInput::setPasswordCharacter(const QString &text)
{
    Q_D(QDeclarativeTextInput);
    if (text.isEmpty() || text.at(0) == d->control.passwordCharacter())
        return;
    d->control.setPasswordCharacter(text.at(0));
    Q_EMIT passwordCharacterChanged();
}

QString QDeclarativeTextInput::displayText() const
{
    return d_func()->control.displayText();
}

bool QDeclarativeTextInput::autoScroll() const
{
    return d_func()->autoScroll;
}

void QDeclarativeTextInput::setAutoScroll(bool scroll)
{
    Q_D(QDeclarativeTextInput);
    if (scroll == d->autoScroll)
        return;
    d->autoScroll = scroll;
    d->updateScroll();
    Q_EMIT autoScrollChanged(scroll);
}

int QDeclarativeTextInput::cursorPosition() const
{
    Q_D(const QDeclarativeTextInput);
    return d->beyond < 0 ? d->control.cursor() : d->beyond;
}

void QDeclarativeTextInput::setCursorPosition(int position)
{
    Q_D(QDeclarativeTextInput);
    // Blanks of a mask are no text that the cursor could be put behind.
    if (position >= 0 && position <= text().length())
        d->moveCursor(position);
}

int QDeclarativeTextInput::selectionStart() const
{
    return d_func()->lastSelectionStart;
}

int QDeclarativeTextInput::selectionEnd() const
{
    return d_func()->lastSelectionEnd;
}

void QDeclarativeTextInput::selectAll()
{
    Q_D(QDeclarativeTextInput);
    d->control.setSelection(0, text().length());
}

void QDeclarativeTextInput::selectWord()
{
    Q_D(QDeclarativeTextInput);
    d->control.selectWordAtPos(d->control.cursor());
}

void QDeclarativeTextInput::select(int start, int end)
{
    const int length = text().length();
    if (start >= 0 && end >= 0 && start <= length && end <= length)
        setSelection(start, end);
}

void QDeclarativeTextInput::setSelection(int anchor, int pos)
{
    Q_D(QDeclarativeTextInput);
    d->control.setSelection(anchor, pos - anchor);
    d->forgetBeyond();
}

void QDeclarativeTextInput::selectBeyond(int pos)
{
    Q_D(QDeclarativeTextInput);
    if (pos == d->beyond)
        return;
    // QML 1 says where it was asked to, and shows the end of the text.
    d->control.moveCursor(d->control.end(), true);
    d->beyond = pos;
    Q_EMIT cursorPositionChanged();
    d->noteSelectionEnds();
}

void QDeclarativeTextInput::deselect()
{
    d_func()->control.deselect();
}

void QDeclarativeTextInput::cut()
{
    Q_D(QDeclarativeTextInput);
    if (d->isRefused("cut") || d->readOnly || !d->control.hasSelectedText() || echoMode() != Normal)
        return;
    d->control.copy();
    d->control.del();
}

void QDeclarativeTextInput::copy()
{
    Q_D(QDeclarativeTextInput);
    if (!d->isRefused("copy"))
        d->control.copy();
}

void QDeclarativeTextInput::paste()
{
    Q_D(QDeclarativeTextInput);
    if (!d->isRefused("paste") && !d->readOnly)
        d->control.paste();
}

void QDeclarativeTextInput::componentComplete()
{
    Q_D(QDeclarativeTextInput);
    QDeclarativeTextEditor::componentComplete();
    d->updateAlignment();
    // What does not fit begins with its last letter at the right, not with the cursor's place there.
    if (d->autoScroll && d->control.cursor() == d->control.end())
        d->scroll = QDeclarativeRounding::bounded(d->control.cursorToX());
    d->updateLayout();
}

#include "moc_qdeclarativetextinput_p.cpp"
