#include "ProblemOverlay.h"

namespace {
constexpr int leastWidth = 420;
}

ProblemOverlay::ProblemOverlay()
    : QLabel(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setMargin(10);
    setStyleSheet("background: #9b1c1c; color: #ffffff;");
}

void ProblemOverlay::setProblems(const QStringList &problems, const QWidget *tip)
{
    if (problems.isEmpty()) {
        hide();
        return;
    }
    setText(problems.join('\n'));
    setFixedWidth(tip ? qMax(leastWidth, tip->width()) : leastWidth);
    setFixedHeight(heightForWidth(width()));
    if (tip)
        move(tip->pos());
    show();
    raise();
}
