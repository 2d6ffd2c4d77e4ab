#pragma once

#include "qdeclarativetextinput_p.h"

#include <private/qwidgetlinecontrol_p.h>

class QDeclarativeTextInputPrivate : public QDeclarativeTextEditorPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeTextInput)

public:
    static constexpr int cursorWidth = 1; ///< pixels

    void init();
    void updateLayout();
    void updateScroll();
    int scrollFor(int width, int textWidth, int cursorX) const;
    void textChange();
    void cursorChange();
    void selectionChange();
    void noteSelectionEnds();
    void moveCursor(int position, bool selects = false);
    void forgetBeyond();
    void noteAcceptable();
    int positionAt(qreal x, QTextLine::CursorPosition) const;
    QRectF rectAt(qreal x) const;

    void applyFont() override;
    void applyColors() override;
    void applyInteraction() override;
    void applyCursor() override;
    QString plainText() const override;
    QRectF exactCursorRect() const override;
    bool takesClipboard() const override;
    bool composes() const override;
    void leaveFocus() override;
    void focusOnPressChange() override;
    bool processShortcutOverride(QKeyEvent *) override;
    Qt::InputMethodHints effectiveHints() const override;
    void mirrorChange() override;

    QWidgetLineControl control;
    int scroll = 0; ///< how many pixels of the text are left of the item; negative with room to spare
    int lastSelectionStart = 0;
    int lastSelectionEnd = 0;
    int beyond = -1; ///< where the cursor is said to be while it is at the end of the text, or -1
    bool wasAcceptable = true;
    bool autoScroll = true;
};
