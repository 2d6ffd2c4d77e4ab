#include "PreviewWindow.h"

#include "PreviewSwitches.h"
#include "ProblemPanel.h"
#include "TipProblems.h"
#include "TwoLineDelegate.h"
#include "findings/FindingCatalogue.h"
#include "shared/Content.h"
#include "stage/PackageWatcher.h"
#include "stage/PreviewLook.h"
#include "stage/PreviewStage.h"
#include "stage/StageClock.h"
#include "strings/CatalogueName.h"

#include <Vidtips/VTWidget.h>

#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QVBoxLayout>

using namespace Vidtips;

namespace {

constexpr int lookEvery = 200; // milliseconds: how soon a warning of the QML is seen
constexpr int dragPause = 60; // milliseconds: a window that is dragged moves the tip once it stops
constexpr int gap = 12; // pixels between the window and the tip
constexpr int windowWidth = 340; // pixels
constexpr int listHeight = 250;
constexpr int panelHeight = 200;
constexpr int switchesHeight = 220;
constexpr int frameRoom = 40;
constexpr int keyRole = Qt::UserRole;

} // namespace

PreviewWindow::PreviewWindow(const PreviewSettings &settings, const QString &key)
    : m_settings(settings)
    , m_key(key)
    , m_list(new QListWidget(this))
    , m_switches(new PreviewSwitches(settings, this))
    , m_panel(new ProblemPanel(this))
    , m_status(new QLabel(this))
    , m_watcher(new PackageWatcher(this))
{
    build();
    connect(m_watcher, &PackageWatcher::changed, this, &PreviewWindow::reload);
    connect(m_list, &QListWidget::currentItemChanged, this, &PreviewWindow::showTip);
    connect(m_switches, &PreviewSwitches::changed, this, &PreviewWindow::takeSwitches);
    connect(m_panel, &ProblemPanel::told, m_status, &QLabel::setText);
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
    // The application has the direction of the tips.
    setLayoutDirection(Qt::LeftToRight);
    m_status->setWordWrap(true);
    m_status->setTextFormat(Qt::PlainText);
    m_list->setItemDelegate(new TwoLineDelegate(m_list));
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setAccessibleName("Tips");
    auto *const parts = new QSplitter(Qt::Vertical, this);
    parts->addWidget(m_list);
    parts->addWidget(m_panel);
    parts->setStretchFactor(0, 1);
    parts->setSizes({listHeight, panelHeight});
    parts->setChildrenCollapsible(false);
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(parts, 1);
    layout->addWidget(m_switches);
    layout->addWidget(m_status);
    m_list->setFocus();
    const int room = screen()->availableGeometry().height() - frameRoom;
    resize(windowWidth, qMin(room, listHeight + panelHeight + switchesHeight));
}

QString PreviewWindow::currentKey() const
{
    const QListWidgetItem *const item = m_list->currentItem();
    return item ? item->data(keyRole).toString() : QString();
}

void PreviewWindow::takeSwitches()
{
    const double scale = m_settings.scale;
    const QString locale = m_settings.locale;
    m_switches->read(m_settings);
    if (locale != m_settings.locale)
        m_settings.whyLocale.clear();
    if (qFuzzyCompare(scale, m_settings.scale))
        reload();
    else
        close();
}

void PreviewWindow::reload()
{
    setWindowTitle(QString("Tips (%1)").arg(m_settings.locale));
    PreviewLook::apply(m_settings.isDark);
    m_stage.reset();
    m_clock.reset();
    m_content = std::make_unique<Content>();
    const QString problem = m_content->load(m_settings.folders);
    QStringList others = m_content->keyDataFiles();
    if (!m_settings.keyData.isEmpty())
        others << m_settings.keyData;
    m_watcher->watch(*m_content, others);
    m_switches->setLocales(CatalogueName::localesIn(*m_content));
    m_tipProblems = std::make_unique<TipProblems>(*m_content, m_settings);
    if (m_settings.phase == TipPhase::First)
        m_clock = std::make_unique<StageClock>();
    m_stage = std::make_unique<PreviewStage>(*m_content, m_settings);
    connect(m_stage.get(), &PreviewStage::requested, m_status, &QLabel::setText);
    m_status->setText(problem.isEmpty() ? status() : problem);
    fillList();
    showTip();
    Q_EMIT reloaded();
}

// What is shown may not be what was asked for, or be in another language.
QString PreviewWindow::status() const
{
    const QVector<PreviewKey> keys = PreviewKeys::in(*m_content, m_settings.locale);
    const QString missing = PreviewKeys::problemWith(*m_content, followedKey(keys), m_settings.locale);
    const QString news = missing.isEmpty() ? m_settings.whyLocale : missing;
    const QString help = "Arrow keys walk the tips; changed files are read again.";
    return news.isEmpty() ? help : news.at(0).toUpper() + news.mid(1) + ".\n" + help;
}

// A key that is no longer there may have been given another name: where it stood there is a new one, or there
// is just one new one.
QString PreviewWindow::followedKey(const QVector<PreviewKey> &keys) const
{
    QStringList added;
    for (const PreviewKey &key : keys) {
        if (key.key == m_key)
            return m_key;
        if (m_places.contains(key.key))
            continue;
        if (m_places.value(m_key) == qMakePair(key.file->path, key.entry->position.line))
            return key.key;
        added << key.key;
    }
    return added.size() == 1 && m_places.contains(m_key) ? added.constFirst() : m_key;
}

void PreviewWindow::rememberPlaces(const QVector<PreviewKey> &keys)
{
    // While a file is being saved there may be no keys at all.
    if (keys.isEmpty())
        return;
    m_places.clear();
    for (const PreviewKey &key : keys)
        m_places.insert(key.key, {key.file->path, key.entry->position.line});
}

void PreviewWindow::fillList()
{
    const QSignalBlocker blocker(m_list);
    const QVector<PreviewKey> keys = PreviewKeys::in(*m_content, m_settings.locale);
    m_key = followedKey(keys);
    rememberPlaces(keys);
    m_list->clear();
    for (const PreviewKey &key : keys) {
        auto *const item = new QListWidgetItem(key.title.isEmpty() ? key.key : key.title, m_list);
        item->setData(TwoLineDelegate::detailRole, key.title.isEmpty() ? QString() : key.key);
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
    if (m_clock)
        m_clock->pass(*m_stage, StageClock::untilSeen);
    if (m_settings.phase == TipPhase::Kept)
        m_stage->keep();
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
    const QVector<Finding> found = m_tipProblems->all(*m_stage);
    m_panel->setProblems(found);
    m_panel->setVisible(!found.isEmpty());
    QStringList grave;
    for (int i = 0; i < found.size(); ++i) {
        if (FindingCatalogue::instance().find(found.at(i).code)->severity == Severity::Error)
            grave << m_problems.at(i);
    }
    m_overlay.setProblems(grave, m_stage->window());
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
