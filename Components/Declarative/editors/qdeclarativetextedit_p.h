#pragma once

#include "qdeclarativetexteditor_p.h"

class QDeclarativeTextEditPrivate;

/**
 * Edits text of several lines, plain or rich.
 *
 * `text` reads back as markup while the text is rich. What is set before the item is complete is taken by the
 * format that then holds; later, changing the format of a rich text to plain shows its markup.
 *
 * select() signals textChanged, and a selection dropped with the focus signals no selectionChanged. Without a
 * selection colour the application's palette has its say.
 */
class QDeclarativeTextEdit : public QDeclarativeTextEditor
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(HAlignment horizontalAlignment READ hAlign WRITE setHAlign RESET resetHAlign NOTIFY
                   horizontalAlignmentChanged)
    Q_PROPERTY(VAlignment verticalAlignment READ vAlign WRITE setVAlign NOTIFY verticalAlignmentChanged)
    Q_PROPERTY(WrapMode wrapMode READ wrapMode WRITE setWrapMode NOTIFY wrapModeChanged)
    Q_PROPERTY(int lineCount READ lineCount NOTIFY lineCountChanged REVISION 1)
    Q_PROPERTY(qreal paintedWidth READ paintedWidth NOTIFY paintedSizeChanged)
    Q_PROPERTY(qreal paintedHeight READ paintedHeight NOTIFY paintedSizeChanged)
    Q_PROPERTY(TextFormat textFormat READ textFormat WRITE setTextFormat NOTIFY textFormatChanged)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectionChanged)
    Q_PROPERTY(
        bool activeFocusOnPress READ focusOnPress WRITE setFocusOnPress NOTIFY activeFocusOnPressChanged)
    Q_PROPERTY(bool persistentSelection READ persistentSelection WRITE setPersistentSelection NOTIFY
                   persistentSelectionChanged)
    Q_PROPERTY(qreal textMargin READ textMargin WRITE setTextMargin NOTIFY textMarginChanged)

public:
    enum HAlignment {
        AlignLeft = Qt::AlignLeft,
        AlignRight = Qt::AlignRight,
        AlignHCenter = Qt::AlignHCenter,
        AlignJustify = Qt::AlignJustify
    };
    Q_ENUM(HAlignment)
    enum VAlignment {
        AlignTop = Qt::AlignTop,
        AlignBottom = Qt::AlignBottom,
        AlignVCenter = Qt::AlignVCenter
    };
    Q_ENUM(VAlignment)
    enum TextFormat { PlainText = Qt::PlainText, RichText = Qt::RichText, AutoText = Qt::AutoText };
    Q_ENUM(TextFormat)
    enum WrapMode { NoWrap = 0, WordWrap = 1, WrapAnywhere = 3, Wrap = 4, WrapAtWordBoundaryOrAnywhere = 4 };
    Q_ENUM(WrapMode)

    explicit QDeclarativeTextEdit(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeTextEdit() override;

    QString text() const;
    void setText(const QString &);
    HAlignment hAlign() const;
    void setHAlign(HAlignment);
    void resetHAlign();
    VAlignment vAlign() const;
    void setVAlign(VAlignment);
    WrapMode wrapMode() const;
    void setWrapMode(WrapMode);
    int lineCount() const;
    qreal paintedWidth() const;
    qreal paintedHeight() const;
    TextFormat textFormat() const;
    void setTextFormat(TextFormat);
    QString selectedText() const;
    bool persistentSelection() const;
    void setPersistentSelection(bool);
    /** The room around the text, in pixels on each side. */
    qreal textMargin() const;
    void setTextMargin(qreal);

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

    /** Where the cursor would be at a position; at the first one if the text has no such position. */
    Q_INVOKABLE QRectF positionToRectangle(int) const;
    /** The position nearest to a point. */
    Q_INVOKABLE int positionAt(int x, int y) const;
    Q_INVOKABLE QVariant inputMethodQuery(Qt::InputMethodQuery property, const QVariant &argument) const;

    QRectF boundingRect() const override;

Q_SIGNALS:
    void textChanged(const QString &);
    void paintedSizeChanged();
    void selectionChanged();
    void horizontalAlignmentChanged(QDeclarativeTextEdit::HAlignment alignment);
    void verticalAlignmentChanged(QDeclarativeTextEdit::VAlignment alignment);
    void wrapModeChanged();
    void lineCountChanged();
    void textFormatChanged(QDeclarativeTextEdit::TextFormat textFormat);
    void activeFocusOnPressChanged(bool activeFocusOnPressed);
    void persistentSelectionChanged(bool isPersistentSelection);
    void textMarginChanged(qreal textMargin);
    Q_REVISION(1) void linkActivated(const QString &link);

protected:
    void componentComplete() override;
    void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void drawContents(QPainter *, const QRectF &exposed) override;
    QRectF drawnRect() const override;
    void setSelection(int anchor, int pos) override;

    void keyPressEvent(QKeyEvent *) override;
    void keyReleaseEvent(QKeyEvent *) override;
    void inputMethodEvent(QInputMethodEvent *) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery) const override;
    void mousePressEvent(QGraphicsSceneMouseEvent *) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *) override;

private:
    Q_DISABLE_COPY(QDeclarativeTextEdit)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeTextEdit)
};

QML_DECLARE_TYPE(QDeclarativeTextEdit)
