#include <QtTest/QTest>
class tst_QDeclarativeView : public QObject
{
    Q_OBJECT
};
QTEST_MAIN(tst_QDeclarativeView)
#include "tst_qdeclarativeview.moc"
