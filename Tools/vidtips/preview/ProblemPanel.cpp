#include "ProblemPanel.h"

#include "TwoLineDelegate.h"
#include "findings/FindingCatalogue.h"
#include "shared/Places.h"

#include <QtCore/QUrl>
#include <QtGui/QClipboard>
#include <QtGui/QDesktopServices>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QStyle>

namespace {

QStyle::StandardPixmap iconOf(const Finding &finding)
{
    const FindingKind *const kind = FindingCatalogue::instance().find(finding.code);
    if (!kind || kind->severity == Severity::Error)
        return QStyle::SP_MessageBoxCritical;
    return kind->severity == Severity::Warning ? QStyle::SP_MessageBoxWarning
                                               : QStyle::SP_MessageBoxInformation;
}

QString placeOf(const Finding &finding)
{
    return Places::shown(finding.file, finding.position);
}

} // namespace

ProblemPanel::ProblemPanel(QWidget *parent)
    : QListWidget(parent)
{
    setItemDelegate(new TwoLineDelegate(this));
    setIconSize(QSize(16, 16));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setAccessibleName("Findings of this tip");
    connect(this, &QListWidget::itemActivated, this, [this](QListWidgetItem *item) { open(row(item)); });
}

void ProblemPanel::setProblems(const QVector<Finding> &problems)
{
    if (problems == m_problems)
        return;
    m_problems = problems;
    clear();
    for (const Finding &problem : problems) {
        auto *const item = new QListWidgetItem(QString("%1 [%2]").arg(problem.message, problem.code), this);
        item->setData(TwoLineDelegate::detailRole, placeOf(problem));
        item->setIcon(style()->standardIcon(iconOf(problem)));
        item->setToolTip("Enter or a double click opens the file and copies the place; Ctrl+C copies it.");
    }
}

QString ProblemPanel::copyPlace(int row)
{
    const QString place = placeOf(m_problems.at(row));
    QGuiApplication::clipboard()->setText(place);
    return place;
}

// The desktop opens files, not lines of them: the place is for the editor's own field.
void ProblemPanel::open(int row)
{
    if (row < 0 || row >= m_problems.size())
        return;
    const QString place = copyPlace(row);
    const bool isOpened = QDesktopServices::openUrl(QUrl::fromLocalFile(m_problems.at(row).file));
    Q_EMIT told(isOpened ? QString("Opened and copied: %1").arg(place)
                         : QString("Copied, as nothing opens such files: %1").arg(place));
}

void ProblemPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy) && currentRow() >= 0)
        Q_EMIT told(QString("Copied: %1").arg(copyPlace(currentRow())));
    else
        QListWidget::keyPressEvent(event);
}

void ProblemPanel::resizeEvent(QResizeEvent *event)
{
    QListWidget::resizeEvent(event);
    scheduleDelayedItemsLayout();
}
