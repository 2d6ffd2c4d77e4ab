#include "PreviewWindow.h"

#include "TipProblems.h"
#include "shared/Content.h"
#include "stage/PackageWatcher.h"
#include "stage/PreviewLook.h"
#include "stage/PreviewStage.h"

#include <Vidtips/VTWidget.h>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QVBoxLayout>

using namespace Vidtips;

namespace {

constexpr int lookEvery = 200; // milliseconds: how soon a warning of the QML is seen
constexpr int dragPause = 60; // milliseconds: a window that is dragged moves the tip once it stops
constexpr int gap = 12; // pixels between the window and the tip
constexpr int keyRole = Qt::UserRole;

} // namespace

PreviewWindow::PreviewWindow(const PreviewSettings &settings, const QString &key)
    : m_settings(settings)
    , m_key(key)
    , m_list(new QListWidget(this))
    , m_simple(new QCheckBox("&Simple", this))
    , m_dark(new QCheckBox("&Dark", this))
    , m_status(new QLabel(this))
    , m_watcher(new PackageWatcher(this))
{
    build();
    connect(m_watcher, &PackageWatcher::changed, this, &PreviewWindow::reload);
    connect(m_list, &QListWidget::currentItemChanged, this, &PreviewWindow::showTip);
    connect(m_simple, &QCheckBox::toggled, this, &PreviewWindow::reload);
    connect(m_dark, &QCheckBox::toggled, this, &PreviewWindow::reload);
    m_look.setInterval(lookEvery);
    connect(&m_look, &QTimer::timeout, this, &PreviewWindow::lookForProblems);
    m_settle.setSingleShot(true);
    m_settle.setInterval(dragPause);
    connect(&m_settle, &QTimer::timeout, this, &PreviewWindow::placeTip);
    qApp->installEventFilter(this);
    reload();
    m_look.start();
}

PreviewWindow::~PreviewWindow() = default;

void PreviewWindow::build()
{
    setWindowTitle(QString("Tips (%1)").arg(m_settings.locale));
    // The application has the direction of the tips.
    setLayoutDirection(Qt::LeftToRight);
    m_simple->setChecked(m_settings.isSimple);
    m_dark->setChecked(m_settings.isDark);
    m_status->setWordWrap(true);
    m_status->setTextFormat(Qt::PlainText);
    auto *switches = new QHBoxLayout;
    switches->addWidget(m_simple);
    switches->addWidget(m_dark);
    switches->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_list, 1);
    layout->addLayout(switches);
    layout->addWidget(m_status);
    // Two lines make one row: key and title.
    m_list->setAlternatingRowColors(true);
    m_list->setFocus();
    resize(300, 480);
}

QString PreviewWindow::currentKey() const
{
    const QListWidgetItem *const item = m_list->currentItem();
    return item ? item->data(keyRole).toString() : QString();
}

void PreviewWindow::reload()
{
    m_settings.isSimple = m_simple->isChecked();
    m_settings.isDark = m_dark->isChecked();
    PreviewLook::apply(m_settings.isDark);
    m_stage.reset();
    m_content = std::make_unique<Content>();
    const QString problem = m_content->load(m_settings.folders);
    m_status->setText(problem.isEmpty() ? "Arrow keys walk the tips; changed files are read again."
                                        : problem);
    QStringList others = m_content->keyDataFiles();
    if (!m_settings.keyData.isEmpty())
        others << m_settings.keyData;
    m_watcher->watch(*m_content, others);
    m_tipProblems = std::make_unique<TipProblems>(*m_content, m_settings);
    m_stage = std::make_unique<PreviewStage>(*m_content, m_settings);
    connect(m_stage.get(), &PreviewStage::requested, m_status, &QLabel::setText);
    fillList();
    showTip();
    Q_EMIT reloaded();
}

void PreviewWindow::fillList()
{
    const QSignalBlocker blocker(m_list);
    m_list->clear();
    for (const PreviewKey &key : PreviewKeys::in(*m_content, m_settings.locale)) {
        auto *const item =
            new QListWidgetItem(key.title.isEmpty() ? key.key : key.key + "\n" + key.title, m_list);
        item->setData(keyRole, key.key);
        if (key.key == m_key)
            m_list->setCurrentItem(item);
    }
    if (!m_list->currentItem())
        m_list->setCurrentRow(0);
}

QPoint PreviewWindow::tipPosition() const
{
    return QPoint(frameGeometry().right() + gap, geometry().top());
}

void PreviewWindow::showTip()
{
    if (!m_stage || currentKey().isEmpty())
        return;
    m_key = currentKey();
    m_tipProblems->setKey(m_key);
    m_stage->show(m_key, tipPosition());
    lookForProblems();
}

// A tip that is shown already stays where it is when it is asked for again.
void PreviewWindow::placeTip()
{
    if (VTWidget *const tip = m_stage ? m_stage->window() : nullptr)
        tip->move(tipPosition());
    lookForProblems();
}

void PreviewWindow::lookForProblems()
{
    if (!m_stage)
        return;
    m_problems = m_tipProblems->lines(*m_stage);
    m_overlay.setProblems(m_problems, m_stage->window());
}

void PreviewWindow::step(int rows)
{
    const int row = m_list->currentRow() + rows;
    if (row >= 0 && row < m_list->count())
        m_list->setCurrentRow(row);
}

// The arrow keys walk the tips in the list and, up and down, in the tip, which has its own use for the
// others.
bool PreviewWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto *const widget = static_cast<QWidget *>(watched);
    const bool isTip = qobject_cast<VTWidget *>(widget->window());
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool isBack = key == Qt::Key_Up || (key == Qt::Key_Left && watched == m_list);
    const bool isOn = key == Qt::Key_Down || (key == Qt::Key_Right && watched == m_list);
    if ((!isTip && watched != m_list) || (!isBack && !isOn))
        return false;
    step(isBack ? -1 : 1);
    return true;
}

void PreviewWindow::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    m_settle.start();
}

void PreviewWindow::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    QApplication::quit();
}
