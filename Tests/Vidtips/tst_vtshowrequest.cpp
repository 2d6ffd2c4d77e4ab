#include <Vidtips/VTShowRequest_p.h>

#include "MessageRecorder.h"

#include <QtCore/QLoggingCategory>
#include <QtTest/QTest>
#include <QtWidgets/QPushButton>

using Vidtips::VTShowRequest;

class tst_VTShowRequest : public QObject
{
    Q_OBJECT

private slots:
    void widgetOfTheObject();
    void logsItsDecision();
    void objectThatIsGone();
    void logIsOffByDefault();
};

void tst_VTShowRequest::widgetOfTheObject()
{
    QPushButton button;
    QObject object;
    QCOMPARE((VTShowRequest{"cut", {}, &button, {}}).widget(), static_cast<QWidget *>(&button));
    QVERIFY(!(VTShowRequest{"cut", {}, &object, {}}).widget());
    QVERIFY(!VTShowRequest().widget());
}

void tst_VTShowRequest::logsItsDecision()
{
    QLoggingCategory::setFilterRules("vidtips.show=true");
    QPushButton button;
    button.setObjectName("cutButton");
    const MessageRecorder log;
    const VTShowRequest request{"edit.cut", QPoint(-3, 20), &button, QRect(1, 2, 3, 4)};
    request.log("is on screen already");
    QCOMPARE(log.texts(),
             QStringList{"\"edit.cut\" at -3,20 for QPushButton \"cutButton\": is on screen already"});
    QCOMPARE(log.messages().constFirst().category, QByteArray("vidtips.show"));
}

void tst_VTShowRequest::objectThatIsGone()
{
    QLoggingCategory::setFilterRules("vidtips.show=true");
    VTShowRequest request;
    {
        QPushButton button;
        request = {"cut", {}, &button, {}};
    }
    QVERIFY(!request.widget());
    const MessageRecorder log;
    request.log("stays");
    QCOMPARE(log.texts(), QStringList{"\"cut\" at 0,0 for no object: stays"});
}

void tst_VTShowRequest::logIsOffByDefault()
{
    QLoggingCategory::setFilterRules(QString());
    const MessageRecorder log;
    VTShowRequest().log("stays");
    QCOMPARE(log.texts(), QStringList());
}

QTEST_MAIN(tst_VTShowRequest)
#include "tst_vtshowrequest.moc"
