#pragma once

#include "qdeclarativetextedit_p.h"
#include "text/qdeclarativetextdocument_p.h"

#include <private/qwidgettextcontrol_p.h>

class QDeclarativeTextEditPrivate : public QDeclarativeTextEditorPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeTextEdit)

public:
    explicit QDeclarativeTextEditPrivate(QDeclarativeTextEdit *q)
        : document(q)
        , control(&document)
    {
    }

    void init();
    void updateLayout();
    void layOut();
    void updateSizes();
    void updateLineCount();
    void updateOffset();
    void takeText(const QString &);
    bool isMarkup(const QString &) const;
    void textChange();
    void cursorChange();
    void cursorRectChange();
    void selectionChange();
    void noteSelectionEnds();
    void endComposing();
    qreal naturalWidth();
    qreal implicitWidth() const override;
    int endPosition() const { return document.characterCount() - 1; }
    /** The position nearest to a point of the document. */
    int positionAt(const QPointF &) const;

    /** Hands an event to the control, which counts from the top of the text. */
    void process(QEvent *);

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
    void mirrorChange() override;

    QDeclarativeTextDocument document;
    mutable QWidgetTextControl control;
    QString givenText; ///< what was set before the item is complete, whatever the format
    QSizeF paintedSize;
    qreal offset = 0; ///< how far the text is below the item's top
    int lineCount = 1;
    int lastSelectionStart = 0;
    int lastSelectionEnd = 0;
    QDeclarativeTextEdit::VAlignment vAlign = QDeclarativeTextEdit::AlignTop;
    QDeclarativeTextEdit::WrapMode wrapMode = QDeclarativeTextEdit::NoWrap;
    QDeclarativeTextEdit::TextFormat format = QDeclarativeTextEdit::AutoText;
    bool isRich = false;
    bool isSizing = false;
    bool implicitWidthIsRead = false;
    bool persistentSelection = true;
    bool controlBlinks = false;
};
