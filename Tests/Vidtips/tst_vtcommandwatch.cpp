#include <Vidtips/VTCommandWatch_p.h>

#include <QtCore/QStringListModel>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QGraphicsProxyWidget>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QListView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>

using namespace Vidtips;

class tst_VTCommandWatch : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void nothingIsWatchedAtFirst();
    void widgetIsItsRectangle();
    void partMovesWithItsWidget();
    void gone_data();
    void gone();
    void actionThatIsNoWidget();
    void scrolledViewPassesOn();
    void rowsOfAModel();
    void menuGoesOn();
    void reachedThrough();
    void embeddedWidget();
    void isInSight();
    void endWatchesNothing();

private:
    QScopedPointer<QWidget> window;
    QWidget *page = nullptr;
    QPushButton *button = nullptr;
};

void tst_VTCommandWatch::init()
{
    window.reset(new QWidget);
    window->setGeometry(100, 100, 400, 300);
    page = new QWidget(window.data());
    page->setGeometry(10, 10, 380, 280);
    button = new QPushButton(page);
    button->setGeometry(20, 20, 80, 30);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.data()));
}

void tst_VTCommandWatch::nothingIsWatchedAtFirst()
{
    VTCommandWatch watch;
    QVERIFY(!watch.widget());
    QVERIFY(watch.rect().isNull());
    QVERIFY(watch.isInSight());
    QVERIFY(!watch.isReachedThrough(button));
    watch.begin(nullptr, QRect(1, 2, 3, 4), {});
    QVERIFY(!watch.widget());
    QCOMPARE(watch.rect(), QRect(1, 2, 3, 4));
}

void tst_VTCommandWatch::widgetIsItsRectangle()
{
    VTCommandWatch watch;
    watch.begin(button, QRect(), {});
    QCOMPARE(watch.widget(), button);
    QCOMPARE(watch.rect(), QRect(button->mapToGlobal(QPoint()), button->size()));
    QSignalSpy stirred(&watch, &VTCommandWatch::stirred);
    button->move(50, 60);
    QCOMPARE(stirred.count(), 1);
    page->move(0, 0);
    QCOMPARE(stirred.count(), 2);
    QCOMPARE(watch.rect().topLeft(), button->mapToGlobal(QPoint()));
}

void tst_VTCommandWatch::partMovesWithItsWidget()
{
    VTCommandWatch watch;
    const QRect part(button->mapToGlobal(QPoint(5, 5)), QSize(10, 10));
    watch.begin(button, part, {});
    QCOMPARE(watch.rect(), part);
    page->move(page->pos() + QPoint(7, 3));
    button->move(button->pos() + QPoint(1, 1));
    QCOMPARE(watch.rect(), part.translated(8, 4));
}

void tst_VTCommandWatch::gone_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change : {"deleted", "hidden", "window hidden", "window closed", "page hidden",
                               "minimised", "moved to another window", "blocked"})
        QTest::newRow(change) << QString(change);
}

void tst_VTCommandWatch::gone()
{
    QFETCH(QString, change);
    VTCommandWatch watch;
    watch.begin(button, QRect(), {});
    QSignalSpy gone(&watch, &VTCommandWatch::gone);
    QWidget other;
    QDialog dialog;
    dialog.setModal(true);
    if (change == "deleted")
        delete button;
    else if (change == "hidden")
        button->hide();
    else if (change == "window hidden")
        window->hide();
    else if (change == "window closed")
        window->close();
    else if (change == "page hidden")
        page->hide();
    else if (change == "minimised")
        window->showMinimized();
    else if (change == "moved to another window")
        button->setParent(&other);
    else
        dialog.show();
    QTRY_VERIFY(gone.count() >= 1);
}

void tst_VTCommandWatch::actionThatIsNoWidget()
{
    VTCommandWatch watch;
    QSignalSpy gone(&watch, &VTCommandWatch::gone);
    QAction action;
    watch.begin(&action, QRect(), button->mapToGlobal(QPoint(5, 5)));
    QCOMPARE(watch.widget(), button);
    action.setText("Other");
    QCOMPARE(gone.count(), 0);
    action.setVisible(false);
    QCOMPARE(gone.count(), 1);
}

