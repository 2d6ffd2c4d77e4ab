#include "Commands.h"

#include "Core/Icons.h"

#include <QtWidgets/QActionGroup>

namespace {

struct Command
{
    const char *key;
    const char *text;
    const char *shortcut;
    bool checkable;
};

const Command commandTable[] = {
    {"file.new", QT_TRANSLATE_NOOP("Commands", "&New"), "Ctrl+N", false},
    {"file.export", QT_TRANSLATE_NOOP("Commands", "&Export Picture…"), "Ctrl+E", false},
    {"file.quit", QT_TRANSLATE_NOOP("Commands", "&Quit"), "Ctrl+Q", false},
    {"edit.undo", QT_TRANSLATE_NOOP("Commands", "&Undo"), "Ctrl+Z", false},
    {"edit.redo", QT_TRANSLATE_NOOP("Commands", "&Redo"), "Ctrl+Shift+Z", false},
    {"edit.selectAll", QT_TRANSLATE_NOOP("Commands", "Select &All"), "Ctrl+A", false},
    {"edit.delete", QT_TRANSLATE_NOOP("Commands", "&Delete"), "Del", false},
    {"view.zoomIn", QT_TRANSLATE_NOOP("Commands", "Zoom &In"), "+", false},
    {"view.zoomOut", QT_TRANSLATE_NOOP("Commands", "Zoom &Out"), "-", false},
    {"view.fit", QT_TRANSLATE_NOOP("Commands", "&Fit Drawing"), "F", false},
    {"view.snap", QT_TRANSLATE_NOOP("Commands", "&Snap to Grid"), "G", true},
    {"view.grid", QT_TRANSLATE_NOOP("Commands", "Show &Grid"), "Shift+G", true},
    {"tips.show", QT_TRANSLATE_NOOP("Commands", "Show &Tips"), "", true},
    {"tips.simple", QT_TRANSLATE_NOOP("Commands", "&Simple Tips"), "", true},
    {"tips.modifier", QT_TRANSLATE_NOOP("Commands", "Only While &Ctrl Is Held"), "", true},
    {"tips.motion", QT_TRANSLATE_NOOP("Commands", "&Motion in Tips"), "", true},
    {"tips.container", QT_TRANSLATE_NOOP("Commands", "&Pinned Tips in Own Window"), "", true},
    {"tips.fallback", QT_TRANSLATE_NOOP("Commands", "Tip for Commands &Without One"), "", true},
    {"tips.list", QT_TRANSLATE_NOOP("Commands", "&All Tips…"), "", false},
    {"tips.help", QT_TRANSLATE_NOOP("Commands", "&Help for This Command"), "F1", false},
};

const Command toolTable[] = {
    {"edit.select", QT_TRANSLATE_NOOP("Commands", "&Select"), "S", true},
    {"draw.line", QT_TRANSLATE_NOOP("Commands", "&Line"), "L", true},
    {"draw.rectangle", QT_TRANSLATE_NOOP("Commands", "&Rectangle"), "R", true},
    {"draw.circle", QT_TRANSLATE_NOOP("Commands", "&Circle"), "C", true},
    {"draw.arc", QT_TRANSLATE_NOOP("Commands", "&Arc"), "A", true},
    {"draw.polyline", QT_TRANSLATE_NOOP("Commands", "&Polyline"), "P", true},
    {"modify.move", QT_TRANSLATE_NOOP("Commands", "&Move"), "M", true},
    {"modify.rotate", QT_TRANSLATE_NOOP("Commands", "Ro&tate"), "T", true},
    {"modify.mirror", QT_TRANSLATE_NOOP("Commands", "M&irror"), "I", true},
};

} // namespace

Commands::Commands(QObject *parent)
    : QObject(parent)
    , m_tools(new QActionGroup(this))
{
    for (const Command &command : commandTable)
        add(command.key, QKeySequence(command.shortcut), command.checkable);
    for (const Command &tool : toolTable)
        m_tools->addAction(add(tool.key, QKeySequence(tool.shortcut), tool.checkable));
    retranslate();
}

QAction *Commands::add(const QString &key, const QKeySequence &shortcut, bool checkable)
{
    auto *action = new QAction(Icons::icon(key), QString(), this);
    action->setObjectName(key);
    action->setShortcut(shortcut);
    action->setCheckable(checkable);
    m_actions.insert(key, action);
    return action;
}

void Commands::retranslate()
{
    for (const Command &command : commandTable)
        action(command.key)->setText(tr(command.text));
    for (const Command &tool : toolTable)
        action(tool.key)->setText(tr(tool.text));
}

void Commands::refreshIcons()
{
    for (QAction *action : qAsConst(m_actions))
        action->setIcon(Icons::icon(action->objectName()));
}
