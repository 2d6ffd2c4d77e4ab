#include <Vidtips/VTContext.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class tst_VTContext : public QObject
{
    Q_OBJECT

private slots:
    void signalsInDeclaredOrder();
    void setEmitsBothSignalsAlsoForAnEqualValue();
    void readersSeeOldValueBeforeAndNewValueAfter();
    void getPrefersAnInvalidStoredValueToTheDefault();
    void keysAreSorted();
    void assignmentDetachesAndEmitsNothing();
    void selfAssignmentKeepsSettings();
    void copyHasNoParent();
};

void tst_VTContext::signalsInDeclaredOrder()
{
    const QMetaObject &meta = VTContext::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
    const QMetaMethod did = meta.method(meta.methodOffset());
    const QMetaMethod will = meta.method(meta.methodOffset() + 1);
    QCOMPARE(did.methodSignature(), QByteArray("settingDidChange(VTContextKey)"));
    QCOMPARE(will.methodSignature(), QByteArray("settingWillChange(VTContextKey)"));
    QCOMPARE(did.methodType(), QMetaMethod::Signal);
    QCOMPARE(will.methodType(), QMetaMethod::Signal);
    QCOMPARE(did.parameterNames(), QList<QByteArray>{"key"});
    QCOMPARE(will.parameterNames(), QList<QByteArray>{"key"});
}

void tst_VTContext::setEmitsBothSignalsAlsoForAnEqualValue()
{
    VTContext context;
    context.set(7, 1);
    QStringList order;
    connect(&context, &VTContext::settingWillChange, this,
            [&](int key) { order << QStringLiteral("will %1").arg(key); });
    connect(&context, &VTContext::settingDidChange, this,
            [&](int key) { order << QStringLiteral("did %1").arg(key); });
    context.set(7, 1);
    QCOMPARE(order, (QStringList{"will 7", "did 7"}));
}

void tst_VTContext::readersSeeOldValueBeforeAndNewValueAfter()
{
    VTContext context;
    context.set(7, "old");
    QStringList seen;
    const auto read = [&](int key) { seen << context.get(key, {}).toString(); };
    connect(&context, &VTContext::settingWillChange, this, read);
    connect(&context, &VTContext::settingDidChange, this, read);
    context.set(7, "new");
    QCOMPARE(seen, (QStringList{"old", "new"}));
}

void tst_VTContext::getPrefersAnInvalidStoredValueToTheDefault()
{
    VTContext context;
    QCOMPARE(context.get(3, 42), QVariant(42));
    QVERIFY(!context.contains(3));
    context.set(3, QVariant());
    QVERIFY(!context.get(3, 42).isValid());
    QVERIFY(context.contains(3));
}

void tst_VTContext::keysAreSorted()
{
    VTContext context;
    QVERIFY(context.keys().isEmpty());
    for (int key : {30, -4, 2})
        context.set(key, key);
    QCOMPARE(context.keys(), (QList<int>{-4, 2, 30}));
}

void tst_VTContext::assignmentDetachesAndEmitsNothing()
{
    VTContext a;
    a.set(1, "a");
    VTContext b;
    b.set(2, "b");
    QSignalSpy will(&b, &VTContext::settingWillChange);
    QSignalSpy did(&b, &VTContext::settingDidChange);
    b = a;
    QCOMPARE(will.count() + did.count(), 0);
    QCOMPARE(b.keys(), QList<int>{1});
    a.set(1, "changed");
    QCOMPARE(b.get(1, {}).toString(), QStringLiteral("a"));
}

void tst_VTContext::selfAssignmentKeepsSettings()
{
    VTContext a;
    a.set(1, "a");
    VTContext &alias = a;
    a = alias;
    QCOMPARE(a.get(1, {}).toString(), QStringLiteral("a"));
}

void tst_VTContext::copyHasNoParent()
{
    QObject owner;
    VTContext original(&owner);
    original.setObjectName("original");
    original.set(1, "a");
    VTContext copy(original);
    QVERIFY(!copy.parent());
    QVERIFY(copy.objectName().isEmpty());
    copy.set(1, "b");
    QCOMPARE(original.get(1, {}).toString(), QStringLiteral("a"));
}

QTEST_GUILESS_MAIN(tst_VTContext)
#include "tst_vtcontext.moc"
