#include "MainWindow.h"

#include "Commands.h"
#include "Core/DraftingScene.h"
#include "Core/DrawTool.h"
#include "Core/SelectTool.h"
#include "Core/TransformTool.h"
#include "DraftingView.h"
#include "HelpWindow.h"
#include "MessageLog.h"
#include "PropertyPanel.h"
#include "Theme.h"
#include "TipHost.h"
#include "TipKeyboard.h"
#include "TipList.h"
#include "TipTrace.h"

#include <Vidtips/VTPlacement.h>

#include <QtCore/QLibraryInfo>
#include <QtGui/QPainter>
#include <QtWidgets/QActionGroup>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolBar>

namespace {

const QStringList drawKeys{"draw.line", "draw.rectangle", "draw.circle", "draw.arc", "draw.polyline"};
const QStringList modifyKeys{"modify.move", "modify.rotate", "modify.mirror", "edit.delete"};
const QStringList viewKeys{"view.zoomIn", "view.zoomOut", "view.fit", "", "view.snap", "view.grid"};

QString localeName(const QString &language)
{
    return language == QLatin1String("de") ? QStringLiteral("de_DE") : QStringLiteral("en_US");
}

int distinct(QStringList keys)
{
    keys.removeDuplicates();
    return keys.size();
}

} // namespace

MainWindow::MainWindow(const Options &options)
    : m_options(options)
    , m_commands(new Commands(this))
    , m_scene(new DraftingScene(this))
    , m_view(new DraftingView(m_scene, this))
    , m_log(new MessageLog(this))
    , m_properties(new PropertyPanel(m_scene, this))
    , m_help(new HelpWindow(this))
{
    resize(1040, 680);
    setCentralWidget(m_view);
    createTools();
    createMenus();
    createToolBars();
    createPanels();
    createStatusBar();

    VTContext context;
    m_tips = std::make_unique<TipHost>(context, options, m_commands, m_log);
    new TipKeyboard(m_tips.get(), this);
    new Vidtips::VTPlacement(m_tips->manager());
    if (options.trace)
        new TipTrace(m_tips.get(), this);
    connectCommands();
    connectTips();
    setAppearance(options.appearance);
    setLanguage(options.language);
    m_commands->action("edit.select")->trigger();
    if (options.sample)
        drawSample();
    updateEnabled();
    m_log->append(MessageLog::Information, tr("%n tip(s) are ready", nullptr, distinct(m_tips->keys())));
}

MainWindow::~MainWindow()
{
    m_scene->disconnect(this);
}

void MainWindow::createTools()
{
    const auto add = [this](const QString &key, Tool *tool) { m_tools[key] = std::unique_ptr<Tool>(tool); };
    add("edit.select", new SelectTool(m_scene));
    for (int kind = Shape::Line; kind <= Shape::Polyline; ++kind)
        add(drawKeys.at(kind), new DrawTool(m_scene, Shape::Kind(kind)));
    for (int operation = TransformTool::Move; operation <= TransformTool::Mirror; ++operation)
        add(modifyKeys.at(operation), new TransformTool(m_scene, TransformTool::Operation(operation)));
}

QMenu *MainWindow::menuOf(const QStringList &keys)
{
    QMenu *menu = menuBar()->addMenu(QString());
    for (const QString &key : keys) {
        if (key.isEmpty())
            menu->addSeparator();
        else
            menu->addAction(m_commands->action(key));
    }
    m_menus.append(menu);
    return menu;
}

QMenu *MainWindow::choiceMenu(QMenu *parent, const QStringList &values, const QString &current,
                              void (MainWindow::*apply)(const QString &))
{
    QMenu *menu = parent->addMenu(QString());
    auto *group = new QActionGroup(menu);
    for (const QString &value : values) {
        QAction *action = group->addAction(menu->addAction(QString()));
        action->setData(value);
        action->setCheckable(true);
        action->setChecked(value == current);
    }
    connect(group, &QActionGroup::triggered, this,
            [this, apply](QAction *action) { (this->*apply)(action->data().toString()); });
    return menu;
}

