#include "SteppedAnimations.h"
#include "WatchedScene.h"

#include <private/qabstractanimation_p.h>

namespace {

const QColor dot(200, 40, 40);

QImage square()
{
    QImage image(6, 6, QImage::Format_ARGB32);
    image.fill(dot);
    return image;
}

/** Returns how many pixels are not the white of the ground. */
int painted(WatchedScene &scene)
{
    const QImage picture = scene.picture();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixelColor(x, y) != QColor(Qt::white);
    }
    return count;
}

/** Returns the rectangle around what is painted. */
QRect paintedRect(WatchedScene &scene)
{
    const QImage picture = scene.picture();
    QRect all;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y) != QColor(Qt::white))
                all |= QRect(x, y, 1, 1);
        }
    }
    return all;
}

} // namespace

class tst_QDeclarativeParticles : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_animations.install(); }
    void cleanup() { m_animations.uninstall(); }
    void initialValues();
    void properties_data();
    void properties();
    void emitsInsideItsArea();
    void keepsTheirNumber();
    void emitsAtItsRate();
    void fades();
    void moves_data();
    void moves();
    void bursts();
    void idles_data();
    void idles();
    void stopsWhileUnseen_data();
    void stopsWhileUnseen();
    void hostileValues_data();
    void hostileValues();
    void missingPicture();

private:
    /** Shows lasting particles of full strength in a square in the middle, unless @p members say else. */
    static bool load(WatchedScene &scene, const QByteArray &members)
    {
        QByteArray all = members + '\n';
        for (const char *usual : {"width: 20", "height: 20", "source: 'dot.png'", "fadeInDuration: 0",
                                  "fadeOutDuration: 0", "lifeSpan: 100000", "lifeSpanDeviation: 0"}) {
            const QByteArray member(usual);
            if (!members.contains(member.left(member.indexOf(':') + 1)))
                all += member + '\n';
        }
        scene.addFile(QStringLiteral("dot.png"), square());
        return scene.load("import Qt.labs.particles 1.0\n"
                          "Rectangle { id: root; width: 200; height: 120; color: 'white'\n"
                          "Particles { id: dots; x: 80; y: 40\n"
                          + all + "} }");
    }

    /** Whether anything in the process is animated. */
    static bool isAnimating() { return QUnifiedTimer::instance()->runningAnimationCount() > 0; }

    /** Lets the time of one picture pass for the particles; it passes in no other way. */
    void goOn()
    {
        QTest::qWait(1);
        m_animations.goOn();
    }

    SteppedAnimations m_animations;
};

void tst_QDeclarativeParticles::initialValues()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(import Qt.labs.particles 1.0
        Item {
            Particles { id: p }
            ParticleMotionGravity { id: g } ParticleMotionWander { id: w } ParticleMotionLinear { id: l }
        })"));
    QCOMPARE(
        scene
            .evaluate(
                "[p.source, p.count, p.emissionRate, p.emissionVariance, p.lifeSpan, p.lifeSpanDeviation,"
                "p.fadeInDuration, p.fadeOutDuration, p.angle, p.angleDeviation, p.velocity,"
                "p.velocityDeviation, p.motion].join()")
            .toString(),
        QStringLiteral(",1,-1,0.5,1000,1000,200,300,0,0,0,0,"));
    QCOMPARE(
        scene
            .evaluate("[g.xattractor, g.yattractor, g.acceleration, w.xvariance, w.yvariance, w.pace].join()")
            .toString(),
        QStringLiteral("0,0,50,0,0,100"));
}

void tst_QDeclarativeParticles::properties_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("property");
    for (const char *name :
         {"count", "emissionRate", "emissionVariance", "lifeSpan", "lifeSpanDeviation", "fadeInDuration",
          "fadeOutDuration", "angle", "angleDeviation", "velocity", "velocityDeviation"})
        QTest::newRow(name) << QByteArray("p") << QByteArray(name);
    for (const char *name : {"xattractor", "yattractor", "acceleration"})
        QTest::newRow(name) << QByteArray("g") << QByteArray(name);
    for (const char *name : {"xvariance", "yvariance", "pace"})
        QTest::newRow(name) << QByteArray("w") << QByteArray(name);
}

void tst_QDeclarativeParticles::properties()
{
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, property);
    WatchedScene scene;
    const QByteArray handler =
        "on" + property.left(1).toUpper() + property.mid(1) + "Changed: ++root.changes";
    const auto in = [&](const char *id) { return object == id ? "; " + handler : QByteArray(); };
    QVERIFY(scene.load("import Qt.labs.particles 1.0\nItem { id: root; property int changes\n"
                       "Particles { id: p"
                       + in("p") + " }\nParticleMotionGravity { id: g" + in("g")
                       + " }\nParticleMotionWander { id: w" + in("w") + " } }"));
    const QByteArray name = object + '.' + property;
    scene.evaluate((name + " = 7; " + name + " = 7").constData());
    QCOMPARE(scene.evaluate(("[" + name + ", root.changes].join()").constData()).toString(),
             QStringLiteral("7,1"));
}

