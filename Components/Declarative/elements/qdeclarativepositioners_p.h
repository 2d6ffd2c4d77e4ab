#pragma once

#include "qdeclarativebasepositioner_p.h"

/** Places its children below each other. */
class QDeclarativeColumn : public QDeclarativeBasePositioner
{
    Q_OBJECT

public:
    explicit QDeclarativeColumn(QDeclarativeItem *parent = nullptr);

protected:
    bool goesOn() const override { return true; }
    QSizeF arrange(Cells &, const std::optional<QSizeF> &before) const override;
    int placedLines() const override;
    QString conflictMessage() const override;
};

/** Places its children side by side. */
class QDeclarativeRow : public QDeclarativeBasePositioner
{
    Q_OBJECT
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection WRITE setLayoutDirection NOTIFY
                   layoutDirectionChanged REVISION 1)

public:
    explicit QDeclarativeRow(QDeclarativeItem *parent = nullptr);

    using QDeclarativeBasePositioner::layoutDirection;
    using QDeclarativeBasePositioner::setLayoutDirection;

protected:
    bool goesOn() const override;
    QSizeF arrange(Cells &, const std::optional<QSizeF> &before) const override;
    int placedLines() const override;
    QString conflictMessage() const override;
    bool dependsOnSize() const override { return isRightToLeft(); }
};

/**
 * Places its children in the cells of a table, each as wide as its column and as high as its row need.
 *
 * With neither `rows` nor `columns` set (-1) there are four columns. Children beyond the last cell stay where
 * they are.
 */
class QDeclarativeGrid : public QDeclarativeBasePositioner
{
    Q_OBJECT
    Q_PROPERTY(int rows READ rows WRITE setRows NOTIFY rowsChanged)
    Q_PROPERTY(int columns READ columns WRITE setColumns NOTIFY columnsChanged)
    Q_PROPERTY(Flow flow READ flow WRITE setFlow NOTIFY flowChanged)
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection WRITE setLayoutDirection NOTIFY
                   layoutDirectionChanged REVISION 1)

public:
    enum Flow { LeftToRight, TopToBottom };
    Q_ENUM(Flow)

    explicit QDeclarativeGrid(QDeclarativeItem *parent = nullptr);

    using QDeclarativeBasePositioner::layoutDirection;
    using QDeclarativeBasePositioner::setLayoutDirection;

    int rows() const { return m_rows; }
    void setRows(int);
    int columns() const { return m_columns; }
    void setColumns(int);
    Flow flow() const { return m_flow; }
    void setFlow(Flow);

Q_SIGNALS:
    void rowsChanged();
    void columnsChanged();
    void flowChanged();

protected:
    QSizeF arrange(Cells &, const std::optional<QSizeF> &before) const override;
    int placedLines() const override;
    QString conflictMessage() const override;
    bool dependsOnSize() const override { return isRightToLeft(); }

private:
    QSize tableSize(int count) const;

    int m_rows = -1;
    int m_columns = -1;
    Flow m_flow = LeftToRight;
};

/** Places its children like words: side by side, or below each other, and wraps at its width or height. */
class QDeclarativeFlow : public QDeclarativeBasePositioner
{
    Q_OBJECT
    Q_PROPERTY(Flow flow READ flow WRITE setFlow NOTIFY flowChanged)
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection WRITE setLayoutDirection NOTIFY
                   layoutDirectionChanged REVISION 1)

public:
    enum Flow { LeftToRight, TopToBottom };
    Q_ENUM(Flow)

    explicit QDeclarativeFlow(QDeclarativeItem *parent = nullptr);

    using QDeclarativeBasePositioner::layoutDirection;
    using QDeclarativeBasePositioner::setLayoutDirection;

    Flow flow() const { return m_flow; }
    void setFlow(Flow);

Q_SIGNALS:
    void flowChanged();

protected:
    QSizeF arrange(Cells &, const std::optional<QSizeF> &before) const override;
    int placedLines() const override;
    QString conflictMessage() const override;
    bool dependsOnSize() const override { return true; }

private:
    Flow m_flow = LeftToRight;
};
