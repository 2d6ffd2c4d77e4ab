#pragma once

#include "Options.h"

#include <QtCore/QTranslator>
#include <QtWidgets/QMainWindow>

#include <map>
#include <memory>

class Commands;
class DraftingScene;
class DraftingView;
class HelpWindow;
class MessageLog;
class PropertyPanel;
class QActionGroup;
class QLabel;
class TipHost;
class Tool;

/** The window: menus, tool bars, panels and the drawing in the middle. */
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(const Options &options);
    ~MainWindow() override;

    /** Switches the application and its tips to @p language, "en" or "de". */
    void setLanguage(const QString &language);

    /** Switches the appearance to "light" or "dark". */
    void setAppearance(const QString &appearance);

    TipHost *tips() const { return m_tips.get(); }

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void createTools();
    void createMenus();
    void createToolBars();
    void createPanels();
    void createStatusBar();
    QMenu *choiceMenu(QMenu *parent, const QStringList &values, const QString &current,
                      void (MainWindow::*apply)(const QString &));
    QMenu *menuOf(const QStringList &keys);
    QToolBar *toolBarOf(const QString &name, const QStringList &keys);
    void connectCommands();
    void connectTips();
    void updateEnabled();
    void chooseTool(QAction *action);
    void exportPicture();
    void newDrawing();
    void drawSample();
    void showHelp();
    void retranslate();

    Options m_options;
    QTranslator m_translator;
    QTranslator m_qtTranslator;
    Commands *m_commands;
    DraftingScene *m_scene;
    DraftingView *m_view;
    MessageLog *m_log;
    PropertyPanel *m_properties;
    HelpWindow *m_help;
    QLabel *m_prompt;
    QLabel *m_position;
    QLabel *m_scale;
    QMenu *m_languageMenu;
    QMenu *m_appearanceMenu;
    QList<QMenu *> m_menus;
    std::map<QString, std::unique_ptr<Tool>> m_tools;
    std::unique_ptr<TipHost> m_tips;
    bool m_fitted = false;
};
