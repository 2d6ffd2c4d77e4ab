#include "AnyFont.h"
#include "FolderServer.h"
#include "TestCatalogue.h"
#include "TestClips.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

/** Milliseconds that a slow machine may take. */
constexpr int patience = 30000;

/**
 * Each way out of a package, by each element or function that takes an address, tried without the switch,
 * where it has to work, and with it. The judge of paths and the guard of the QML module have tests of their
 * own, with more ways.
 */
class tst_RestrictedContent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Where databases come to lie.
        qputenv("XDG_DATA_HOME", packages.filePath("data").toUtf8());
        writeFiles("outside");
        writeFiles("Other.vidtips");
        writeFiles("Found.vidtips");
        packages.writeControl("Other", "tips.xml", R"(<vidtip key="other"/>)");
        packages.writeControl("Found", "tips.xml", R"(<vidtip key="found"/>)");
        packages.write("Own.vidtips/ui/including.js",
                       "function reaches(url) { return Qt.include(url).status == 0 }\n");
        QVERIFY(QFile::link(packages.filePath("outside"), packages.filePath("Own.vidtips/ui/linked")));
        QVERIFY(QDir(packages.path()).mkpath("Own.vidtips/Resources"));
        QVERIFY(QFile::link(packages.filePath("outside"), packages.filePath("Own.vidtips/Resources/linked")));
    }

    void reading_data()
    {
        QTest::addColumn<QByteArray>("body");
        for (const Reader &reader : readers()) {
            for (const auto &way : ways()) {
                const bool readsFilesOnly = reader.file[0] == '!';
                if (readsFilesOnly && QByteArray(way.first) == "server")
                    continue;
                const QByteArray file = QByteArray(reader.file).mid(readsFilesOnly);
                QTest::addRow("%s, %s", reader.name, way.first)
                    << QByteArray(reader.body).replace("ADDRESS", way.second + file);
            }
        }
    }

    void reading()
    {
        QFETCH(const QByteArray, body);
        FolderServer server(packages.filePath("outside"));
        const QByteArray told = filled(body, server);
        QVERIFY2(reaches(told), "does not work without the switch");
        const int connections = server.connections;
        verifyRefused(told);
        QCOMPARE(server.connections, connections);
    }

    // What the same elements read of their own package, of one that it searches, and of the extra path.
    void readsInside_data()
    {
        QTest::addColumn<QByteArray>("body");
        for (const Reader &reader : readers()) {
            const QByteArray file = QByteArray(reader.file).mid(reader.file[0] == '!');
            QTest::newRow(reader.name)
                << QByteArray(reader.body).replace("ADDRESS", "../../Found.vidtips/" + file);
        }
    }

    void readsInside()
    {
        QFETCH(const QByteArray, body);
        attributesOfAll = R"(search="Found")";
        const bool isReached = reaches(body, true);
        QVERIFY2(isReached, qPrintable(refusals.join('\n')));
        attributesOfAll.clear();
        extraPath = packages.filePath("Found.vidtips");
        const bool isReachedByPath = reaches(body, true);
        extraPath.clear();
        QVERIFY2(isReachedByPath, qPrintable(refusals.join('\n')));
        QCOMPARE(refusals, QStringList());
    }

    // Qt tries suffixes where a name has none.
    void pictureWithoutSuffix()
    {
        const QString link = packages.filePath("Own.vidtips/ui/bare.png");
        QVERIFY(QFile::link(packages.filePath("outside/picture.png"), link));
        const QByteArray body = "property bool reached: it.status == Image.Ready\n"
                                "Image { id: it; source: 'bare' }";
        QVERIFY2(reaches(body), "does not work without the switch");
        verifyRefused(body);
        QVERIFY(QFile::remove(link));
    }

    void calling_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("what");
        QTest::newRow("quit") << QByteArray("var f = Qt.quit; f()") << "Qt.quit()";
        QTest::newRow("database") << QByteArray("openDatabaseSync('a', '1', 'b', 1)") << "openDatabaseSync()";
        QTest::newRow("request that writes") << QByteArray(
            "var r = new XMLHttpRequest; r.open('PUT', 'file://ROOT/Own.vidtips/new'); r.send('a')")
                                             << "XMLHttpRequest \"PUT file://ROOT/Own.vidtips/new\"";
        QTest::newRow("style sheet of the view") << QByteArray(
            "vidTipView.setStyleSheet('QWidget { background-image: url(ROOT/outside/picture.png) }');"
            "if (!vidTipView.styleSheet) throw 'refused'")
                                                 << "setting a style sheet";
        QTest::newRow("clipboard, read")
            << QByteArray("var editor = Qt.createQmlObject('import QtQuick 1.0; TextInput {}', root); "
                          "editor.paste()")
            << "the clipboard by paste()";
        QTest::newRow("clipboard, written")
            << QByteArray("var editor = Qt.createQmlObject('import QtQuick 1.0; TextEdit {}', root); "
                          "editor.copy()")
            << "the clipboard by copy()";
        QTest::newRow("module in a text")
            << QByteArray("Qt.createQmlObject('import QtQml 2.0\\nQtObject {}', root)")
            << "importing QtQml 2.0";
    }

    void calling()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, what);
        script = filled("property bool reached: false\nComponent.onCompleted: {\n" + script
                        + ";\nreached = true }");
        QVERIFY2(reaches(script), "does not work without the switch");
        verifyRefused(script);
        QVERIFY2(refusals.first().contains(what.replace("ROOT", packages.path())),
                 qPrintable(refusals.first()));
    }

    void importing_data()
    {
        QTest::addColumn<QByteArray>("import");
        QTest::newRow("module of the language") << QByteArray("import QtQml 2.0");
        QTest::newRow("folder outside") << QByteArray("import \"../../outside\"");
        QTest::newRow("folder of another package") << QByteArray("import \"../../Other.vidtips\"");
        QTest::newRow("linked folder") << QByteArray("import \"linked\"");
        QTest::newRow("folder on the server") << QByteArray("import \"SERVER\"");
        QTest::newRow("script outside") << QByteArray("import \"../../outside/script.js\" as Script");
    }

    void importing()
    {
        QFETCH(const QByteArray, import);
        FolderServer server(packages.filePath("outside"));
        imports = filled(import, server) + '\n';
        const bool isReached = reaches("property bool reached: true");
        const int connections = server.connections;
        const bool isReachedAfterwards = isReached && reaches("property bool reached: true", true);
        imports.clear();
        QVERIFY2(isReached, "does not work without the switch");
        QVERIFY(!isReachedAfterwards);
        QCOMPARE(refusals.count(), 1);
        QVERIFY2(refusals.first().contains("line 2: restricted content is refused "),
                 qPrintable(refusals.first()));
        QCOMPARE(server.connections, connections);
    }

    // What the content names, which the library looks for.
    void naming_data()
    {
        QTest::addColumn<QByteArray>("attributes");
        QTest::addColumn<QByteArray>("body");
        const QByteArray user = "property bool reached: vidTipView.";
        const QByteArray found = user + "findResource('FILE').indexOf('/picture.png') > 0";
        const auto name = [](QByteArray text, const QByteArray &file) { return text.replace("FILE", file); };
        QTest::newRow("user interface outside") << QByteArray("ui='../outside/Reaching.qml'") << QByteArray();
        QTest::newRow("user interface by its path")
            << QByteArray("ui='ROOT/outside/Reaching.qml'") << QByteArray();
        QTest::newRow("user interface by a link")
            << QByteArray("ui='ui/linked/Reaching.qml'") << QByteArray();
        QTest::newRow("user interface of another package")
            << QByteArray("ui='../Other.vidtips/Reaching.qml'") << QByteArray();
        QTest::newRow("resource above") << QByteArray() << name(found, "../../outside/picture.png");
        QTest::newRow("resource by its path") << QByteArray() << name(found, "ROOT/outside/picture.png");
        QTest::newRow("resource by a link") << QByteArray() << name(found, "linked/picture.png");
        QTest::newRow("folder of resources")
            << QByteArray("resources='ROOT/outside'") << name(found, "picture.png");
        QTest::newRow("catalogues") << QByteArray("l10n_name='ROOT/outside'")
                                    << user + "translate('Cut', 'Menu') == 'Ausschneiden'";
        QTest::newRow("catalogues above")
            << QByteArray("l10n_name='../outside'") << user + "translate('Cut', 'Menu') == 'Ausschneiden'";
        QTest::newRow("catalogue that names one outside")
            << QByteArray("l10n_name='naming'") << user + "translate('Cut', 'Menu') == 'Ausschneiden'";
    }

    void naming()
    {
        QFETCH(QByteArray, attributes);
        QFETCH(QByteArray, body);
        writeCatalogues();
        attributesOfTip = attributes.replace("ROOT", packages.path().toUtf8());
        body.replace("ROOT", packages.path().toUtf8());
        const bool isReached = reaches(body);
        const bool isReachedAfterwards = isReached && reaches(body, true);
        attributesOfTip.clear();
        QVERIFY2(isReached, "does not work without the switch");
        QVERIFY(!isReachedAfterwards);
        QCOMPARE(refusals.count(), 1);
        verifyPlace("/Own.vidtips/Control/tips.xml");
    }

    void clips_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("problem");
        const QString outside = ": restricted content is refused reading ";
        const QString format = "Restricted content is refused the format of the clip at: ";
        QTest::newRow("above") << QByteArray("../../outside/clip.mp4") << outside;
        QTest::newRow("by its path") << QByteArray("ROOT/outside/clip.mp4") << outside;
        QTest::newRow("by a link") << QByteArray("linked/clip.mp4") << outside;
        QTest::newRow("list of segments") << QByteArray("list.m3u8") << format;
        QTest::newRow("list of clips") << QByteArray("list.ffconcat") << format;
        QTest::newRow("other container") << QByteArray("clip.nut") << format;
        QTest::newRow("other codec") << QByteArray("picture.mkv") << format;
    }

    void clips()
    {
        QFETCH(QByteArray, name);
        QFETCH(const QString, problem);
        writeClips();
        const QByteArray body = "property bool reached: clip.status == VTVideoComponent.Ready\n"
                                "VTVideoComponent { id: clip; source: 'NAME' }";
        const QByteArray named =
            QByteArray(body).replace("NAME", name.replace("ROOT", packages.path().toUtf8()));
        imports = "import com.corvale.vidtips.qml 1.0\n";
        const bool isReached = reaches(named);
        const bool isReachedAfterwards = isReached && reaches(named, true);
        const QStringList messages = allMessages;
        const bool isReachedInside = reaches(QByteArray(body).replace("NAME", "usual.mp4"), true);
        imports.clear();
        QVERIFY2(isReached, "does not work without the switch");
        QVERIFY(!isReachedAfterwards);
        QVERIFY(isReachedInside);
        QVERIFY2(messages.filter(problem).count() == 1, qPrintable(messages.join('\n')));
    }

    void opensAddressesAsTheSwitchesSay()
    {
        const QByteArray body =
            "property bool reached: true\nproperty bool opened: Qt.openUrlExternally('https://a.invalid/')";
        start(body, true);
        QTRY_VERIFY(root());
        QVERIFY(root()->property("opened").toBool());
        QCOMPARE(session->host->resources,
                 (QList<QPair<int, QString>>{{int(VTResourceUrl), "https://a.invalid/"}}));
        start(body, true, false);
        QTRY_VERIFY(root());
        QVERIFY(!root()->property("opened").toBool());
        QCOMPARE(session->host->resources.count(), 0);
        QTRY_COMPARE(heard().count(), 1);
        QVERIFY(refusals.first().contains("/ui/VidtipsUI.qml, line "));
    }

    void viewsLoadNothingOutside()
    {
        start("property bool reached: true", true);
        QTRY_VERIFY(root());
        session->view()->loadQML(packages.filePath("outside/Reaching.qml"));
        QVERIFY(!root());
        QTRY_COMPARE(heard().count(), 1);
        session->view()->setSource(QUrl::fromLocalFile(packages.filePath("outside/Reaching.qml")));
        QVERIFY(!root());
    }

    void staysRestrictedWithoutItsManager()
    {
        start("property bool reached: true", true);
        QTRY_VERIFY(root());
        const QPointer<VTView> view = session->view();
        delete session->host;
        QVERIFY(view);
        view->loadQML(packages.filePath("outside/Reaching.qml"));
        QVERIFY(!view->rootObject());
        view->setSource(QUrl::fromLocalFile(packages.filePath("outside/Reaching.qml")));
        QVERIFY(!view->rootObject());
    }

    // Scripts that are loaded already have what they had, so that all of it goes.
    void takesEffectAtTheNextTip()
    {
        const QByteArray body = "property bool reached: false\nfunction read() { var r = new XMLHttpRequest;"
                                "r.open('GET', 'file://ROOT/outside/list.xml'); reached = true }";
        start(filled(body), false);
        QTRY_VERIFY(root());
        QPointer<QObject> before = root();
        QMetaObject::invokeMethod(root(), "read");
        QVERIFY(before->property("reached").toBool());
        session->set(RestrictContent, true);
        showAgain();
        QVERIFY(!before);
        QMetaObject::invokeMethod(root(), "read");
        QVERIFY(!root()->property("reached").toBool());
        session->set(RestrictContent, false);
        showAgain();
        QMetaObject::invokeMethod(root(), "read");
        QVERIFY(root()->property("reached").toBool());
    }

    // Else Qt would read, as soon as the switch is off, what they name.
    void textsOfTheViewGoWithTheirContent()
    {
        start("property bool reached: true\nfunction name() { vidTipView.toolTip = '<b>a</b>';"
              "vidTipView.whatsThis = '<b>a</b>' }",
              true);
        QTRY_VERIFY(root());
        QMetaObject::invokeMethod(root(), "name");
        QCOMPARE(session->view()->toolTip(), QString("<b>a</b>"));
        session->set(RestrictContent, false);
        showAgain();
        QCOMPARE(session->view()->toolTip() + session->view()->whatsThis(), QString());
    }

    // The packages of one content are not those of the next, also where both have the same user interface.
    void keepsPackagesApart()
    {
        const QString shared =
            packages.write("Found.vidtips/Shared.qml",
                           "import QtQuick 1.0\nItem { width: 9; height: 9; property bool reached: it.status "
                           "== Image.Ready\n"
                           "Image { id: it; source: '../Other.vidtips/picture.png' } }");
        attributesOfTip = "ui='Shared.qml'";
        attributesOfAll = "search='Found'";
        packages.writeControl("Other", "tips.xml", R"(<vidtip key="other" ui="Shared.qml"/>)",
                              "search='Found'");
        start({}, true);
        attributesOfTip.clear();
        attributesOfAll.clear();
        QTRY_VERIFY(root());
        QVERIFY(!root()->property("reached").toBool());
        QTRY_COMPARE(heard().count(), 1);
        session->host->show("other", QPoint(10, 10), nullptr);
        QTRY_VERIFY(root() && root()->property("reached").toBool());
        session->host->show("own", QPoint(10, 10), nullptr);
        QTRY_VERIFY(root() && !root()->property("reached").toBool());
        QTRY_COMPARE(heard().count(), 2);
        packages.writeControl("Other", "tips.xml", R"(<vidtip key="other"/>)");
    }

    // Tests/Support/restricted-files has the system tell which files and servers are reached between the
    // marks.
    void tipWithAllAttacks()
    {
        FolderServer server(packages.filePath("outside"));
        int number = 0;
        QByteArray all;
        for (const Reader &reader : readers()) {
            for (const auto &way : ways()) {
                // Whoever reads files alone does not say which line asks, and no file is told of twice.
                if (reader.file[0] == '!' && (way.second.contains("ROOT") || way.second.contains("SERVER")))
                    continue;
                const QByteArray name = "Attack" + QByteArray::number(++number) + ".qml";
                const QByteArray address = way.second + QByteArray(reader.file).mid(reader.file[0] == '!');
                packages.write("Own.vidtips/ui/" + name,
                               "import QtQuick 1.0\nimport Qt.labs.folderlistmodel 1.0\nimport "
                               "Qt.labs.particles 1.0\nimport \"including.js\" as I\n"
                               "Item {\n"
                                   + filled(QByteArray(reader.body).replace("ADDRESS", address), server)
                                   + "\n}\n");
                all += "Loader { source: '" + name + "' }\n";
            }
        }
        QFile::exists("/begin of restricted content");
        start(all, true);
        // The engine asks but once for the component that two of them name.
        QTRY_VERIFY2_WITH_TIMEOUT(heard().count() == number - 1, qPrintable(refusals.join('\n')), patience);
        QCoreApplication::processEvents();
        QFile::exists("/end of restricted content");
        QCOMPARE(server.connections, 0);
    }

    void boundsMessages()
    {
        start("property bool reached: true\nComponent.onCompleted: { for (var i = 0; i < 500; ++i) {"
              "try { var r = new XMLHttpRequest; r.open('GET', 'file:///' + i) } catch (error) {} } }",
              true);
        QTRY_VERIFY(!heard().isEmpty());
        QCOMPARE(refusals.count(), 101);
        QVERIFY(refusals.last().endsWith("restricted content is refused more than is told here"));
    }

    void cleanup() { session.reset(); }

