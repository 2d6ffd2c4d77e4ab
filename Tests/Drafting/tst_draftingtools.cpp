#include "Core/DraftingScene.h"
#include "Core/DrawTool.h"
#include "Core/SelectTool.h"
#include "Core/TransformTool.h"

#include <QtTest/QtTest>

using Points = QVector<QPointF>;

class tst_DraftingTools : public QObject
{
    Q_OBJECT

private slots:
    void drawing_data();
    void drawing();
    void polylineEndsWhenFinished();
    void picksSnapToTheGridWhileSnappingIsOn();
    void transforming_data();
    void transforming();
    void transformingNothingPicksNothing();
    void selectingByClickAndByFrame();
    void deletingIsUndone();
    void leavingAToolForgetsItsPicks();
};

namespace {

void pick(Tool &tool, const Points &points)
{
    for (const QPointF &point : points) {
        tool.move(point);
        tool.press(point);
        tool.release(point);
    }
}

bool areClose(const Points &a, const Points &b)
{
    if (a.size() != b.size())
        return false;
    for (int i = 0; i < a.size(); ++i) {
        if (QLineF(a.at(i), b.at(i)).length() > 1e-6)
            return false;
    }
    return true;
}

} // namespace

void tst_DraftingTools::drawing_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<Points>("picks");
    QTest::addColumn<Points>("points");
    QTest::addColumn<QRectF>("extent");

    QTest::newRow("line") << int(Shape::Line) << Points{{0, 0}, {30, 40}} << Points{{0, 0}, {30, 40}}
                          << QRectF(0, 0, 30, 40);
    QTest::newRow("rectangle") << int(Shape::Rectangle) << Points{{10, 20}, {-10, 60}}
                               << Points{{10, 20}, {-10, 20}, {-10, 60}, {10, 60}} << QRectF(-10, 20, 20, 40);
    QTest::newRow("circle") << int(Shape::Circle) << Points{{0, 0}, {30, 40}} << Points{{0, 0}, {30, 40}}
                            << QRectF(-50, -50, 100, 100);
    QTest::newRow("arc above") << int(Shape::Arc) << Points{{-50, 0}, {0, -50}, {50, 0}}
                               << Points{{-50, 0}, {0, -50}, {50, 0}} << QRectF(-50, -50, 100, 50);
    QTest::newRow("arc below") << int(Shape::Arc) << Points{{-50, 0}, {0, 50}, {50, 0}}
                               << Points{{-50, 0}, {0, 50}, {50, 0}} << QRectF(-50, 0, 100, 50);
    QTest::newRow("arc on one line") << int(Shape::Arc) << Points{{0, 0}, {20, 0}, {50, 0}}
                                     << Points{{0, 0}, {20, 0}, {50, 0}} << QRectF(0, 0, 50, 0);
    QTest::newRow("second pick on the first") << int(Shape::Line) << Points{{0, 0}, {0, 0}, {10, 0}}
                                              << Points{{0, 0}, {10, 0}} << QRectF(0, 0, 10, 0);
}

void tst_DraftingTools::drawing()
{
    QFETCH(int, kind);
    QFETCH(Points, picks);
    QFETCH(Points, points);
    QFETCH(QRectF, extent);
    DraftingScene scene;
    DrawTool tool(&scene, Shape::Kind(kind));
    scene.setTool(&tool);
    pick(tool, picks);
    QCOMPARE(scene.shapes().size(), 1);
    const Shape *shape = scene.shapes().first();
    QCOMPARE(int(shape->kind()), kind);
    QVERIFY(areClose(shape->points(), points));
    QVERIFY(areClose({shape->extent().topLeft(), shape->extent().bottomRight()},
                     {extent.topLeft(), extent.bottomRight()}));
    QVERIFY(!tool.isBusy());
}

void tst_DraftingTools::polylineEndsWhenFinished()
{
    DraftingScene scene;
    DrawTool tool(&scene, Shape::Polyline);
    scene.setTool(&tool);
    pick(tool, {{0, 0}});
    tool.finish();
    QVERIFY(scene.shapes().isEmpty());
    pick(tool, {{0, 0}, {10, 0}, {10, 10}, {0, 10}});
    QVERIFY(scene.shapes().isEmpty());
    tool.finish();
    QCOMPARE(scene.shapes().size(), 1);
    QCOMPARE(scene.shapes().first()->points().size(), 4);
}

void tst_DraftingTools::picksSnapToTheGridWhileSnappingIsOn()
{
    DraftingScene scene;
    DrawTool tool(&scene, Shape::Line);
    scene.setTool(&tool);
    pick(tool, {{-4, 4}, {26, -14}});
    QVERIFY(areClose(scene.shapes().last()->points(), {{0, 0}, {30, -10}}));
    scene.setSnapsToGrid(false);
    pick(tool, {{-4, 4}, {26, -14}});
    QVERIFY(areClose(scene.shapes().last()->points(), {{-4, 4}, {26, -14}}));
}

