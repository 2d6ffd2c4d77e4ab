#include "vocabulary/ShortcutName.h"

#include <QtTest/QTest>

class tst_ShortcutName : public QObject
{
    Q_OBJECT

private slots:
    void problemWith_data();
    void problemWith();
};

void tst_ShortcutName::problemWith_data()
{
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &shortcut, const QString &expected = {}) {
        QTest::newRow(name) << shortcut << expected;
    };
    row("none", "");
    row("one key", "L");
    row("held keys", "Ctrl+Shift+L");
    row("small letters", "ctrl + alt + l");
    row("plus itself", "Ctrl++");
    row("pointer", "Alt+click");
    row("other languages", "Strg+Umschalt+Entf");
    row("several", "Ctrl+L, Ctrl+M");
    row("a last key of any name", "Altt");
    row("letters in another order", "Crtl+L", "there is no key \"Crtl\": did you mean \"Ctrl\"?");
    row("a letter too many", "Ctrl+Altt+L", "there is no key \"Altt\": did you mean \"Alt\"?");
    row("signs of messages", "Sh%1ft+L", "there is no key \"Sh%1ft\": did you mean \"Shift\"?");
}

void tst_ShortcutName::problemWith()
{
    QFETCH(QString, shortcut);
    QTEST(ShortcutName::problemWith(shortcut), "expected");
}

QTEST_GUILESS_MAIN(tst_ShortcutName)
#include "tst_shortcutname.moc"
