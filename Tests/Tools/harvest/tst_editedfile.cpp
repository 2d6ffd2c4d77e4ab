#include "harvest/EditedFile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <utility>

namespace {

const QString root = QStringLiteral("<vidtips version=\"1\">");

} // namespace

class tst_EditedFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void makesAFileThatIsNotThere();
    void writesNothingWithoutAChange();
    void append_data();
    void append();
    void comment_data();
    void comment();
    void uncomment_data();
    void uncomment();
    void severalChangesAtOnce();
    void refusesToRead_data();
    void refusesToRead();
    void refusesToWrite_data();
    void refusesToWrite();

private:
    QString path() const { return folder->filePath("Control/tips.xml"); }
    void write(const QByteArray &content) const
    {
        QVERIFY(QDir(folder->path()).mkpath("Control"));
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }
    QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QScopedPointer<QTemporaryDir> folder;
};

void tst_EditedFile::init()
{
    folder.reset(new QTemporaryDir);
}

void tst_EditedFile::makesAFileThatIsNotThere()
{
    EditedFile file(path(), root);
    QCOMPARE(file.read(), QString());
    file.append("    <vidtip key=\"cut\"/>\n");
    QCOMPARE(file.write(), QString());
    QCOMPARE(content(),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<vidtips version=\"1\">\n"
                        "    <vidtip key=\"cut\"/>\n</vidtips>\n"));
}

void tst_EditedFile::writesNothingWithoutAChange()
{
    EditedFile file(path(), root);
    QCOMPARE(file.read(), QString());
    QCOMPARE(file.write(), QString());
    QVERIFY(!QFile::exists(path()));
    // What somebody else writes meanwhile is not undone.
    write("<a></a>");
    QCOMPARE(file.read(), QString());
    write("<b></b>");
    QCOMPARE(file.write(), QString());
    QCOMPARE(content(), QByteArray("<b></b>"));
}

void tst_EditedFile::append_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("lineEnd");
    const std::pair<const char *, QByteArray> contents[] = {
        {"lines", "<a>\n|</a>\n"},
        {"no line at the end", "<a>\n|</a>"},
        {"byte order mark", "\xEF\xBB\xBF<a>\n|</a>"},
        {"odd blanks and quotes", "<a  x = 'y'\t>\n\t\n|</a >\n"},
        {"UTF-8", "<?xml version='1.0' encoding='utf-8'?><a>\xC3\xA4\n|</a>"},
        {"another encoding in a comment", "<a><!-- encoding='x' -->\n|</a>"}};
    for (const auto &content : contents)
        QTest::newRow(content.first) << content.second << QByteArray("\n");
    QTest::newRow("lines that end as Windows has it") << QByteArray("<a>\r\n|</a>\r\n") << QByteArray("\r\n");
}

// The bar is where the line comes.
void tst_EditedFile::append()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, lineEnd);
    write(QByteArray(content).replace("|", ""));
    EditedFile file(path(), root);
    QCOMPARE(file.read(), QString());
    file.append("<b/>\n");
    QCOMPARE(file.write(), QString());
    QCOMPARE(this->content(), QByteArray(content).replace("|", "<b/>" + lineEnd));
}

void tst_EditedFile::comment_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("line");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const QByteArray &before, int line, const QByteArray &after) {
        QTest::newRow(name) << before << line << after;
    };
    row("indented as the element", "<a>\n  <b/>\n</a>\n", 2, "<a>\n  <!-- gone - -x -->\n  <b/>\n</a>\n");
    row("lines that end as Windows has it", "<a>\r\n\t<b/>\r\n</a>", 2,
        "<a>\r\n\t<!-- gone - -x -->\r\n\t<b/>\r\n</a>");
    row("there already", "<a>\n<!-- gone - -x -->\n<b/>\n</a>", 3, "<a>\n<!-- gone - -x -->\n<b/>\n</a>");
    row("there above another", "<a>\n<!-- gone - -x -->\n<!-- y -->\n<b/>\n</a>", 4,
        "<a>\n<!-- gone - -x -->\n<!-- y -->\n<b/>\n</a>");
    row("there above another element", "<a>\n<!-- gone - -x -->\n<b/>\n<c/>\n</a>", 4,
        "<a>\n<!-- gone - -x -->\n<b/>\n<!-- gone - -x -->\n<c/>\n</a>");
    row("there above an element with a comment behind it",
        "<a>\n<!-- gone - -x -->\n<b/> <!-- y -->\n<c/>\n</a>", 4,
        "<a>\n<!-- gone - -x -->\n<b/> <!-- y -->\n<!-- gone - -x -->\n<c/>\n</a>");
    row("there above an element with a comment before it",
        "<a>\n<!-- gone - -x -->\n<!-- y --><b/>\n<c/>\n</a>", 4,
        "<a>\n<!-- gone - -x -->\n<!-- y --><b/>\n<!-- gone - -x -->\n<c/>\n</a>");
    row("in the middle of a tag", "<a>\n<b\nx='y'/>\n</a>", 3, "<a>\n<b\nx='y'/>\n</a>");
    row("behind the last line", "<a>\n</a>", 9, "<a>\n</a>");
}