void MainWindow::createMenus()
{
    menuOf({"file.new", "file.export", "", "file.quit"});
    menuOf({"edit.undo", "edit.redo", "", "edit.select", "edit.selectAll", "edit.delete", "", "modify.move",
            "modify.rotate", "modify.mirror"});
    menuOf(drawKeys);
    QMenu *view = menuOf(viewKeys);
    view->addSeparator();
    m_languageMenu = choiceMenu(view, {"en", "de"}, m_options.language, &MainWindow::setLanguage);
    m_appearanceMenu = choiceMenu(view, {"light", "dark"}, m_options.appearance, &MainWindow::setAppearance);
    menuOf({"tips.show", "tips.simple", "tips.modifier", "tips.motion", "", "tips.container", "tips.fallback",
            "", "tips.list", "tips.help"});
}

QToolBar *MainWindow::toolBarOf(const QString &name, const QStringList &keys)
{
    auto *bar = new QToolBar(this);
    bar->setObjectName(name);
    bar->setIconSize(QSize(24, 24));
    bar->setMovable(false);
    for (const QString &key : keys) {
        if (key.isEmpty())
            bar->addSeparator();
        else
            bar->addAction(m_commands->action(key));
    }
    return bar;
}

void MainWindow::createToolBars()
{
    const QStringList standard{"file.new", "file.export", "", "edit.undo", "edit.redo", ""};
    addToolBar(Qt::TopToolBarArea, toolBarOf("StandardBar", standard + viewKeys));
    addToolBar(
        Qt::LeftToolBarArea,
        toolBarOf("DrawBar", QStringList{"edit.select", ""} + drawKeys + QStringList{""} + modifyKeys));
}