void tst_QDeclarativeParticles::emitsInsideItsArea()
{
    WatchedScene scene;
    QVERIFY(load(scene, "count: 300"));
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) > 300; }));
    const QRect area(80, 40, 20, 20);
    QVERIFY(area.adjusted(-4, -4, 4, 4).contains(paintedRect(scene)));
    QVERIFY(paintedRect(scene).contains(area.adjusted(3, 3, -3, -3)));
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeParticles::keepsTheirNumber()
{
    WatchedScene scene;
    QVERIFY(load(scene, "width: 0; height: 0; count: 1; lifeSpan: 30"));
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) == 36; }));
    for (int i = 0; i < 5; ++i) {
        goOn();
        QCOMPARE(painted(scene), 36);
    }
    scene.evaluate("dots.count = 0");
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) == 0; }));
    scene.evaluate("dots.count = 1");
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) == 36; }));
}

void tst_QDeclarativeParticles::emitsAtItsRate()
{
    WatchedScene scene;
    QVERIFY(load(scene,
                 "count: 1000; emissionRate: 20; emissionVariance: 0; height: 0; velocity: 100"
                 "; width: 0; motion: ParticleMotionLinear {}"));
    // One after the other, 5 pixels apart: the trail is as long as the time, and nearly without gaps.
    QVERIFY(m_animations.goOnUntil([&] { return paintedRect(scene).width() > 50; }));
    const QRect trail = paintedRect(scene);
    QCOMPARE(trail.height(), 6);
    QVERIFY2(painted(scene) > trail.width() * 4, qPrintable(QString::number(painted(scene))));
    QVERIFY(painted(scene) <= trail.width() * 6);
}

void tst_QDeclarativeParticles::fades()
{
    WatchedScene scene;
    QVERIFY(load(scene, "width: 0; height: 0; fadeInDuration: 400"));
    const auto shade = [&scene] { return scene.pixel(80, 40).green(); };
    QVERIFY(m_animations.goOnUntil([&] { return shade() < 255; }));
    QVERIFY(shade() > dot.green());
    QVERIFY(m_animations.goOnUntil([&] { return shade() == dot.green(); }));
    scene.evaluate("dots.source = ''; dots.count = 0; dots.lifeSpan = 600; dots.fadeInDuration = 0;"
                   "dots.fadeOutDuration = 600; dots.source = 'dot.png'; dots.burst(1)");
    QVERIFY(m_animations.goOnUntil([&] { return shade() > dot.green() && shade() < 200; }));
    QVERIFY(m_animations.goOnUntil([&] { return shade() == 255; }));
}

void tst_QDeclarativeParticles::moves_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QPoint>("way");
    QTest::newRow("without motion") << QByteArray("velocity: 200") << QPoint();
    QTest::newRow("right") << QByteArray("velocity: 200; motion: ParticleMotionLinear {}") << QPoint(1, 0);
    QTest::newRow("down") << QByteArray("velocity: 200; angle: 90; ParticleMotionLinear {}") << QPoint(0, 1);
    QTest::newRow("left") << QByteArray("velocity: 200; angle: 180; ParticleMotionLinear {}")
                          << QPoint(-1, 0);
    QTest::newRow("up") << QByteArray("velocity: 200; angle: 270; ParticleMotionLinear {}") << QPoint(0, -1);
    QTest::newRow("backwards") << QByteArray("velocity: -200; ParticleMotionLinear {}") << QPoint(-1, 0);
    QTest::newRow("attracted") << QByteArray("ParticleMotionGravity { xattractor: 1000; acceleration: 2000 }")
                               << QPoint(1, 0);
    QTest::newRow("attracted up") << QByteArray(
        "ParticleMotionGravity { yattractor: -1000; acceleration: 2000 }")
                                  << QPoint(0, -1);
    QTest::newRow("wandering in its way")
        << QByteArray("velocity: 200; angle: 90; ParticleMotionWander {}") << QPoint(0, 1);
}

void tst_QDeclarativeParticles::moves()
{
    QFETCH(QByteArray, members);
    QFETCH(QPoint, way);
    WatchedScene scene;
    QVERIFY(load(scene, "width: 0; height: 0; " + members));
    QVERIFY(m_animations.goOnUntil([&] { return !paintedRect(scene).isEmpty(); }));
    const auto offset = [&scene] { return paintedRect(scene).center() - QPoint(79, 39); };
    if (way.isNull()) {
        for (int i = 0; i < 6; ++i)
            goOn();
        QCOMPARE(offset(), QPoint());
        return;
    }
    QVERIFY(m_animations.goOnUntil([&] { return QPoint::dotProduct(offset(), way) > 20; }));
    QCOMPARE(QPoint::dotProduct(offset(), QPoint(way.y(), way.x())), 0);
}