void tst_EditedFile::comment()
{
    QFETCH(QByteArray, before);
    QFETCH(int, line);
    write(before);
    EditedFile file(path(), root);
    QCOMPARE(file.read(), QString());
    file.comment(line, "gone --x");
    QCOMPARE(file.write(), QString());
    QTEST(content(), "after");
}

void tst_EditedFile::uncomment_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("line");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const QByteArray &before, int line, const QByteArray &after) {
        QTest::newRow(name) << before << line << after;
    };
    row("above", "<a>\n  <!-- gone -->\n  <b/>\n</a>", 3, "<a>\n  <b/>\n</a>");
    row("above, as Windows has it", "<a>\r\n<!-- gone -->\r\n<b/>\r\n</a>", 3, "<a>\r\n<b/>\r\n</a>");
    row("above another", "<a>\n<!-- gone -->\n<!-- y -->\n<b/>\n</a>", 4, "<a>\n<!-- y -->\n<b/>\n</a>");
    row("another comment", "<a>\n<!-- gone or not -->\n<b/>\n</a>", 3,
        "<a>\n<!-- gone or not -->\n<b/>\n</a>");
    row("above another element", "<a>\n<!-- gone -->\n<c/>\n<b/>\n</a>", 4,
        "<a>\n<!-- gone -->\n<c/>\n<b/>\n</a>");
    row("nothing is above the first line", "<a>\n</a>", 1, "<a>\n</a>");
    row("behind the last line", "<a>\n</a>", 9, "<a>\n</a>");
}

void tst_EditedFile::uncomment()
{
    QFETCH(QByteArray, before);
    QFETCH(int, line);
    write(before);
    EditedFile file(path(), root);
    QCOMPARE(file.read(), QString());
    file.uncomment(line, "gone");
    QCOMPARE(file.write(), QString());
    QTEST(content(), "after");
}

// Lines are those of the file as it was read, whatever comes above them.
void tst_EditedFile::severalChangesAtOnce()
{
    write("<a>\n<b/>\n<!-- gone -->\n<c/>\n<d/>\n</a>\n");
    EditedFile file(path(), root);
    QCOMPARE(file.read(), QString());
    file.comment(2, "new");
    file.uncomment(4, "gone");
    file.comment(5, "last");
    file.append("<e/>\n");
    file.append("<f/>\n");
    QCOMPARE(file.write(), QString());
    QCOMPARE(content(), QByteArray("<a>\n<!-- new -->\n<b/>\n<c/>\n<!-- last -->\n<d/>\n<e/>\n<f/>\n</a>\n"));
}

void tst_EditedFile::refusesToRead_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::newRow("another encoding") << QByteArray("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a></a>");
    QTest::newRow("not what it says") << QByteArray("<?xml version='1.0' encoding='UTF-8'?><a>\xE4</a>");
    QTest::newRow("ends in a character") << QByteArray("<a></a><!-- \xC3");
}

void tst_EditedFile::refusesToRead()
{
    QFETCH(QByteArray, before);
    write(before);
    EditedFile file(path(), root);
    QCOMPARE(file.read(), QString("cannot add to %1: it is not in UTF-8").arg(path()));
    EditedFile noFile(folder->path(), root);
    QVERIFY(noFile.read().startsWith("cannot read " + folder->path() + ": "));
}

void tst_EditedFile::refusesToWrite_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QString>("expected");
    QTest::newRow("no end") << QByteArray("<a/>") << "<b/>\n"
                            << "cannot add to %1: its document element has no end";
    QTest::newRow("empty") << QByteArray() << "<b/>\n"
                           << "cannot add to %1: its document element has no end";
    QTest::newRow("broken already") << QByteArray("<a><c></a>") << "<b/>\n"
                                    << "cannot add to %1: ";
    QTest::newRow("broken by what is added") << QByteArray("<a></a>") << "<b>\n"
                                             << "cannot add to %1: ";
}

void tst_EditedFile::refusesToWrite()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, lines);
    QFETCH(QString, expected);
    write(before);
    EditedFile file(path(), root);
    QCOMPARE(file.read(), QString());
    file.append(lines);
    const QString problem = file.write();
    QVERIFY2(problem.startsWith(expected.arg(path())), qPrintable(problem));
    QCOMPARE(content(), before);
}

QTEST_GUILESS_MAIN(tst_EditedFile)
#include "tst_editedfile.moc"
