// A program that knows nothing of tips: a window with a few commands. Its arguments are what it does, in
// order, and it writes what came of each. With no more to do it waits for the end of its input.

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtGui/QHelpEvent>
#include <QtTest/QTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QToolTip>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

// Who ends by exit() leaves the application, and whatever that has, where it is.
bool leavesAllBehind = false;

[[noreturn]] void leave(int status)
{
    leavesAllBehind = true;
    std::exit(status);
}

constexpr int patience = 30000; // milliseconds, on a busy machine

void say(const QString &text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

class Window : public QMainWindow
{
public:
    Window()
    {
        setObjectName("window");
        setWindowTitle("Foreign");
        m_bar = addToolBar("Drawing");
        m_bar->setObjectName("drawing");
        QMenu *const menu = menuBar()->addMenu("&Draw");
        menuBar()->setNativeMenuBar(false);
        menu->setObjectName("draw");
        line = addCommand(menu, "draw.line", "&Line...", "Ctrl+L");
        line->setStatusTip("Draws a line from point to point");
        addCommand(menu, "draw.circle", "&Circle", "")->setToolTip("Circle");
        addCommand(menu, "", "Unnamed", "")->setWhatsThis("<p>What it <b>is</b></p>");
        addCommand(menu, "", "Twice", "");
        menu->addAction("Twice");
        setCentralWidget(makePage());
        statusBar()->addWidget(new QLabel("Ready"));
        resize(500, 300);
    }

    QWidget *widgetOf(const QString &name) const
    {
        for (QAction *action : m_bar->actions()) {
            if (action->objectName() == name)
                return m_bar->widgetForAction(action);
        }
        return findChild<QWidget *>(name);
    }

    QAction *line = nullptr;

private:
    QAction *addCommand(QMenu *menu, const QString &name, const QString &text, const QString &keys)
    {
        QPixmap icon(32, 32);
        icon.fill(text == "Unnamed" ? Qt::red : Qt::blue);
        QAction *const action = menu->addAction(icon, text);
        action->setObjectName(name);
        action->setShortcut(QKeySequence(keys));
        m_bar->addAction(action);
        return action;
    }

    QWidget *makePage()
    {
        auto *const area = new QMdiArea;
        auto *const page = new QWidget;
        auto *const button = new QPushButton("Plain", page);
        button->setObjectName("plain");
        button->setToolTip("A tool tip of its own");
        (new QPushButton(page))->setObjectName("silent");
        // Is narrow enough for buttons that scroll the tabs.
        auto *const tabs = new QTabBar(page);
        for (const char *text : {"One page", "Another page", "The last page"})
            tabs->addTab(text);
        tabs->setGeometry(0, 40, 100, 30);
        area->addSubWindow(page)->resize(200, 150);
        return area;
    }

    QToolBar *m_bar = nullptr;
};

QWidget *tipWindow()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && qstrcmp(window->metaObject()->className(), "Vidtips::VTWidget") == 0)
            return window;
    }
    return nullptr;
}

QString textOf(const QWidget *tip)
{
    const auto *const view = tip->findChild<QGraphicsView *>();
    const QList<QGraphicsItem *> items = view ? view->items() : QList<QGraphicsItem *>();
    for (const QGraphicsItem *item : items) {
        const QGraphicsObject *const object = const_cast<QGraphicsItem *>(item)->toGraphicsObject();
        const QString text = object ? object->property("text").toString() : QString();
        if (!text.isEmpty())
            return text;
    }
    return {};
}

void rest(QWidget *widget, const QPoint &position)
{
    QHelpEvent event(QEvent::ToolTip, position, widget->mapToGlobal(position));
    QApplication::sendEvent(widget, &event);
}

// Says which window came for a pointer that rests on the command: a tip, or the program's own tool tip.
void hover(QWidget *widget)
{
    QToolTip::hideText();
    rest(widget, widget->rect().center());
    const auto hasCome = [] { return tipWindow() || QToolTip::isVisible(); };
    if (!QTest::qWaitFor(hasCome, patience))
        return say("nothing");
    QString text;
    const auto hasText = [&text] {
        const QWidget *const tip = tipWindow();
        text = tip ? textOf(tip) : QString();
        return !tip || !text.isEmpty();
    };
    if (!QTest::qWaitFor(hasText, patience))
        return say("a tip without text");
    say(tipWindow() ? "tip: " + text : "tool tip: " + QToolTip::text());
}

void tellEnvironment()
{
    for (const char *variable : {"QT_PLUGIN_PATH", "QT_QPA_GENERIC_PLUGINS", "VIDTIPS_ATTACH"})
        say(QString("%1=%2").arg(variable, qEnvironmentVariable(variable, "unset")));
}

// Is there where the pointer is, and gone with the tip's first breath.
void deleteUnderPointer(Window &window)
{
    QWidget *const button = window.widgetOf("draw.line");
    QTimer::singleShot(0, window.line, [&window] { delete window.line; });
    rest(button, button->rect().center());
    QTest::qWait(50);
    say("deleted");
}

int perform(Window &window, const QStringList &steps)
{
    for (const QString &step : steps) {
        const QString what = step.section(':', 0, 0);
        const QString value = step.section(':', 1);
        if (what == "hover")
            hover(window.widgetOf(value));
        else if (what == "environment")
            tellEnvironment();
        else if (what == "shortcut")
            window.line->setShortcut(QKeySequence(value));
        else if (what == "text")
            window.line->setText(value);
        else if (what == "name")
            window.line->setObjectName(value);
        else if (what == "drop")
            delete window.line;
        else if (what == "delete")
            deleteUnderPointer(window);
        else if (what == "echo")
            say(QFile::decodeName(QByteArray(value.toLocal8Bit())));
        else if (what == "cat") {
            QFile input;
            input.open(stdin, QIODevice::ReadOnly);
            say("read: " + QString::fromUtf8(input.readAll()));
        } else if (what == "child")
            QProcess::execute(QCoreApplication::applicationFilePath(), {"environment", "return:0"});
        else if (what == "return")
            return value.toInt();
        else if (what == "exit")
            leave(value.toInt());
        else if (what == "_exit")
            _exit(value.toInt());
        else if (what == "signal")
            raise(value.toInt());
    }
    return QApplication::exec();
}

} // namespace

// Asked by the leak sanitizer at the program's end.
extern "C" __attribute__((visibility("default"))) int __lsan_is_turned_off()
{
    return leavesAllBehind;
}

int main(int argc, char *argv[])
{
    QStringList steps;
    for (int i = 1; i < argc; ++i)
        steps << QString::fromLocal8Bit(argv[i]);
    if (steps.value(0) == "no-widgets") {
        QGuiApplication application(argc, argv);
        QTimer::singleShot(0, &application, [] { QCoreApplication::exit(4); });
        return QGuiApplication::exec();
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName("foreign");
    if (steps.value(0) == "no-windows") {
        QTest::qWait(20);
        return 5;
    }
    if (steps.value(0) == "never")
        return QApplication::exec();
    if (steps.value(0) == "nameless") {
        QPushButton button("A button");
        button.show();
        return QApplication::exec();
    }
    if (steps.value(0) == "dialog") {
        QDialog dialog;
        dialog.setWindowTitle("Welcome");
        new QDialogButtonBox(QDialogButtonBox::Ok, &dialog);
        dialog.exec();
    }
    if (steps.value(0) == "language")
        QLocale::setDefault(QLocale(steps.value(1)));
    Window window;
    window.show();
    // What was added to the program comes with the first events.
    QTest::qWait(0);
    return perform(window, steps);
}