void tst_QDeclarativeParticles::bursts()
{
    WatchedScene scene;
    QVERIFY(load(scene, "width: 0; height: 0; count: 0; lifeSpan: 150"));
    goOn();
    goOn();
    QCOMPARE(painted(scene), 0);
    scene.evaluate("dots.burst(3)");
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) == 36; }));
    // They are not replaced.
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) == 0; }));
    QVERIFY(m_animations.goOnUntil([] { return !isAnimating(); }));
    scene.evaluate("dots.velocity = 200; dots.lifeSpan = 100000; dots.motion = Qt.createQmlObject("
                   "'import Qt.labs.particles 1.0; ParticleMotionLinear {}', dots); dots.burst(4, 20)");
    // At a rate they come one after the other, 10 pixels apart.
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) == 4 * 36; }));
}

void tst_QDeclarativeParticles::idles_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::newRow("none") << QByteArray("count: 0");
    QTest::newRow("no rate") << QByteArray("count: 5; emissionRate: 0");
    QTest::newRow("no life") << QByteArray("count: 5; lifeSpan: 0");
    QTest::newRow("no picture") << QByteArray("source: ''");
    QTest::newRow("invisible") << QByteArray("visible: false");
    QTest::newRow("transparent") << QByteArray("opacity: 0");
}

void tst_QDeclarativeParticles::idles()
{
    QFETCH(QByteArray, members);
    WatchedScene scene;
    QVERIFY(load(scene, members));
    goOn();
    goOn();
    QVERIFY(!isAnimating());
}

void tst_QDeclarativeParticles::stopsWhileUnseen_data()
{
    QTest::addColumn<QByteArray>("hide");
    QTest::addColumn<QByteArray>("show");
    QTest::newRow("item") << QByteArray("dots.visible = false") << QByteArray("dots.visible = true");
    QTest::newRow("parent") << QByteArray("root.visible = false") << QByteArray("root.visible = true");
    QTest::newRow("opacity") << QByteArray("dots.opacity = 0") << QByteArray("dots.opacity = 1");
    QTest::newRow("view") << QByteArray() << QByteArray();
}

void tst_QDeclarativeParticles::stopsWhileUnseen()
{
    QFETCH(QByteArray, hide);
    QFETCH(QByteArray, show);
    WatchedScene scene;
    QVERIFY(load(scene, "count: 5"));
    QVERIFY(m_animations.goOnUntil([] { return isAnimating(); }));
    if (hide.isEmpty())
        scene.view().hide();
    else
        scene.evaluate(hide.constData());
    QVERIFY(m_animations.goOnUntil([] { return !isAnimating(); }));
    if (show.isEmpty())
        scene.view().show();
    else
        scene.evaluate(show.constData());
    QVERIFY(m_animations.goOnUntil([] { return isAnimating(); }));
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) > 0; }));
}

void tst_QDeclarativeParticles::hostileValues_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("count") << QByteArray("dots.count = 2147483647");
    QTest::newRow("rate") << QByteArray("dots.count = 2147483647; dots.emissionRate = 2147483647");
    QTest::newRow("burst") << QByteArray("dots.burst(2147483647)");
    QTest::newRow("burst at a rate") << QByteArray("dots.burst(2147483647, 2147483647)");
    QTest::newRow("negative") << QByteArray("dots.count = -5; dots.burst(-1); dots.lifeSpan = -1");
    QTest::newRow("variance") << QByteArray("dots.emissionRate = 5; dots.emissionVariance = -1e300");
    QTest::newRow("life") << QByteArray("dots.lifeSpan = 2147483647; dots.lifeSpanDeviation = 2147483647");
    QTest::newRow("endless variance") << QByteArray("dots.count = 5; dots.emissionRate = 5; "
                                                    "dots.emissionVariance = Infinity");
    QTest::newRow("infinite") << QByteArray("dots.velocity = Infinity; dots.motion = linear");
    QTest::newRow("no number") << QByteArray("dots.angle = NaN; dots.motion = linear");
    QTest::newRow("motion gone") << QByteArray("dots.motion = linear; linear.destroy()");
    QTest::newRow("far") << QByteArray("dots.velocity = 1e300; dots.motion = linear");
}

void tst_QDeclarativeParticles::hostileValues()
{
    QFETCH(QByteArray, script);
    WatchedScene scene;
    QVERIFY(load(scene,
                 "property variant linear: Qt.createQmlObject('import Qt.labs.particles 1.0;"
                 "ParticleMotionLinear {}', dots)"));
    scene.evaluate(QByteArray(script).replace("linear", "dots.linear").constData());
    for (int i = 0; i < 3; ++i) {
        goOn();
        scene.picture();
    }
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeParticles::missingPicture()
{
    WatchedScene scene;
    QVERIFY(load(scene, "count: 2"));
    scene.evaluate("dots.source = 'nosuch.png'");
    QTRY_COMPARE(scene.warnings.count(), 1);
    QVERIFY(scene.warnings.constFirst().contains(QStringLiteral("nosuch.png")));
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) == 0; }));
    scene.evaluate("dots.source = 'dot.png'");
    QVERIFY(m_animations.goOnUntil([&] { return painted(scene) > 0; }));
}

QTEST_MAIN(tst_QDeclarativeParticles)
#include "tst_qdeclarativeparticles.moc"
