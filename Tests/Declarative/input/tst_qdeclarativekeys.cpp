#include "ItemScene.h"

#include <QtTest/QTest>

/** Keys and KeyNavigation: each signal, who sees a key when, and what mirroring turns. */
class tst_QDeclarativeKeys : public QObject
{
    Q_OBJECT

private slots:
    void specificSignal_data();
    void specificSignal();
    void priority_data();
    void priority();
    void forwardedToDestroyed();
    void forwardedToItself();
    void navigationFollowsMirroring();
    void navigationOfHiddenRing();
    void onlyForItems_data();
    void onlyForItems();
    void inputMethodIsForwarded();
};

void tst_QDeclarativeKeys::specificSignal_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QByteArray>("handler");
    const auto row = [](int key, const char *handler) {
        QTest::newRow(handler) << key << QByteArray(handler);
    };
    for (int digit = 0; digit < 10; ++digit)
        row(Qt::Key_0 + digit, "onDigit" + QByteArray::number(digit) + "Pressed");
    row(Qt::Key_Left, "onLeftPressed");
    row(Qt::Key_Right, "onRightPressed");
    row(Qt::Key_Up, "onUpPressed");
    row(Qt::Key_Down, "onDownPressed");
    row(Qt::Key_Tab, "onTabPressed");
    row(Qt::Key_Backtab, "onBacktabPressed");
    row(Qt::Key_Asterisk, "onAsteriskPressed");
    row(Qt::Key_NumberSign, "onNumberSignPressed");
    row(Qt::Key_Escape, "onEscapePressed");
    row(Qt::Key_Return, "onReturnPressed");
    row(Qt::Key_Enter, "onEnterPressed");
    row(Qt::Key_Delete, "onDeletePressed");
    row(Qt::Key_Space, "onSpacePressed");
    row(Qt::Key_Back, "onBackPressed");
    row(Qt::Key_Cancel, "onCancelPressed");
    row(Qt::Key_Select, "onSelectPressed");
    row(Qt::Key_Yes, "onYesPressed");
    row(Qt::Key_No, "onNoPressed");
    row(Qt::Key_Context1, "onContext1Pressed");
    row(Qt::Key_Context2, "onContext2Pressed");
    row(Qt::Key_Context3, "onContext3Pressed");
    row(Qt::Key_Context4, "onContext4Pressed");
    row(Qt::Key_Call, "onCallPressed");
    row(Qt::Key_Hangup, "onHangupPressed");
    row(Qt::Key_Flip, "onFlipPressed");
    row(Qt::Key_Menu, "onMenuPressed");
    row(Qt::Key_VolumeUp, "onVolumeUpPressed");
    row(Qt::Key_VolumeDown, "onVolumeDownPressed");
}

void tst_QDeclarativeKeys::specificSignal()
{
    QFETCH(int, key);
    QFETCH(QByteArray, handler);
    ItemScene scene("Item { id: root; width: 10; height: 10; property string seen: ''; focus: true\n"
                    "Keys."
                    + handler
                    + ": { root.seen += 's' + event.accepted }\n"
                      "Keys.onPressed: root.seen += 'p' }");
    QVERIFY(scene.key(key));
    QCOMPARE(scene.root()->property("seen").toString(), QStringLiteral("strue"));
    scene.key(Qt::Key_F12);
    QCOMPARE(scene.root()->property("seen").toString(), QStringLiteral("struep"));
}

/** Writes down the keys it gets, and takes the letter A. */
class KeyTaker : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(QString seen MEMBER m_seen NOTIFY seenChanged)

Q_SIGNALS:
    void seenChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        m_seen += QLatin1Char('i');
        Q_EMIT seenChanged();
        if (event->key() != Qt::Key_A)
            QDeclarativeItem::keyPressEvent(event);
    }

private:
    QString m_seen;
};

void tst_QDeclarativeKeys::priority_data()
{
    QTest::addColumn<QByteArray>("setup");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("seen");
    const QByteArray after = "Keys.priority: Keys.AfterItem;";
    const QByteArray take = "Keys.onPressed: { seen += 'k'; event.accepted = true }";
    const QByteArray leave = "Keys.onPressed: seen += 'k'";
    QTest::newRow("before, left") << leave << int(Qt::Key_A) << "ki";
    QTest::newRow("before, taken") << take << int(Qt::Key_A) << "k";
    QTest::newRow("after, taken by the item") << QByteArray(after + leave) << int(Qt::Key_A) << "i";
    QTest::newRow("after, left by the item") << QByteArray(after + leave) << int(Qt::Key_B) << "ik";
    QTest::newRow("disabled") << QByteArray("Keys.enabled: false;" + take) << int(Qt::Key_A) << "i";
}