void tst_VTCommandWatch::scrolledViewPassesOn()
{
    QGraphicsScene scene(0, 0, 2000, 2000);
    QGraphicsView view(&scene, page);
    view.resize(100, 100);
    view.show();
    VTCommandWatch watch;
    QSignalSpy passedOn(&watch, &VTCommandWatch::passedOn);
    watch.begin(view.viewport(), QRect(view.mapToGlobal(QPoint(5, 5)), QSize(10, 10)), {});
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->value() + 10);
    QCOMPARE(passedOn.count(), 1);
    watch.begin(&view, QRect(), {});
    view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->value() + 10);
    QCOMPARE(passedOn.count(), 2);
    watch.begin(button, QRect(), {});
    view.horizontalScrollBar()->setValue(0);
    QCOMPARE(passedOn.count(), 2);
}

void tst_VTCommandWatch::rowsOfAModel()
{
    QStringListModel model({"a", "b", "c"});
    QListView view(page);
    view.setModel(&model);
    view.resize(100, 200);
    view.show();
    const QRect row = view.visualRect(model.index(1, 0));
    const QRect part(view.viewport()->mapToGlobal(row.topLeft()), row.size());
    VTCommandWatch watch;
    QSignalSpy gone(&watch, &VTCommandWatch::gone);
    QSignalSpy passedOn(&watch, &VTCommandWatch::passedOn);
    watch.begin(view.viewport(), part, {});
    model.insertRow(3);
    model.removeRow(2);
    QCOMPARE(passedOn.count() + gone.count(), 0);
    model.insertRow(0);
    QCOMPARE(passedOn.count(), 1);
    model.removeRow(2);
    QCOMPARE(gone.count(), 1);
}

void tst_VTCommandWatch::menuGoesOn()
{
    QMenu menu;
    QAction *const first = menu.addAction("First");
    QAction *const second = menu.addAction("Second");
    menu.popup({200, 200});
    menu.setActiveAction(first);
    VTCommandWatch watch;
    QSignalSpy passedOn(&watch, &VTCommandWatch::passedOn);
    QSignalSpy gone(&watch, &VTCommandWatch::gone);
    watch.begin(&menu, QRect(), {});
    const QRect entry = menu.actionGeometry(first);
    QCOMPARE(watch.rect(), QRect(menu.mapToGlobal(entry.topLeft()), entry.size()));
    menu.setActiveAction(second);
    QCOMPARE(passedOn.count(), 1);
    menu.close();
    QCOMPARE(gone.count(), 1);
}

void tst_VTCommandWatch::reachedThrough()
{
    auto *const inner = new QWidget(button);
    auto *const beside = new QWidget(page);
    VTCommandWatch watch;
    watch.begin(button, QRect(), {});
    QVERIFY(watch.isReachedThrough(button));
    QVERIFY(watch.isReachedThrough(inner));
    QVERIFY(watch.isReachedThrough(page));
    QVERIFY(!watch.isReachedThrough(beside));
    QVERIFY(!watch.isReachedThrough(nullptr));
}

void tst_VTCommandWatch::embeddedWidget()
{
    QGraphicsScene scene;
    QGraphicsView view(&scene, page);
    auto *const embedded = new QPushButton("embedded");
    scene.addWidget(embedded);
    view.resize(200, 150);
    view.show();
    VTCommandWatch watch;
    QSignalSpy gone(&watch, &VTCommandWatch::gone);
    watch.begin(embedded, QRect(), {});
    QVERIFY(watch.isReachedThrough(view.viewport()));
    QSignalSpy stirred(&watch, &VTCommandWatch::stirred);
    page->move(0, 0);
    QVERIFY(stirred.count() > 0);
    embedded->hide();
    QVERIFY(gone.count() > 0);
}

void tst_VTCommandWatch::isInSight()
{
    VTCommandWatch watch;
    watch.begin(button, QRect(), {});
    QVERIFY(watch.isInSight());
    button->move(-50, 20);
    QVERIFY(watch.isInSight());
    button->move(-500, 20);
    QVERIFY(!watch.isInSight());
    // What a host shows a tip for although it cannot be seen.
    watch.begin(button, QRect(), {});
    QVERIFY(watch.isInSight());
}

void tst_VTCommandWatch::endWatchesNothing()
{
    VTCommandWatch watch;
    QSignalSpy gone(&watch, &VTCommandWatch::gone);
    QSignalSpy stirred(&watch, &VTCommandWatch::stirred);
    watch.begin(button, QRect(), {});
    watch.end();
    QVERIFY(!watch.widget());
    button->move(1, 1);
    delete button;
    QCOMPARE(gone.count() + stirred.count(), 0);
}

QTEST_MAIN(tst_VTCommandWatch)
#include "tst_vtcommandwatch.moc"
