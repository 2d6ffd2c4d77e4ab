#pragma once

#include <Vidtips/VTExport.h>

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QRect>
#include <QtCore/QString>

#include <memory>

QT_BEGIN_NAMESPACE
class QAction;
class QTabBar;
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * Finds the command that lies under the pointer in Qt's own widgets, its key, and the room that it takes up.
 *
 * A host holds one and answers VTInterface::keyAt() with keyAt(). It knows
 * - tool buttons: the default action, or the menu that the button opens;
 * - menus and menu bars: the action under the pointer, for one that opens a menu the menu's name; a menu as a
 *   whole has no key;
 * - tab bars: a text in QTabBar::tabData(), else the name of the page, dock widget or MDI window that the tab
 *   shows;
 * - item views, also that of a combo box's list, and headers: the text that the model has under itemRole(),
 * in a tree that of the row's first column where the cell has none;
 * - graphics views: the text that the item under the pointer, or an item that it is part of, has under
 *   graphicsDataKey();
 * - widgets of a QWidgetAction: the action;
 * - every other object by its name.
 *
 * Where there is none of these, what Qt made as a part of a larger widget stands for that: a viewport for its
 * view, a line edit for its spin box or combo box. Names that Qt itself gives, such as "qt_spinbox_lineedit",
 * are no keys.
 *
 * Commands that have no names get keys from what setFallbacks() allows, or from a subclass that overrides
 * keyForAction() or keyForWidget(). GUI thread only.
 */
class VIDTIPS_EXPORT VTCommandLocator
{
public:
    /** What gives a key to a command that has no name. */
    enum Fallback {
        NoFallback = 0,
        IconName = 1, ///< the name that the action's icon has in icon themes, such as "document-save".
        StandardButton = 2, ///< of buttons that Qt made: "QDialogButtonBox.Ok", "QWizard.NextButton".
        Text = 4, ///< plainText() of an action, button, group box or tab; it changes with the language.
        Container = 8, ///< what is in a status bar or dock widget has the key of the nearest parent there.
    };
    Q_DECLARE_FLAGS(Fallbacks, Fallback)

    /** A command and its place. */
    struct Command
    {
        QString key; ///< empty where there is no command.
        QRect rect; ///< in global coordinates; null: all of the object that was asked for.
        QPointer<QObject> object; ///< what has the key: an action, widget or graphics object, or the view.
    };

    /** Makes a locator that takes no keys from models and scenes. */
    VTCommandLocator();
    virtual ~VTCommandLocator();

    /** Returns the role under which models have keys; -1, the default: they have none. */
    int itemRole() const;

    /** Sets the role under which models have keys, for items and for header sections; -1: none. */
    void setItemRole(int role);

    /** Returns the key of QGraphicsItem::data() under which items have keys; -1, the default: they have none.
     */
    int graphicsDataKey() const;

    /** Sets the key of QGraphicsItem::data() under which items have keys; -1: none. */
    void setGraphicsDataKey(int key);

    /** Returns what gives keys to commands without names; the default is nothing. */
    Fallbacks fallbacks() const;

    /** Sets what gives keys to commands without names. They are tried in the order of Fallback. */
    void setFallbacks(Fallbacks fallbacks);

    /**
     * Returns the command that @p object has at the global @p position. Where the pointer is not over a menu,
     * that is the menu's current entry.
     */
    Command commandAt(QObject *object, const QPoint &position) const;

    /** Returns the key of commandAt(), and sets @p rect to its rectangle. */
    QString keyAt(QObject *object, const QPoint &position, QRect &rect) const;

    /**
     * Returns the key of @p action, empty for none. The default is its name, that of the menu that it
     * opens, or a fall-back.
     */
    virtual QString keyForAction(const QAction *action) const;

    /**
     * Returns the key of @p widget as a whole, empty for none. The default is that of the action that it
     * shows, its name, or a fall-back.
     */
    virtual QString keyForWidget(const QWidget *widget) const;

    /** Returns the name of @p object, which may be null; empty for a name that Qt itself gives. */
    static QString nameOf(const QObject *object);

    /** Returns @p text, as a command shows it, on one line without mnemonic, shortcut and ellipsis. */
    static QString plainText(const QString &text);

private:
    Q_DISABLE_COPY(VTCommandLocator)
    VIDTIPS_NO_EXPORT Command partAt(QObject *object, const QPoint &position) const;
    VIDTIPS_NO_EXPORT Command tabAt(QTabBar *bar, const QPoint &position) const;
    VIDTIPS_NO_EXPORT Command enclosing(const QWidget *part) const;

    struct Private;
    std::unique_ptr<Private> const d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(VTCommandLocator::Fallbacks)

} // namespace Vidtips