void tst_QDeclarativeKeys::priority()
{
    QFETCH(QByteArray, setup);
    QFETCH(int, key);
    QFETCH(QString, seen);
    qmlRegisterType<KeyTaker>("Test", 1, 0, "KeyTaker");
    ItemScene scene("Item { width: 10; height: 10; KeyTaker { objectName: 'taker'; focus: true; " + setup
                        + " } }",
                    "import Test 1.0");
    scene.key(key);
    QCOMPARE(scene.item("taker")->property("seen").toString(), seen);
}

void tst_QDeclarativeKeys::forwardedToDestroyed()
{
    ItemScene scene("Item { id: root; width: 10; height: 10; focus: true; property int seen: 0\n"
                    "Item { id: gone; objectName: 'gone' }\n"
                    "Item { id: kept; Keys.onPressed: { root.seen++; event.accepted = true } }\n"
                    "Keys.forwardTo: [ gone, kept ] }");
    delete scene.item("gone");
    QVERIFY(scene.key(Qt::Key_A));
    QCOMPARE(scene.root()->property("seen").toInt(), 1);
}

void tst_QDeclarativeKeys::forwardedToItself()
{
    ItemScene scene("Item { id: root; width: 10; height: 10; focus: true; property int seen: 0\n"
                    "Keys.forwardTo: [ root ]; Keys.onPressed: seen++ }");
    scene.key(Qt::Key_A);
    QCOMPARE(scene.root()->property("seen").toInt(), 1);
}

void tst_QDeclarativeKeys::navigationFollowsMirroring()
{
    ItemScene scene(
        "Item { width: 10; height: 10\n"
        "Item { id: a; objectName: 'a'; focus: true; KeyNavigation.left: b; LayoutMirroring.enabled: true }\n"
        "Item { id: b; objectName: 'b' } }");
    scene.key(Qt::Key_Left);
    QVERIFY(scene.item("a")->hasActiveFocus());
    scene.key(Qt::Key_Right);
    QVERIFY(scene.item("b")->hasActiveFocus());
}

void tst_QDeclarativeKeys::navigationOfHiddenRing()
{
    ItemScene scene("Item { width: 10; height: 10\n"
                    "Item { id: a; objectName: 'a'; focus: true; KeyNavigation.right: b }\n"
                    "Item { id: b; visible: false; KeyNavigation.right: c }\n"
                    "Item { id: c; visible: false; KeyNavigation.right: b } }");
    QVERIFY(scene.key(Qt::Key_Right));
    QVERIFY(scene.item("a")->hasActiveFocus());
}

void tst_QDeclarativeKeys::onlyForItems_data()
{
    QTest::addColumn<QByteArray>("attached");
    QTest::addColumn<QString>("warning");
    QTest::newRow("Keys") << QByteArray("Keys.onPressed: {}")
                          << "Keys attached property only works with Items";
    QTest::newRow("KeyNavigation") << QByteArray("KeyNavigation.priority: KeyNavigation.BeforeItem")
                                   << "KeyNavigation attached property only works with Items";
    QTest::newRow("LayoutMirroring") << QByteArray("LayoutMirroring.enabled: true")
                                     << "LayoutDirection attached property only works with Items";
}

void tst_QDeclarativeKeys::onlyForItems()
{
    QFETCH(QByteArray, attached);
    QFETCH(QString, warning);
    ItemScene scene("Item { width: 10; height: 10; QtObject { " + attached + " } }");
    QCOMPARE(scene.warnings.count(), 1);
    QVERIFY2(scene.warnings.first().endsWith(warning), qPrintable(scene.warnings.first()));
}

/** Takes composed text. */
class TextTaker : public QDeclarativeItem
{
    Q_OBJECT

public:
    explicit TextTaker(QDeclarativeItem *parent = nullptr)
        : QDeclarativeItem(parent)
    {
        setFlag(ItemAcceptsInputMethod);
    }

    QString text;

protected:
    void inputMethodEvent(QInputMethodEvent *event) override { text += event->commitString(); }
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override
    {
        return query == Qt::ImSurroundingText ? QVariant(QStringLiteral("around"))
                                              : QDeclarativeItem::inputMethodQuery(query);
    }
};

void tst_QDeclarativeKeys::inputMethodIsForwarded()
{
    qmlRegisterType<TextTaker>("Test", 1, 0, "TextTaker");
    ItemScene scene("Item { width: 10; height: 10\n"
                    "TextTaker { id: sender; focus: true; Keys.forwardTo: [ taker ] }\n"
                    "TextTaker { id: taker; objectName: 'taker' } }",
                    "import Test 1.0");
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("ab"));
    QCoreApplication::sendEvent(&scene.view(), &event);
    QCOMPARE(static_cast<TextTaker *>(scene.item("taker"))->text, QStringLiteral("ab"));
}

QTEST_MAIN(tst_QDeclarativeKeys)
#include "tst_qdeclarativekeys.moc"
