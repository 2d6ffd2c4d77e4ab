#pragma once

#include "qdeclarativepainteditem_p.h"

#include <QtCore/QPointer>
#include <QtGui/QFont>
#include <QtQml/QQmlComponent>

class QDeclarativeTextEditorPrivate;

/**
 * What TextInput and TextEdit share: colours, font, the cursor and its delegate, focus and the input method.
 *
 * Positions count UTF-16 units from 0. The cursor is visible while the item has the active focus, or as
 * cursorVisible was set since; it blinks only while keys really come to the item.
 */
class QDeclarativeTextEditor : public QDeclarativePaintedItem
{
    Q_OBJECT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QColor selectionColor READ selectionColor WRITE setSelectionColor NOTIFY selectionColorChanged)
    Q_PROPERTY(QColor selectedTextColor READ selectedTextColor WRITE setSelectedTextColor NOTIFY
                   selectedTextColorChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly NOTIFY readOnlyChanged)
    Q_PROPERTY(bool cursorVisible READ isCursorVisible WRITE setCursorVisible NOTIFY cursorVisibleChanged)
    Q_PROPERTY(int cursorPosition READ cursorPosition WRITE setCursorPosition NOTIFY cursorPositionChanged)
    Q_PROPERTY(QRect cursorRectangle READ cursorRectangle NOTIFY cursorRectangleChanged)
    Q_PROPERTY(QQmlComponent *cursorDelegate READ cursorDelegate WRITE setCursorDelegate NOTIFY
                   cursorDelegateChanged)
    Q_PROPERTY(int selectionStart READ selectionStart NOTIFY selectionStartChanged)
    Q_PROPERTY(int selectionEnd READ selectionEnd NOTIFY selectionEndChanged)
    Q_PROPERTY(Qt::InputMethodHints inputMethodHints READ imHints WRITE setImHints)
    Q_PROPERTY(bool selectByMouse READ selectByMouse WRITE setSelectByMouse NOTIFY selectByMouseChanged)
    Q_PROPERTY(SelectionMode mouseSelectionMode READ mouseSelectionMode WRITE setMouseSelectionMode NOTIFY
                   mouseSelectionModeChanged REVISION 1)
    Q_PROPERTY(bool canPaste READ canPaste NOTIFY canPasteChanged REVISION 1)
    Q_PROPERTY(bool inputMethodComposing READ isComposing NOTIFY inputMethodComposingChanged REVISION 1)

public:
    enum SelectionMode { SelectCharacters, SelectWords };
    Q_ENUM(SelectionMode)

    ~QDeclarativeTextEditor() override;

    QColor color() const;
    void setColor(const QColor &);
    QColor selectionColor() const;
    void setSelectionColor(const QColor &);
    QColor selectedTextColor() const;
    void setSelectedTextColor(const QColor &);
    QFont font() const;
    void setFont(const QFont &);
    bool isReadOnly() const;
    void setReadOnly(bool);
    bool isCursorVisible() const;
    void setCursorVisible(bool);
    virtual int cursorPosition() const = 0;
    /** A position outside the text is ignored. */
    virtual void setCursorPosition(int) = 0;
    QRect cursorRectangle() const;

    /**
     * Makes the item that stands for the cursor; it gets the place and the height of the cursor.
     *
     * Whether it is to be seen, or blinks, is its own affair: it may bind to parent.cursorVisible.
     */
    QQmlComponent *cursorDelegate() const;
    void setCursorDelegate(QQmlComponent *);

    /** Both ends are the cursor's position where nothing is selected. */
    virtual int selectionStart() const = 0;
    virtual int selectionEnd() const = 0;

    bool focusOnPress() const;
    void setFocusOnPress(bool);
    Qt::InputMethodHints imHints() const;
    void setImHints(Qt::InputMethodHints);
    bool selectByMouse() const;
    void setSelectByMouse(bool);
    SelectionMode mouseSelectionMode() const;
    void setMouseSelectionMode(SelectionMode);
    /** Whether the clipboard holds something that the item would take. */
    bool canPaste() const;
    bool isComposing() const;

    Q_INVOKABLE virtual void selectAll() = 0;
    Q_INVOKABLE virtual void selectWord() = 0;
    /** Selects from @p start to @p end, where the cursor goes; ignored if one is outside the text. */
    Q_INVOKABLE virtual void select(int start, int end) = 0;
    Q_REVISION(1) Q_INVOKABLE virtual void deselect() = 0;
    /** Whether the text between @p start and @p end begins with letters that run from right to left. */
    Q_REVISION(1) Q_INVOKABLE bool isRightToLeft(int start, int end);
    Q_INVOKABLE virtual void cut() = 0;
    Q_INVOKABLE virtual void copy() = 0;
    Q_INVOKABLE virtual void paste() = 0;
    Q_INVOKABLE void openSoftwareInputPanel();
    Q_INVOKABLE void closeSoftwareInputPanel();
    /** Moves the cursor to @p pos and that end of the selection with it. */
    Q_INVOKABLE void moveCursorSelection(int pos);
    /** With SelectWords, selects all words between, those partly in the range included. */
    Q_REVISION(1) Q_INVOKABLE void moveCursorSelection(int pos, SelectionMode mode);

