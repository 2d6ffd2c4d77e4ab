#include <Vidtips/VTVideoComponent.h>

#include "TestClips.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsScene>

#include <cstdio>

using namespace Vidtips;

namespace {

const QString library(QStringLiteral(VIDTIPS_LIBRARY));
const QString module(QStringLiteral(VIDTIPS_CODECS));

bool isFFmpegLoaded()
{
    return TestPackages::read("/proc/self/maps").contains("libavcodec");
}

// What this program does when a test starts it, with the library of another folder: shows a tip with a clip,
// and says what became of it.
QJsonObject showClip(const QString &clip)
{
    QJsonObject said;
    const TestPackages packages;
    packages.write("Clips.vidtips/Resources/clip.mp4", TestClips::read(clip));
    packages.write("Clips.vidtips/ui/VidtipsUI.qml", R"(
import QtQuick 1.0
import com.corvale.vidtips.qml 1.0
Item {
    width: 200; height: 160
    Text { objectName: "title"; text: vidtip.attribute("title") }
    VTVideoComponent { objectName: "clip"; source: "clip.mp4" }
})");
    packages.writeControl("Clips", "tips.xml", R"(<vidtip key="cut" title="Cut"/>)");
    TestSession session({packages.path()});
    said["before"] = isFFmpegLoaded();
    QWidget button;
    said["shown"] = session.host->show("cut", QPoint(10, 20), &button);
    QObject *const root = session.view()->rootObject();
    auto *const item = root->findChild<VTVideoComponent *>("clip");
    said["decided"] = QTest::qWaitFor([=] { return item->status() > VTVideoComponent::Loading; }, 30000);
    said["status"] = item->status();
    said["problem"] = item->errorString();
    said["after"] = isFFmpegLoaded();
    said["title"] = root->findChild<QObject *>("title")->property("text").toString();
    QJsonArray warnings;
    for (const auto &message : std::as_const(session.host->messages)) {
        if (message.first == VTMessageWarning)
            warnings << message.second;
    }
    said["warnings"] = warnings;
    return said;
}

} // namespace

/** The module with the codecs: when it is loaded, where it is found, and what becomes of a tip
 * without it. */
class tst_VTCodecsModule : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void comesWithTheFirstClip();
    void isFoundBesideTheLibrary_data();
    void isFoundBesideTheLibrary();
    void tipWorksWithoutIt_data();
    void tipWorksWithoutIt();

private:
    QString installLibrary() const;
    QString modulePath() const;
    QJsonObject show(const QString &folder, const QString &directory = {}) const;

    std::unique_ptr<QTemporaryDir> tree;
};

void tst_VTCodecsModule::init()
{
    tree = std::make_unique<QTemporaryDir>();
    QVERIFY(tree->isValid());
}

// The library alone, in a folder of its own; returns that.
QString tst_VTCodecsModule::installLibrary() const
{
    const QDir folder(tree->filePath("lib"));
    folder.mkpath(QFileInfo(module).dir().dirName());
    QFile::copy(QFileInfo(library).canonicalFilePath(), folder.filePath("libVidtips.so.1"));
    return folder.path();
}

QString tst_VTCodecsModule::modulePath() const
{
    const QFileInfo original(module);
    return tree->filePath("lib/" + original.dir().dirName() + '/' + original.fileName());
}

QJsonObject tst_VTCodecsModule::show(const QString &folder, const QString &directory) const
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_LIBRARY_PATH", folder + ':' + environment.value("LD_LIBRARY_PATH"));
    program.setProcessEnvironment(environment);
    if (!directory.isEmpty())
        program.setWorkingDirectory(directory);
    program.start(QCoreApplication::applicationFilePath(), {"show", TestClips::h264()});
    if (!program.waitForFinished(60000) || program.exitStatus() != QProcess::NormalExit)
        qWarning() << program.errorString() << program.readAllStandardError();
    return QJsonDocument::fromJson(program.readAllStandardOutput()).object();
}

void tst_VTCodecsModule::comesWithTheFirstClip()
{
    const QJsonObject said = show(QFileInfo(library).path());
    QCOMPARE(said["before"].toBool(true), false);
    QCOMPARE(said["after"].toBool(), true);
    QCOMPARE(said["status"].toInt(), int(VTVideoComponent::Ready));
    QCOMPARE(said["warnings"].toArray(), QJsonArray());
}

void tst_VTCodecsModule::isFoundBesideTheLibrary_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("directory");
    QTest::newRow("moved") << "%1/lib"
                           << "";
    QTest::newRow("moved, by a relative path") << "lib"
                                               << "%1";
    QTest::newRow("by a link to the library") << "%1/links"
                                              << "";
}

void tst_VTCodecsModule::isFoundBesideTheLibrary()
{
    QFETCH(QString, folder);
    QFETCH(QString, directory);
    const QString lib = installLibrary();
    QVERIFY(QFile::copy(module, modulePath()));
    QDir(tree->path()).mkdir("links");
    QVERIFY(QFile::link(lib + "/libVidtips.so.1", tree->filePath("links/libVidtips.so.1")));
    const auto inTree = [this](const QString &path) {
        return path.contains('%') ? path.arg(tree->path()) : path;
    };
    const QJsonObject said = show(inTree(folder), inTree(directory));
    QCOMPARE(said["problem"].toString(), QString());
    QCOMPARE(said["status"].toInt(), int(VTVideoComponent::Ready));
}

void tst_VTCodecsModule::tipWorksWithoutIt_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    const QByteArray whole = TestClips::read(module);
    QTest::newRow("missing") << false << QByteArray() << "there is no ";
    QTest::newRow("empty") << true << QByteArray() << "";
    QTest::newRow("text") << true << QByteArray("This is no module.\n") << "";
    QTest::newRow("first bytes") << true << whole.left(100) << "";
    for (int percent : {10, 50, 90})
        QTest::addRow("%d percent", percent) << true << whole.left(whole.size() / 100 * percent) << "";
    QTest::newRow("all but the last byte") << true << whole.chopped(1) << "";
    QTest::newRow("zeros") << true << QByteArray(whole.size(), '\0') << "";
    QByteArray other = whole;
    other.replace("vidtips.codecs/", "vidtips.voices/");
    QVERIFY(other != whole);
    QTest::newRow("another module") << true << other << "com.corvale.vidtips.voices";
    QByteArray alone = whole;
    alone.replace("libavformat.so", "libabsent__.so");
    QVERIFY(alone != whole);
    QTest::newRow("without FFmpeg") << true << alone << "libabsent__.so";
}

void tst_VTCodecsModule::tipWorksWithoutIt()
{
    QFETCH(bool, isThere);
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QString folder = installLibrary();
    if (isThere) {
        QFile file(modulePath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }
    const QJsonObject said = show(folder);
    QCOMPARE(said["shown"].toBool(), true);
    QCOMPARE(said["title"].toString(), QString("Cut"));
    QCOMPARE(said["status"].toInt(), int(VTVideoComponent::Error));
    const QString problem = said["problem"].toString();
    QVERIFY2(problem.startsWith("Could not load the codecs for ") && problem.contains("/clip.mp4")
                 && problem.contains(modulePath()) && problem.contains(reason),
             qPrintable(problem));
    QCOMPARE(said["warnings"].toArray(), QJsonArray{"Tip \"cut\": " + problem});
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "show") == 0) {
        const QByteArray said = QJsonDocument(showClip(QString::fromLocal8Bit(argv[2]))).toJson();
        std::fputs(said.constData(), stdout);
        return 0;
    }
    tst_VTCodecsModule test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_vtcodecsmodule.moc"
