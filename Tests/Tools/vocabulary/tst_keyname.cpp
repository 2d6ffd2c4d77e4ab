#include "vocabulary/KeyName.h"

#include <QtTest/QTest>

class tst_KeyName : public QObject
{
    Q_OBJECT

private slots:
    void problemWith_data();
    void problemWith();
};

void tst_KeyName::problemWith_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &key, const QString &expected) {
        QTest::newRow(name) << key << expected;
    };
    row("empty", "", "the key is empty");
    row("letters, digits and signs", "edit.Cut_2-a/b:c&<>", "");
    row("other letters", QString::fromUtf8("Schöne保存"), "");
    row("blank", "a b", "the key \"a b\" holds a blank");
    row("tab", "a\t", "the key \"a\t\" holds a blank");
    row("blank that does not break", QString("a\u00A0b"), QString("the key \"a\u00A0b\" holds a blank"));
    row("straight quote", "a'b", "the key \"a'b\" holds a quotation mark, '");
    row("typographic quote", QString("\u201Ea"),
        QString("the key \"\u201Ea\" holds a quotation mark, \u201E"));
    row("invisible", QString("a\u200Bb"), "the key \"ab\" holds the invisible character U+200b");
    row("control", QString("ab") + QChar(7), "the key \"ab\" holds the invisible character U+0007");
    row("signs of messages", QString("%1%2\u200B"), "the key \"%1%2\" holds the invisible character U+200b");
    row("a picture", QString::fromUtf8("\xf0\x9f\x96\x8c"), "");
    row("invisible beyond 16 bits", QString::fromUtf8("a\xf3\xa0\x80\x81"),
        "the key \"a\" holds the invisible character U+e0001");
    row("the first one counts", "a\"b c", "the key \"a\"b c\" holds a quotation mark, \"");
}

void tst_KeyName::problemWith()
{
    QFETCH(QString, key);
    QTEST(KeyName::problemWith(key), "expected");
}

QTEST_GUILESS_MAIN(tst_KeyName)
#include "tst_keyname.moc"
