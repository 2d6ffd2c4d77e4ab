#include "VTTipContainer_p.h"

#include <QtCore/QList>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QVBoxLayout>

namespace Vidtips {

namespace {

/** Tells whether @p widget decides itself where its children are. */
bool placesItsChildren(const QWidget *widget)
{
    return qobject_cast<const QMainWindow *>(widget) || qobject_cast<const QAbstractScrollArea *>(widget)
        || qobject_cast<const QTabWidget *>(widget) || qobject_cast<const QStackedWidget *>(widget)
        || qobject_cast<const QSplitter *>(widget) || qobject_cast<const QToolBar *>(widget);
}

/** Makes a layout without margins where @p holder has none. */
QLayout *layoutOf(QWidget *holder)
{
    if (!holder->layout())
        (new QVBoxLayout(holder))->setContentsMargins(0, 0, 0, 0);
    return holder->layout();
}

void turnTo(QWidget *page)
{
    auto *const stack = qobject_cast<QStackedWidget *>(page->parentWidget());
    if (!stack)
        return;
    // The tabs follow their pages only when it is they that are asked.
    if (auto *const tabs = qobject_cast<QTabWidget *>(stack->parentWidget()))
        tabs->setCurrentWidget(page);
    else
        stack->setCurrentWidget(page);
}

void bringForward(QWidget *widget)
{
    turnTo(widget);
    if (auto *const dock = qobject_cast<QDockWidget *>(widget)) {
        dock->show();
        dock->raise();
    } else if (auto *const window = qobject_cast<QMdiSubWindow *>(widget)) {
        window->show();
        if (window->mdiArea())
            window->mdiArea()->setActiveSubWindow(window);
    }
}

} // namespace

VTTipContainer::VTTipContainer(QWidget *widget)
    : m_widget(widget)
{
}

QWidget *VTTipContainer::widget() const
{
    return m_widget;
}

// Docks and sub-windows show one widget, and that may be the host's own.
QWidget *VTTipContainer::holder() const
{
    QWidget *const container = m_widget;
    auto *const dock = qobject_cast<QDockWidget *>(container);
    auto *const subWindow = qobject_cast<QMdiSubWindow *>(container);
    if (!dock && !subWindow)
        return container;
    QWidget *const present = dock ? dock->widget() : subWindow->widget();
    if (present)
        return present;
    auto *const made = new QWidget;
    if (dock)
        dock->setWidget(made);
    else
        subWindow->setWidget(made);
    return made;
}

QString VTTipContainer::obstacle() const
{
    if (!m_widget)
        return {};
    const QWidget *const holding = holder();
    if (!placesItsChildren(holding))
        return {};
    const QString className = QString::fromLatin1(holding->metaObject()->className());
    return QStringLiteral("a %1 places its children itself; return a widget inside it").arg(className);
}

void VTTipContainer::take(QWidget *tip) const
{
    QWidget *const holding = m_widget ? holder() : nullptr;
    if (!holding)
        return;
    tip->setParent(holding, Qt::WindowFlags());
    QLayout *const layout = layoutOf(holding);
    layout->addWidget(tip);
    if (!holding->isWindow())
        layout->setAlignment(tip, Qt::AlignTop | Qt::AlignLeft);
}

// Windows and docks follow what their layouts need.
void VTTipContainer::makeRoom() const
{
    QWidget *widget = m_widget;
    while (widget && !qobject_cast<QMdiSubWindow *>(widget))
        widget = widget->parentWidget();
    if (!widget || widget->isMaximized() || widget->isMinimized())
        return;
    if (QLayout *const layout = holder()->layout())
        layout->activate();
    widget->resize(widget->size().expandedTo(widget->sizeHint()));
}

void VTTipContainer::setTitle(const QString &title) const
{
    if (m_widget)
        m_widget->setWindowTitle(title);
}

void VTTipContainer::reveal(const QPoint &position) const
{
    QWidget *const container = m_widget;
    if (!container)
        return;
    const bool isDock = qobject_cast<QDockWidget *>(container);
    // A dock widget that floats sees to its own flags.
    if (container->isWindow() && !isDock)
        container->setWindowFlags(container->windowFlags() | Qt::WindowTitleHint | Qt::CustomizeWindowHint
                                  | Qt::WindowCloseButtonHint);
    if (container->isWindow())
        container->move(position);
    // From the outside in: what comes forward takes the room that there is then.
    QList<QPointer<QWidget>> path;
    for (QWidget *widget = container; widget && !widget->isWindow(); widget = widget->parentWidget())
        path.prepend(widget);
    for (const QPointer<QWidget> &widget : qAsConst(path)) {
        if (widget)
            bringForward(widget);
    }
    if (m_widget)
        m_widget->show();
    if (m_widget)
        makeRoom();
}

} // namespace Vidtips
