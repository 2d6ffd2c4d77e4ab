#pragma once

#include <QtCore/QStringList>
#include <QtWidgets/QLabel>

/** The problems of a tip's QML, shown over the tip: a window of its own, because a broken tip has no size. */
class ProblemOverlay : public QLabel
{
    Q_OBJECT

public:
    ProblemOverlay();

    /** Shows @p problems over @p tip, which may be null; hides without any. */
    void setProblems(const QStringList &problems, const QWidget *tip);
};
