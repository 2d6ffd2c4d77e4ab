#pragma once

#include "findings/Finding.h"

#include <QtWidgets/QListWidget>

/** The findings of the tip that is shown, each of which opens its place. */
class ProblemPanel : public QListWidget
{
    Q_OBJECT

public:
    explicit ProblemPanel(QWidget *parent);

    /** Shows @p problems; a selection stays while they are the same. */
    void setProblems(const QVector<Finding> &problems);

    /** Opens the file of the finding @p row in the desktop's editor, and copies its place. */
    void open(int row);

Q_SIGNALS:
    /** What was opened and copied, or could not be. */
    void told(const QString &text);

protected:
    /** Copies the place of the selected finding. */
    void keyPressEvent(QKeyEvent *event) override;

    /** Breaks the lines anew. */
    void resizeEvent(QResizeEvent *event) override;

private:
    QString copyPlace(int row);

    QVector<Finding> m_problems;
};
