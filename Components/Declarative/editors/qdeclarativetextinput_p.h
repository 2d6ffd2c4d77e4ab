#pragma once

#include "qdeclarativetexteditor_p.h"

#include <QtGui/QValidator>

class QDeclarativeTextInputPrivate;

/**
 * Edits one line of text.
 *
 * A text wider than the item is scrolled so that the cursor is seen, unless autoScroll is off. Losing the
 * active focus drops the selection. selectionStart and selectionEnd are those of the last change that was
 * announced: undoing a removal selects what came back without one.
 */
class QDeclarativeTextInput : public QDeclarativeTextEditor
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(HAlignment horizontalAlignment READ hAlign WRITE setHAlign RESET resetHAlign NOTIFY
                   horizontalAlignmentChanged)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectedTextChanged)
    Q_PROPERTY(int maximumLength READ maxLength WRITE setMaxLength NOTIFY maximumLengthChanged)
    Q_PROPERTY(QValidator *validator READ validator WRITE setValidator NOTIFY validatorChanged)
    Q_PROPERTY(QString inputMask READ inputMask WRITE setInputMask NOTIFY inputMaskChanged)
    Q_PROPERTY(bool acceptableInput READ hasAcceptableInput NOTIFY acceptableInputChanged)
    Q_PROPERTY(EchoMode echoMode READ echoMode WRITE setEchoMode NOTIFY echoModeChanged)
    Q_PROPERTY(QString passwordCharacter READ passwordCharacter WRITE setPasswordCharacter NOTIFY
                   passwordCharacterChanged)
    Q_PROPERTY(QString displayText READ displayText NOTIFY displayTextChanged)
    Q_PROPERTY(
        bool activeFocusOnPress READ focusOnPress WRITE setFocusOnPress NOTIFY activeFocusOnPressChanged)
    Q_PROPERTY(bool autoScroll READ autoScroll WRITE setAutoScroll NOTIFY autoScrollChanged)

public:
    enum EchoMode { Normal, NoEcho, Password, PasswordEchoOnEdit };
    Q_ENUM(EchoMode)
    enum HAlignment {
        AlignLeft = Qt::AlignLeft,
        AlignRight = Qt::AlignRight,
        AlignHCenter = Qt::AlignHCenter
    };
    Q_ENUM(HAlignment)
    enum CursorPosition { CursorBetweenCharacters, CursorOnCharacter };
    Q_ENUM(CursorPosition)

    explicit QDeclarativeTextInput(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeTextInput() override;

    /** Without the blanks of an input mask. Setting it puts the cursor at the end. */
    QString text() const;
    void setText(const QString &);
    HAlignment hAlign() const;
    void setHAlign(HAlignment);
    void resetHAlign();
    QString selectedText() const;
    /** With an input mask, its length. */
    int maxLength() const;
    void setMaxLength(int);
    QValidator *validator() const;
    void setValidator(QValidator *);
    /** Taking it away takes the text away. */
    QString inputMask() const;
    void setInputMask(const QString &);
    bool hasAcceptableInput() const;
    EchoMode echoMode() const;
    void setEchoMode(EchoMode);
    /** One character; of more, the first. */
    QString passwordCharacter() const;
    void setPasswordCharacter(const QString &);
    QString displayText() const;
    bool autoScroll() const;
    void setAutoScroll(bool);

    int cursorPosition() const override;
    void setCursorPosition(int) override;
    int selectionStart() const override;
    int selectionEnd() const override;
    void selectAll() override;
    void selectWord() override;
    void select(int start, int end) override;
    void deselect() override;
    void cut() override;
    void copy() override;
    void paste() override;

    /** The position nearest to @p x, or of the character at @p x. */
    Q_INVOKABLE int positionAt(int x) const;
    Q_REVISION(1) Q_INVOKABLE int positionAt(int x, CursorPosition position) const;
    Q_INVOKABLE QRectF positionToRectangle(int pos) const;

Q_SIGNALS:
    void textChanged();
    void selectedTextChanged();
    /** Return or Enter was pressed on text that is acceptable, also in a read-only item. */
    void accepted();
    void acceptableInputChanged();
    void horizontalAlignmentChanged(QDeclarativeTextInput::HAlignment alignment);
    void maximumLengthChanged(int maximumLength);
    void validatorChanged();
    void inputMaskChanged(const QString &inputMask);
    void echoModeChanged(QDeclarativeTextInput::EchoMode echoMode);
    void passwordCharacterChanged();
    void displayTextChanged();
    void activeFocusOnPressChanged(bool activeFocusOnPress);
    void autoScrollChanged(bool autoScroll);

protected:
    void componentComplete() override;
    void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void drawContents(QPainter *, const QRectF &exposed) override;
    QRectF drawnRect() const override;
    void setSelection(int anchor, int pos) override;
    void selectBeyond(int pos) override;

    void keyPressEvent(QKeyEvent *) override;
    void inputMethodEvent(QInputMethodEvent *) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery) const override;
    void mousePressEvent(QGraphicsSceneMouseEvent *) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *) override;

private:
    Q_DISABLE_COPY(QDeclarativeTextInput)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeTextInput)
};

QML_DECLARE_TYPE(QDeclarativeTextInput)