void tst_DraftingTools::transforming_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<Points>("picks");
    QTest::addColumn<Points>("points");

    QTest::newRow("move") << int(TransformTool::Move) << Points{{0, 0}, {30, -10}}
                          << Points{{30, -10}, {40, 10}};
    QTest::newRow("rotate a quarter, clockwise on screen")
        << int(TransformTool::Rotate) << Points{{0, 0}, {10, 0}, {0, 10}} << Points{{0, 0}, {-20, 10}};
    QTest::newRow("rotate half about a point")
        << int(TransformTool::Rotate) << Points{{10, 0}, {20, 0}, {0, 0}} << Points{{20, 0}, {10, -20}};
    QTest::newRow("mirror on a vertical axis")
        << int(TransformTool::Mirror) << Points{{20, 0}, {20, 50}} << Points{{40, 0}, {30, 20}};
    QTest::newRow("mirror on a diagonal axis")
        << int(TransformTool::Mirror) << Points{{0, 0}, {10, 10}} << Points{{0, 0}, {20, 10}};
}

void tst_DraftingTools::transforming()
{
    QFETCH(int, operation);
    QFETCH(Points, picks);
    QFETCH(Points, points);
    const Points before{{0, 0}, {10, 20}};
    DraftingScene scene;
    scene.draw(Shape::Line, before);
    scene.draw(Shape::Line, before);
    Shape *selected = scene.shapes().first();
    const Shape *other = scene.shapes().last();
    selected->setSelected(true);
    TransformTool tool(&scene, TransformTool::Operation(operation));
    scene.setTool(&tool);
    pick(tool, picks);
    QVERIFY(areClose(selected->points(), points));
    QVERIFY(areClose(other->points(), before));
    scene.undoStack()->undo();
    QVERIFY(areClose(selected->points(), before));
    scene.undoStack()->redo();
    QVERIFY(areClose(selected->points(), points));
}

void tst_DraftingTools::transformingNothingPicksNothing()
{
    DraftingScene scene;
    scene.draw(Shape::Line, {{0, 0}, {10, 20}});
    const int steps = scene.undoStack()->count();
    TransformTool tool(&scene, TransformTool::Move);
    scene.setTool(&tool);
    pick(tool, {{0, 0}, {30, 0}});
    QVERIFY(!tool.isBusy());
    QCOMPARE(scene.undoStack()->count(), steps);
}

void tst_DraftingTools::selectingByClickAndByFrame()
{
    DraftingScene scene;
    scene.draw(Shape::Line, {{0, 0}, {50, 0}});
    scene.draw(Shape::Circle, {{100, 0}, {120, 0}});
    SelectTool tool(&scene);
    scene.setTool(&tool);
    pick(tool, {{25, 1}});
    QCOMPARE(scene.selectedShapes(), {scene.shapes().first()});
    tool.press({70, -30});
    tool.move({130, 30});
    tool.release({130, 30});
    QCOMPARE(scene.selectedShapes(), {scene.shapes().last()});
    tool.press({40, -30});
    tool.release({110, 30});
    QVERIFY(scene.selectedShapes().isEmpty());
    pick(tool, {{200, 200}});
    QVERIFY(scene.selectedShapes().isEmpty());
}

void tst_DraftingTools::deletingIsUndone()
{
    DraftingScene scene;
    scene.draw(Shape::Line, {{0, 0}, {50, 0}});
    scene.draw(Shape::Line, {{0, 10}, {50, 10}});
    scene.shapes().first()->setSelected(true);
    scene.deleteSelection();
    QCOMPARE(scene.shapes().size(), 1);
    scene.undoStack()->undo();
    QCOMPARE(scene.shapes().size(), 2);
    scene.undoStack()->redo();
    scene.reset();
    QVERIFY(scene.shapes().isEmpty());
    QVERIFY(!scene.undoStack()->canUndo());
}

void tst_DraftingTools::leavingAToolForgetsItsPicks()
{
    DraftingScene scene;
    DrawTool line(&scene, Shape::Line);
    SelectTool select(&scene);
    scene.setTool(&line);
    pick(line, {{0, 0}});
    QVERIFY(line.isBusy());
    QSignalSpy prompts(&scene, &DraftingScene::promptChanged);
    scene.setTool(&select);
    QVERIFY(!line.isBusy());
    QCOMPARE(prompts.last().first().toString(), select.prompt());
}

QTEST_MAIN(tst_DraftingTools)
#include "tst_draftingtools.moc"
