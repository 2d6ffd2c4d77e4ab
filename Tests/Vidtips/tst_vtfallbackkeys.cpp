#include <Vidtips/VTFallbackKeys_p.h>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QWizard>

using namespace Vidtips;

class tst_VTFallbackKeys : public QObject
{
    Q_OBJECT

private slots:
    void nothingOfNull();
    void iconNameIsThatOfTheTheme();
    void plainText_data();
    void plainText();
    void label();
    void dialogButtons();
    void wizardButtons_data();
    void wizardButtons();
    void container();
    void windowsAreInNoContainer();

private:
    QTemporaryDir themes;
};

void tst_VTFallbackKeys::nothingOfNull()
{
    QVERIFY(FallbackKeys::iconName(nullptr).isEmpty());
    QVERIFY(FallbackKeys::plainText({}).isEmpty());
    QVERIFY(FallbackKeys::label(nullptr).isEmpty());
    QVERIFY(FallbackKeys::standardButton(nullptr).isEmpty());
    QVERIFY(!FallbackKeys::container(nullptr));
}

void tst_VTFallbackKeys::iconNameIsThatOfTheTheme()
{
    QVERIFY(QDir(themes.path()).mkpath("tips/16"));
    QFile index(themes.filePath("tips/index.theme"));
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=Tips\nDirectories=16\n[16]\nSize=16\n");
    index.close();
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    QVERIFY(picture.save(themes.filePath("tips/16/edit-cut.png")));
    QIcon::setThemeSearchPaths({themes.path()});
    QIcon::setThemeName("tips");
    QAction action;
    QCOMPARE(FallbackKeys::iconName(&action), QString());
    action.setIcon(QIcon(picture));
    QCOMPARE(FallbackKeys::iconName(&action), QString());
    action.setIcon(QIcon::fromTheme("edit-cut"));
    QCOMPARE(FallbackKeys::iconName(&action), QStringLiteral("edit-cut"));
}

void tst_VTFallbackKeys::plainText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &text, const QString &expected) {
        QTest::newRow(name) << text << expected;
    };
    row("mnemonic", "Save &As", "Save As");
    row("two mnemonics", "&Save &As", "Save As");
    row("ampersand", "Cut && Paste", "Cut & Paste");
    row("ampersand with a mnemonic", "&&&Cut", "&Cut");
    row("ampersand at the end", "Cut &", "Cut &");
    row("appended mnemonic", QString::fromUtf8("保存(&S)"), QString::fromUtf8("保存"));
    row("appended after a blank", QString::fromUtf8("保存 (&S)..."), QString::fromUtf8("保存"));
    row("ampersand in brackets", "Both (&&)", "Both (&)");
    row("words in brackets", "Cut (&all)", "Cut (all)");
    row("shortcut", "Cut\tCtrl+X", "Cut");
    row("three points", "Open...", "Open");
    row("ellipsis", QString::fromUtf8("Open …"), "Open");
    row("points inside", "1.5 lines", "1.5 lines");
    row("lines and blanks", "  Cut\n  out ", "Cut out");
    row("only points", "...", "");
    row("only a shortcut", "\tCtrl+X", "");
}

void tst_VTFallbackKeys::plainText()
{
    QFETCH(QString, text);
    QTEST(FallbackKeys::plainText(text), "expected");
}

void tst_VTFallbackKeys::label()
{
    QPushButton button("&Cut...");
    button.setToolTip("Another");
    QCOMPARE(FallbackKeys::label(&button), QStringLiteral("Cut"));
    QToolButton icon;
    QCOMPARE(FallbackKeys::label(&icon), QString());
    icon.setToolTip("Cut &out");
    QCOMPARE(FallbackKeys::label(&icon), QStringLiteral("Cut out"));
    QGroupBox group("&Margins");
    QCOMPARE(FallbackKeys::label(&group), QStringLiteral("Margins"));
    group.setTitle({});
    group.setToolTip("Margins");
    QCOMPARE(FallbackKeys::label(&group), QString());
    const QLabel other("Cut");
    QCOMPARE(FallbackKeys::label(&other), QString());
}

void tst_VTFallbackKeys::dialogButtons()
{
    QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::RestoreDefaults);
    // They stay what they are when a program writes on them.
    box.button(QDialogButtonBox::Ok)->setText("Do it");
    QCOMPARE(FallbackKeys::standardButton(box.button(QDialogButtonBox::Ok)),
             QStringLiteral("QDialogButtonBox.Ok"));
    QCOMPARE(FallbackKeys::standardButton(box.button(QDialogButtonBox::RestoreDefaults)),
             QStringLiteral("QDialogButtonBox.RestoreDefaults"));
    QCOMPARE(FallbackKeys::standardButton(box.addButton("Ok", QDialogButtonBox::AcceptRole)), QString());
    QCOMPARE(FallbackKeys::standardButton(&box), QString());
    const QPushButton alone("OK");
    QCOMPARE(FallbackKeys::standardButton(&alone), QString());
}

void tst_VTFallbackKeys::wizardButtons_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("expected");
    int which = QWizard::BackButton;
    const char *const names[] = {"BackButton",    "NextButton",    "CommitButton",
                                 "FinishButton",  "CancelButton",  "HelpButton",
                                 "CustomButton1", "CustomButton2", "CustomButton3"};
    for (const char *const name : names)
        QTest::newRow(name) << which++ << QStringLiteral("QWizard.") + name;
}

// Qt's names for its buttons are known only from looking.
void tst_VTFallbackKeys::wizardButtons()
{
    QFETCH(int, which);
    QWizard wizard;
    wizard.addPage(new QWizardPage);
    QTEST(FallbackKeys::standardButton(wizard.button(QWizard::WizardButton(which))), "expected");
}

void tst_VTFallbackKeys::container()
{
    QMainWindow window;
    auto *const dock = new QDockWidget(&window);
    auto *const page = new QWidget(dock);
    auto *const button = new QPushButton(page);
    QCOMPARE(FallbackKeys::container(button), dock);
    QCOMPARE(FallbackKeys::container(page), dock);
    QVERIFY(!FallbackKeys::container(dock));
    auto *const field = new QLabel(window.statusBar());
    QCOMPARE(FallbackKeys::container(field), window.statusBar());
    QVERIFY(!FallbackKeys::container(window.statusBar()));
    auto *const elsewhere = new QPushButton(&window);
    QVERIFY(!FallbackKeys::container(elsewhere));
    auto *const inner = new QStatusBar(page);
    QCOMPARE(FallbackKeys::container(new QLabel(inner)), inner);
}

void tst_VTFallbackKeys::windowsAreInNoContainer()
{
    QMainWindow window;
    auto *const dock = new QDockWidget(&window);
    auto *const button = new QPushButton(dock);
    dock->setFloating(true);
    QVERIFY(dock->isWindow());
    QCOMPARE(FallbackKeys::container(button), dock);
    auto *const dialog = new QDialog(dock);
    QVERIFY(!FallbackKeys::container(dialog));
    QVERIFY(!FallbackKeys::container(new QPushButton(dialog)));
}

QTEST_MAIN(tst_VTFallbackKeys)
#include "tst_vtfallbackkeys.moc"