private:
    struct Reader
    {
        const char *name;
        const char *file; ///< begins with an exclamation mark where only files are read
        QByteArray body;
    };

    static QList<QPair<const char *, QByteArray>> ways()
    {
        return {{"absolute", "file://ROOT/outside/"},
                {"up", "../../outside/"},
                {"link", "linked/"},
                {"other package", "../../Other.vidtips/"},
                {"server", "SERVER/"}};
    }

    static QList<Reader> readers()
    {
        const QByteArray picture = "property bool reached: it.status == Image.Ready\n";
        const QByteArray asked = "property bool reached: false\nComponent.onCompleted: {";
        return {
            {"Image", "picture.png", picture + "Image { id: it; source: 'ADDRESS' }"},
            {"BorderImage", "picture.png", picture + "BorderImage { id: it; source: 'ADDRESS' }"},
            {"BorderImage, described", "border.sci", picture + "BorderImage { id: it; source: 'ADDRESS' }"},
            {"AnimatedImage", "animation.gif", picture + "AnimatedImage { id: it; source: 'ADDRESS' }"},
            {"Text", "picture.png",
             "property bool reached: it.height > 30\nText { id: it; text: '<p>a<img src=\"ADDRESS\"></p>' }"},
            {"Particles", "picture.png",
             "property bool reached: false\nproperty bool isSeen: true\nParticles { width: 100; height: 60; "
             "source: 'ADDRESS'; count: 50; lifeSpan: 60000; fadeInDuration: 0 }"},
            {"TextEdit", "picture.png",
             "property bool reached: it.paintedHeight > 30\n"
             "TextEdit { id: it; textFormat: TextEdit.RichText; text: '<p>a<img src=\"ADDRESS\"></p>' }"},
            {"FontLoader", "font.ttf",
             "property bool reached: it.status == FontLoader.Ready\nFontLoader { id: it; source: 'ADDRESS' "
             "}"},
            {"Loader", "Thing.qml",
             "property bool reached: it.status == Loader.Ready\nLoader { id: it; source: 'ADDRESS' }"},
            {"createComponent", "Thing.qml",
             asked
                 + "var c = Qt.createComponent('ADDRESS');"
                   "function look() { reached = c.status == Component.Ready }; look(); "
                   "c.statusChanged.connect(look) }"},
            {"XmlListModel", "list.xml",
             "property bool reached: it.count > 0\nXmlListModel { id: it; source: 'ADDRESS'; query: "
             "'/list/thing' }"},
            {"XMLHttpRequest", "list.xml",
             asked
                 + "var r = new XMLHttpRequest; r.onreadystatechange = function() { reached = "
                   "r.responseText.length > 0 };"
                   "r.open('GET', 'ADDRESS'); r.send() }"},
            {"include", "!script.js", asked + "reached = I.reaches('ADDRESS') }"},
            {"WorkerScript", "!worker.js",
             "property bool reached: false\nWorkerScript { id: it; source: 'ADDRESS'; onMessage: reached = "
             "true }\n"
             "Component.onCompleted: it.sendMessage({})"},
            {"FolderListModel", "!",
             "property bool reached: it.count > 0\nFolderListModel { id: it; folder: 'ADDRESS' }"},
        };
    }

    void writeFiles(const QString &folder)
    {
        QImage picture(40, 40, QImage::Format_RGB32);
        picture.fill(Qt::red);
        packages.write(folder + "/Thing.qml", "import QtQuick 1.0\nItem {}\n");
        packages.write(folder + "/Reaching.qml",
                       "import QtQuick 1.0\nItem { width: 9; height: 9; property bool reached: true }\n");
        QVERIFY(picture.save(packages.filePath(folder + "/picture.png")));
        packages.write(folder + "/script.js", "function answer() { return 42 }\n");
        packages.write(folder + "/list.xml", "<list><thing>42</thing></list>");
        packages.write(folder + "/border.sci",
                       "border.left: 1\nborder.top: 1\nborder.right: 1\nborder.bottom: 1\n"
                       "source: picture.png\n");
        packages.write(folder + "/worker.js",
                       "WorkerScript.onMessage = function(m) { WorkerScript.sendMessage(42) }\n");
        packages.write(
            folder + "/animation.gif",
            QByteArray::fromBase64("R0lGODlhAgACAPAAAP8AAAAAACH5BAAAAAAALAAAAAACAAIAAAIChFEAOw=="));
        QVERIFY2(QFile::copy(anyFont(), packages.filePath(folder + "/font.ttf")), "there is no font");
    }

    void writeCatalogues()
    {
        const QByteArray catalogue = TestCatalogue("Menu").add("Cut", "Ausschneiden").bytes();
        packages.write("outside/Vidtips_de_DE.qm", catalogue);
        packages.write("Own.vidtips/naming/Vidtips_de_DE.qm",
                       TestCatalogue("Menu")
                           .add("Copy", "Kopieren")
                           .addFile(packages.filePath("outside/Vidtips_de_DE.qm"))
                           .bytes());
    }

    void writeClips()
    {
        const QString resources = packages.filePath("Own.vidtips/Resources/");
        if (QFile::exists(resources + "usual.mp4"))
            return;
        QVERIFY(QFile::copy(TestClips::h264(), resources + "usual.mp4"));
        QVERIFY(QFile::copy(TestClips::h264(), packages.filePath("outside/clip.mp4")));
        QVERIFY(QFile::copy(TestClips::onePicture(), resources + "picture.mkv"));
        QVERIFY(QFile::copy(TestClips::make("clip.nut", TestClips::moving("64x48", 3, {"-c:v", "mpeg4"})),
                            resources + "clip.nut"));
        packages.write("Own.vidtips/Resources/list.m3u8",
                       "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n"
                           + packages.path().toUtf8() + "/outside/clip.mp4\n#EXT-X-ENDLIST\n");
        packages.write("Own.vidtips/Resources/list.ffconcat", "ffconcat version 1.0\nfile linked/clip.mp4\n");
    }

    QByteArray filled(const QByteArray &body, const FolderServer &server) const
    {
        return filled(body, server.url("").chopped(1));
    }

    QByteArray filled(QByteArray body, const QByteArray &server = {}) const
    {
        return body.replace("ROOT", packages.path().toUtf8()).replace("SERVER", server);
    }

    /** Shows a tip whose user interface has that body, in a session of its own. */
    void start(const QByteArray &body, bool isRestricted, bool opensResources = true)
    {
        refusals.clear();
        allMessages.clear();
        session.reset();
        packages.writeUserInterface("Own", "id: root\n" + body, 120, 80,
                                    imports
                                        + "import Qt.labs.folderlistmodel 1.0\nimport Qt.labs.particles "
                                          "1.0\nimport \"including.js\" as I\n");
        packages.writeControl("Own", "tips.xml", "<vidtip key=\"own\" " + attributesOfTip + "/>",
                              attributesOfAll);
        VTContext settings;
        settings.set(RestrictContent, isRestricted);
        settings.set(AllowExternalResources, opensResources);
        settings.set(ExtraComponentPath, extraPath);
        settings.set(ContentLocale, "de_DE");
        settings.set(HideDuration, 0);
        session.reset(new TestSession({packages.path()}, settings));
        session->host->show("own", QPoint(10, 10), nullptr);
        hear();
    }

    void showAgain()
    {
        session->manager()->hide();
        session->host->show("own", QPoint(10, 10), nullptr);
        QTRY_VERIFY(root());
    }

    void hear()
    {
        allMessages.clear();
        for (const auto &message : qAsConst(session->host->messages))
            allMessages.append(message.second);
        refusals = allMessages.filter(": restricted content is refused ");
    }

    QStringList heard()
    {
        hear();
        return refusals;
    }

    /** Tells whether the property "reached" becomes true before anything is refused. */
    bool reaches(const QByteArray &body, bool isRestricted = false)
    {
        start(body, isRestricted);
        const auto isReached = [this] {
            return root()
                && (root()->property("reached").toBool() || (root()->property("isSeen").toBool() && isRed()));
        };
        const auto isSettled = [&] {
            hear();
            return isReached() || !allMessages.isEmpty();
        };
        if (!QTest::qWaitFor(isSettled, patience))
            return false;
        // What was refused has its consequences, if any, when events were processed.
        const bool isThere = QTest::qWaitFor(isReached, 50);
        hear();
        return isThere;
    }

    /** Tells whether anything of the picture is seen, where the QML does not know. */
    bool isRed() const
    {
        const QImage image = session->view()->grab().toImage();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                if (color.red() > 100 && color.green() < color.red() / 2)
                    return true;
            }
        }
        return false;
    }

    void verifyRefused(const QByteArray &body)
    {
        QVERIFY(!reaches(body, true));
        QVERIFY2(refusals.count() == 1, qPrintable(refusals.join('\n')));
        verifyPlace("/Own.vidtips/");
    }

    void verifyPlace(const QString &file)
    {
        const QString place = "Package \"Own\", " + packages.path() + file;
        QVERIFY2(refusals.first().startsWith(place), qPrintable(refusals.first()));
    }

    QObject *root() const { return session->view() ? session->view()->rootObject() : nullptr; }

    TestPackages packages;
    QScopedPointer<TestSession> session;
    QByteArray imports;
    QByteArray attributesOfTip;
    QByteArray attributesOfAll;
    QString extraPath;
    QStringList allMessages;
    QStringList refusals;
};

QTEST_MAIN(tst_RestrictedContent)
#include "tst_restrictedcontent.moc"
