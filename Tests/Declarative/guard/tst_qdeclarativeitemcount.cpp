#include "guard/qdeclarativeitemcount_p.h"

#include <QtCore/QTemporaryDir>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QTest>

/** Items come and go one by one; what they are is another test's. */
class tst_QDeclarativeItemCount : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsOfEachAboveTheMost()
    {
        const QQmlEngine engine;
        int told = 0;
        QDeclarativeItemCount *const count = QDeclarativeItemCount::begin(&engine, [&told] { ++told; });
        add(count, QDeclarativeItemCount::most);
        QVERIFY(!QDeclarativeItemCount::isExceeded(&engine));
        QCOMPARE(told, 0);
        count->add();
        QVERIFY(QDeclarativeItemCount::isExceeded(&engine));
        QCOMPARE(told, 1);
        count->add();
        QCOMPARE(told, 2);
        drop(count, 2);
        QVERIFY(!QDeclarativeItemCount::isExceeded(&engine));
        QCOMPARE(told, 2);
        count->end();
        drop(count, QDeclarativeItemCount::most);
    }

    void isOfOneEngine()
    {
        const QQmlEngine engine;
        const QQmlEngine other;
        QVERIFY(!QDeclarativeItemCount::of(&engine));
        QVERIFY(!QDeclarativeItemCount::isExceeded(&engine));
        QDeclarativeItemCount *const count = QDeclarativeItemCount::begin(&engine, [] {});
        QCOMPARE(QDeclarativeItemCount::of(&engine), count);
        QVERIFY(!QDeclarativeItemCount::of(&other));
        QVERIFY(!QDeclarativeItemCount::of(nullptr));
        QCOMPARE(QDeclarativeItemCount::of(&engine), count);
        count->end();
        QVERIFY(!QDeclarativeItemCount::of(&engine));
    }

    void outlivesItsEngineWithItems()
    {
        int told = 0;
        QDeclarativeItemCount *count = nullptr;
        {
            const QQmlEngine engine;
            count = QDeclarativeItemCount::begin(&engine, [&told] { ++told; });
            add(count, QDeclarativeItemCount::most);
            count->end();
            QVERIFY(!QDeclarativeItemCount::of(&engine));
        }
        count->add();
        QCOMPARE(told, 0);
        drop(count, QDeclarativeItemCount::most + 1);
    }

    // As of two views of one engine, which is nobody's to have.
    void theLastOneCounts()
    {
        const QQmlEngine engine;
        QDeclarativeItemCount *const first = QDeclarativeItemCount::begin(&engine, [] {});
        QDeclarativeItemCount *const last = QDeclarativeItemCount::begin(&engine, [] {});
        QCOMPARE(QDeclarativeItemCount::of(&engine), last);
        first->end();
        QCOMPARE(QDeclarativeItemCount::of(&engine), last);
        last->end();
        QVERIFY(!QDeclarativeItemCount::of(&engine));
    }

    void admitsWhatMakesFew_data()
    {
        QTest::addColumn<int>("files");
        QTest::addColumn<bool>("isAdmitted");
        QTest::newRow("one object") << 0 << true;
        QTest::newRow("11,111 objects") << 4 << true;
        QTest::newRow("111,111 objects") << 5 << false;
        QTest::newRow("1,111,111 objects") << 6 << false;
        QTest::newRow("more than can be counted") << 9 << false;
    }

    void admitsWhatMakesFew()
    {
        QFETCH(int, files);
        QFETCH(bool, isAdmitted);
        const QTemporaryDir folder;
        for (int i = 0; i <= files; ++i) {
            const QByteArray next = "Part" + QByteArray::number(i + 1) + " { },";
            const QByteArray parts = "property list<QtObject> parts: [" + next.repeated(10).chopped(1) + ']';
            QFile file(folder.filePath(QStringLiteral("Part%1.qml").arg(i)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("import QtQml 2.0\nQtObject { " + (i < files ? parts : QByteArray()) + " }");
        }
        QQmlEngine engine;
        QQmlComponent component(&engine, QUrl::fromLocalFile(folder.filePath(QStringLiteral("Part0.qml"))));
        QVERIFY2(component.isReady(), qPrintable(component.errorString()));
        // Where nobody counts it is a warning.
        QStringList warnings;
        engine.setOutputWarningsToStandardError(false);
        connect(&engine, &QQmlEngine::warnings, this, [&warnings](const QList<QQmlError> &errors) {
            for (const QQmlError &error : errors)
                warnings << error.description();
        });
        QCOMPARE(QDeclarativeItemCount::admits(&component), isAdmitted);
        const QString warning = QStringLiteral("Component too large: more than 100000 objects");
        QCOMPARE(warnings, isAdmitted ? QStringList() : QStringList{warning});
        int told = 0;
        QDeclarativeItemCount *const count = QDeclarativeItemCount::begin(&engine, [&told] { ++told; });
        QCOMPARE(QDeclarativeItemCount::admits(&component), isAdmitted);
        QCOMPARE(told, isAdmitted ? 0 : 1);
        count->end();
    }

    void admitsWhatIsNotReady()
    {
        QQmlEngine engine;
        QQmlComponent component(&engine);
        QVERIFY(QDeclarativeItemCount::admits(&component));
    }

private:
    static void add(QDeclarativeItemCount *count, int items)
    {
        while (items-- > 0)
            count->add();
    }

    static void drop(QDeclarativeItemCount *count, int items)
    {
        while (items-- > 0)
            count->drop();
    }
};

QTEST_GUILESS_MAIN(tst_QDeclarativeItemCount)

#include "tst_qdeclarativeitemcount.moc"