void MainWindow::createPanels()
{
    const auto add = [this](const QString &key, QWidget *widget, Qt::DockWidgetArea area) {
        auto *dock = new QDockWidget(this);
        dock->setObjectName(key);
        dock->setWidget(widget);
        dock->setFeatures(QDockWidget::DockWidgetClosable);
        addDockWidget(area, dock);
    };
    add("panel.properties", m_properties, Qt::RightDockWidgetArea);
    add("panel.messages", m_log, Qt::BottomDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    resizeDocks(findChildren<QDockWidget *>(), {220, 120}, Qt::Horizontal);
    resizeDocks({findChild<QDockWidget *>("panel.messages")}, {110}, Qt::Vertical);
}

void MainWindow::createStatusBar()
{
    m_prompt = new QLabel(this);
    m_position = new QLabel(this);
    m_scale = new QLabel(this);
    m_position->setMinimumWidth(120);
    m_scale->setMinimumWidth(60);
    statusBar()->addWidget(m_prompt, 1);
    statusBar()->addPermanentWidget(m_position);
    statusBar()->addPermanentWidget(m_scale);
    connect(m_scene, &DraftingScene::promptChanged, m_prompt, &QLabel::setText);
    connect(m_view, &DraftingView::pointed, this, [this](const QPointF &point) {
        m_position->setText(QStringLiteral("%1 / %2").arg(locale().toString(point.x(), 'f', 1),
                                                          locale().toString(point.y(), 'f', 1)));
    });
    connect(m_view, &DraftingView::zoomChanged, this,
            [this](qreal scale) { m_scale->setText(QStringLiteral("%1 %").arg(qRound(100 * scale))); });
}

void MainWindow::connectCommands()
{
    QUndoStack *undo = m_scene->undoStack();
    m_commands->onTriggered("file.new", this, &MainWindow::newDrawing);
    m_commands->onTriggered("file.export", this, &MainWindow::exportPicture);
    m_commands->onTriggered("file.quit", this, &QWidget::close);
    m_commands->onTriggered("edit.undo", undo, &QUndoStack::undo);
    m_commands->onTriggered("edit.redo", undo, &QUndoStack::redo);
    m_commands->onTriggered("edit.delete", m_scene, &DraftingScene::deleteSelection);
    m_commands->onTriggered("edit.selectAll", this, [this] {
        for (Shape *shape : m_scene->shapes())
            shape->setSelected(true);
    });
    m_commands->onTriggered("view.zoomIn", this, [this] { m_view->zoom(1.25); });
    m_commands->onTriggered("view.zoomOut", this, [this] { m_view->zoom(0.8); });
    m_commands->onTriggered("view.fit", m_view, &DraftingView::fit);
    m_commands->onTriggered("view.snap", m_scene, &DraftingScene::setSnapsToGrid);
    m_commands->onTriggered("view.grid", m_scene, &DraftingScene::setShowsGrid);
    m_commands->action("view.snap")->setChecked(true);
    m_commands->action("view.grid")->setChecked(true);
    connect(m_commands->tools(), &QActionGroup::triggered, this, &MainWindow::chooseTool);
    connect(m_scene, &DraftingScene::selectionChanged, this, &MainWindow::updateEnabled);
    connect(m_scene, &DraftingScene::shapesChanged, this, &MainWindow::updateEnabled);
}

void MainWindow::connectTips()
{
    const auto toggle = [this](const QString &key, bool on, auto apply) {
        m_commands->action(key)->setChecked(on);
        m_commands->onTriggered(key, m_tips.get(), apply);
    };
    TipHost *tips = m_tips.get();
    toggle("tips.show", !m_options.tipsOff, [tips](bool on) { tips->context().set(Vidtips::TipsOff, !on); });
    toggle("tips.simple", m_options.simpleTips,
           [tips](bool on) { tips->context().set(Vidtips::UseSimpleUserInterface, on); });
    toggle("tips.modifier", m_options.modifierOnly, [tips](bool on) {
        tips->context().set(Vidtips::RequiredModifiers, on ? int(Qt::ControlModifier) : 0);
    });
    toggle("tips.motion", m_options.motion, &TipHost::setMotion);
    toggle("tips.container", m_options.reserveInContainer, &TipHost::setReservesInContainer);
    toggle("tips.fallback", m_options.fallback, &TipHost::setFallback);
    m_commands->onTriggered("tips.list", this, [this] { TipList(m_tips.get(), this).exec(); });
    m_commands->onTriggered("tips.help", this, &MainWindow::showHelp);
    connect(tips, &TipHost::topicRequested, this,
            [this](const QString &topic) { m_help->showTopic(topic, m_options.language); });
}

// F1 goes from what is seen to what can be read: help for the tip on screen, else the tip of what the pointer
// is on, else help for the active tool.
void MainWindow::showHelp()
{
    if (m_tips->openHelp(m_tips->shownKey()) || m_tips->showUnderPointer())
        return;
    if (QAction *tool = m_commands->tools()->checkedAction())
        m_tips->openHelp(tool->objectName());
}

void MainWindow::chooseTool(QAction *action)
{
    m_scene->setTool(m_tools.at(action->objectName()).get());
    m_view->setCursor(action->objectName() == QLatin1String("edit.select") ? Qt::ArrowCursor
                                                                           : Qt::CrossCursor);
    m_view->setFocus();
}

void MainWindow::updateEnabled()
{
    const bool selected = !m_scene->selectedShapes().isEmpty();
    for (const QString &key : modifyKeys)
        m_commands->action(key)->setEnabled(selected);
    m_commands->action("edit.undo")->setEnabled(m_scene->undoStack()->canUndo());
    m_commands->action("edit.redo")->setEnabled(m_scene->undoStack()->canRedo());
    m_commands->action("edit.selectAll")->setEnabled(!m_scene->shapes().isEmpty());
    QAction *tool = m_commands->tools()->checkedAction();
    if (tool && !tool->isEnabled())
        m_commands->action("edit.select")->trigger();
}

void MainWindow::newDrawing()
{
    m_scene->reset();
    updateEnabled();
}

void MainWindow::drawSample()
{
    m_scene->draw(Shape::Rectangle, {{-120, -60}, {40, -60}, {40, 60}, {-120, 60}});
    m_scene->draw(Shape::Circle, {{-40, 0}, {-40, -40}});
    m_scene->draw(Shape::Line, {{-140, 0}, {60, 0}});
    m_scene->draw(Shape::Arc, {{40, -60}, {100, 0}, {40, 60}});
    m_scene->draw(Shape::Polyline, {{-120, 90}, {-60, 90}, {-40, 110}, {0, 70}, {20, 90}, {100, 90}});
    m_scene->undoStack()->clear();
}

void MainWindow::exportPicture()
{
    const QString file = QFileDialog::getSaveFileName(this, tr("Export Picture"),
                                                      QStringLiteral("drawing.png"), tr("Pictures (*.png)"));
    if (file.isEmpty())
        return;
    QImage image(m_view->viewport()->size() * 2, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    m_scene->render(&painter, image.rect(), m_view->mapToScene(m_view->viewport()->rect()).boundingRect());
    painter.end();
    const bool saved = image.save(file);
    m_log->append(saved ? MessageLog::Information : MessageLog::Error,
                  saved ? tr("Saved %1").arg(file) : tr("%1 could not be written").arg(file));
}

void MainWindow::setAppearance(const QString &appearance)
{
    m_options.appearance = appearance;
    Theme::apply(appearance);
    m_scene->setColors(Theme::canvas(appearance));
    m_commands->refreshIcons();
}

void MainWindow::setLanguage(const QString &language)
{
    m_options.language = language;
    const QString name = localeName(language);
    QLocale::setDefault(QLocale(name));
    setLocale(QLocale(name));
    QCoreApplication::removeTranslator(&m_translator);
    QCoreApplication::removeTranslator(&m_qtTranslator);
    if (m_qtTranslator.load(QLocale(name), "qtbase", "_",
                            QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qtTranslator);
    if (m_translator.load(QLocale(name), "drafting", "_", Options::shareFolder() + "/Translations"))
        QCoreApplication::installTranslator(&m_translator);
    // A new translator sets the direction of its language.
    if (m_options.rightToLeft)
        QApplication::setLayoutDirection(Qt::RightToLeft);
    m_tips->setLanguage(name);
    retranslate();
}

void MainWindow::retranslate()
{
    setWindowTitle(tr("Drafting"));
    m_commands->retranslate();
    const QStringList menus{tr("&File"), tr("&Edit"), tr("&Draw"), tr("&View"), tr("&Tips")};
    for (int i = 0; i < menus.size(); ++i)
        m_menus.at(i)->setTitle(menus.at(i));
    m_languageMenu->setTitle(tr("&Language"));
    m_appearanceMenu->setTitle(tr("&Appearance"));
    const QStringList languages{QStringLiteral("&English"), QStringLiteral("&Deutsch")};
    const QStringList styles{tr("&Light"), tr("&Dark")};
    for (int i = 0; i < 2; ++i) {
        m_languageMenu->actions().at(i)->setText(languages.at(i));
        m_appearanceMenu->actions().at(i)->setText(styles.at(i));
    }
    findChild<QDockWidget *>("panel.messages")->setWindowTitle(tr("Messages"));
    findChild<QDockWidget *>("panel.properties")->setWindowTitle(tr("Properties"));
    findChild<QToolBar *>("StandardBar")->setWindowTitle(tr("Standard"));
    findChild<QToolBar *>("DrawBar")->setWindowTitle(tr("Drawing"));
    m_properties->refresh();
    if (m_scene->tool())
        m_prompt->setText(m_scene->tool()->prompt());
}

void MainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LocaleChange && m_tips)
        m_properties->refresh();
    QMainWindow::changeEvent(event);
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!m_fitted)
        m_view->fit();
    m_fitted = true;
}