Q_SIGNALS:
    void colorChanged(const QColor &color);
    void selectionColorChanged(const QColor &color);
    void selectedTextColorChanged(const QColor &color);
    void fontChanged(const QFont &font);
    void readOnlyChanged(bool isReadOnly);
    void cursorVisibleChanged(bool isCursorVisible);
    void cursorPositionChanged();
    void cursorRectangleChanged();
    void cursorDelegateChanged();
    void selectionStartChanged();
    void selectionEndChanged();
    void selectByMouseChanged(bool selectByMouse);
    Q_REVISION(1) void mouseSelectionModeChanged(QDeclarativeTextEditor::SelectionMode mode);
    Q_REVISION(1) void canPasteChanged();
    Q_REVISION(1) void inputMethodComposingChanged();

protected:
    explicit QDeclarativeTextEditor(QDeclarativeTextEditorPrivate &dd, QDeclarativeItem *parent);

    void componentComplete() override;
    bool sceneEvent(QEvent *) override;
    void focusInEvent(QFocusEvent *) override;
    void focusOutEvent(QFocusEvent *) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *) override;

    /** Selects between @p anchor and @p pos, where the cursor goes. Both are within the text. */
    virtual void setSelection(int anchor, int pos) = 0;

    /** Selects as far as @p pos, which is beyond the end of the text; an editor does nothing for it by
     * default. */
    virtual void selectBeyond(int pos) { Q_UNUSED(pos) }

private:
    Q_DISABLE_COPY(QDeclarativeTextEditor)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeTextEditor)
};

class QDeclarativeTextEditorPrivate : public QDeclarativePaintedItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeTextEditor)

public:
    virtual void applyFont() = 0;
    virtual void applyColors() = 0;
    /** Takes over readOnly, selectByMouse and mouseSelectionMode. */
    virtual void applyInteraction() = 0;
    /** The cursor is to be shown or hidden, to blink or to stand. */
    virtual void applyCursor() = 0;
    /** The text, in which positions count. */
    virtual QString plainText() const = 0;
    virtual QRectF exactCursorRect() const = 0;
    virtual bool takesClipboard() const = 0;
    virtual bool composes() const = 0;
    virtual void leaveFocus() = 0;
    /** Emits activeFocusOnPressChanged(), whose parameter has another name in each editor. */
    virtual void focusOnPressChange() = 0;
    virtual bool processShortcutOverride(QKeyEvent *) = 0;
    /** Tells whether scripts may not call @p function, which reaches the clipboard. The guard hears of it. */
    bool isRefused(const char *function) const;
    virtual Qt::InputMethodHints effectiveHints() const { return hints; }

    void activeFocusChange(bool active) override;
    void noteComposing();
    void noteClipboard();
    void noteCursor();
    void setSceneFocus(bool);
    void updateInputMethod();

    void createCursorItem();
    void instantiateCursorItem();
    void placeCursorItem();
    bool paintsCursor() const { return cursorVisible && !cursorItem; }
    void drawCursor(QPainter *, const QRect &, bool isLit) const;
    bool blinks() const { return paintsCursor() && hasSceneFocus && !readOnly; }

    /** Follows the text, or where that is empty the keyboard, unless an alignment was set. */
    bool updateAlignment();
    Qt::Alignment effectiveAlignment() const;

    QFont font;
    QColor color = Qt::black;
    QColor selectionColor;
    QColor selectedTextColor;
    QPointer<QQmlComponent> cursorComponent;
    QPointer<QDeclarativeItem> cursorItem;
    QRect lastCursorRect;
    QPointF pressPosition;
    Qt::InputMethodHints hints = Qt::ImhNone;
    QDeclarativeTextEditor::SelectionMode mouseSelectionMode = QDeclarativeTextEditor::SelectCharacters;
    int alignment = Qt::AlignLeft;
    bool alignmentIsSet = false;
    bool readOnly = false;
    bool cursorVisible = false;
    bool focusOnPress = true;
    bool selectByMouse = false;
    bool hasSceneFocus = false;
    bool hadFocusBeforePress = false;
    bool wasComposing = false;
    bool couldPaste = false;
    mutable bool watchesClipboard = false;
};
