#include "guard/qdeclarativeitemcount_p.h"

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
