#include "TestCatalogue.h"
#include "TestClips.h"
#include "TestPackage.h"

#include "preview/PreviewWindow.h"
#include "shared/Diagnostics.h"
#include "stage/PreviewStage.h"

#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>
#include <Vidtips/VTXmlElement.h>

#include <QtCore/QSaveFile>
#include <QtDeclarative/QDeclarativeItem>
#include <QtGui/QImage>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QToolTip>

using namespace Vidtips;

namespace {

const char interfaceFile[] = "Tools.vidtips/ui/VidtipsUI.qml";
const char controlFile[] = "Tools.vidtips/Control/Tools.xml";
const char pictureFile[] = "Tools.vidtips/Resources/a.png";

QByteArray control(const QByteArray &title)
{
    return "<vidtips>\n<vidtip key=\"a\" title=\"" + title
        + "\" context=\"C\"/>\n<vidtip key=\"b\" title=\"Second\"/>\n<vidtip key=\"c\"/>\n</vidtips>\n";
}

QByteArray interfaceOf(int width)
{
    return "import QtQuick 1.1\n"
           "Rectangle {\n"
           "    property string title: vidtip.attribute(\"title\")\n"
           "    property string word: vidTipView.translate(vidtip.attribute(\"title\"), \"C\")\n"
           "    width: "
        + QByteArray::number(width)
        + "; height: 40; color: \"white\"\n"
          "    Image { x: 10; y: 10; source: \"../Resources/a.png\"; asynchronous: false }\n"
          "    SystemPalette { id: palette }\n"
          "    property color back: palette.window\n"
          "}\n";
}

void writePicture(const TestPackages &packages, const QColor &colour)
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(colour);
    packages.write(pictureFile, {});
    QVERIFY(image.save(packages.filePath(pictureFile)));
}

} // namespace

/** Shows tips in the preview's window while their files change. */
class tst_PreviewWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Diagnostics::capture(); }
    void init();
    void cleanup();
    void showsTheTipOfTheKey();
    void arrowKeysWalkTheKeys_data();
    void arrowKeysWalkTheKeys();
    void readsChangedControlFiles();
    void readsReplacedUserInterfaces();
    void readsChangedPictures();
    void readsChangedClips();
    void readsNewCatalogues();
    void followsNewAndVanishedPackages();
    void showsProblemsOverTheTip();
    void switchesSimpleAndDark();
    void keepsTheTipBesideTheWindow();

private:
    QObject *root() const;
    QString title() const { return root() ? root()->property("title").toString() : QString(); }
    QListWidget *list() const { return m_window->findChild<QListWidget *>(); }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<PreviewWindow> m_window;
};

void tst_PreviewWindow::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->write(controlFile, control("First"));
    m_packages->write(interfaceFile, interfaceOf(100));
    m_packages->write("Tools.vidtips/ui/SimpleTooltip.qml", interfaceOf(60));
    writePicture(*m_packages, Qt::red);
    PreviewSettings settings;
    settings.folders = QStringList{m_packages->path()};
    settings.locale = "de_DE";
    m_window = std::make_unique<PreviewWindow>(settings, "a");
    m_window->show();
}

void tst_PreviewWindow::cleanup()
{
    m_window.reset();
    m_packages.reset();
}

QObject *tst_PreviewWindow::root() const
{
    VTWidget *const tip = m_window->stage() ? m_window->stage()->window() : nullptr;
    return tip && tip->isVisible() && tip->view() ? tip->view()->rootObject() : nullptr;
}

void tst_PreviewWindow::showsTheTipOfTheKey()
{
    QCOMPARE(m_window->currentKey(), QString("a"));
    QCOMPARE(title(), QString("First"));
    QCOMPARE(list()->count(), 3);
    QCOMPARE(m_window->problems(), QStringList());
}

void tst_PreviewWindow::arrowKeysWalkTheKeys_data()
{
    QTest::addColumn<bool>("inTip");
    QTest::addColumn<int>("on");
    QTest::addColumn<int>("back");
    QTest::newRow("list, up and down") << false << int(Qt::Key_Down) << int(Qt::Key_Up);
    QTest::newRow("list, left and right") << false << int(Qt::Key_Right) << int(Qt::Key_Left);
    QTest::newRow("tip, up and down") << true << int(Qt::Key_Down) << int(Qt::Key_Up);
}

void tst_PreviewWindow::arrowKeysWalkTheKeys()
{
    QFETCH(bool, inTip);
    QFETCH(int, on);
    QFETCH(int, back);
    const auto press = [&](int key) {
        QWidget *const target = inTip ? static_cast<QWidget *>(m_window->stage()->window()->view()) : list();
        QTest::keyClick(target, Qt::Key(key));
    };
    press(on);
    QCOMPARE(m_window->currentKey(), QString("b"));
    QTRY_COMPARE(title(), QString("Second"));
    press(on);
    press(on);
    QCOMPARE(m_window->currentKey(), QString("c"));
    press(back);
    press(back);
    press(back);
    QCOMPARE(m_window->currentKey(), QString("a"));
    QTRY_COMPARE(title(), QString("First"));
}

void tst_PreviewWindow::readsChangedControlFiles()
{
    m_packages->write(controlFile, control("Changed"));
    QTRY_COMPARE(title(), QString("Changed"));
    QCOMPARE(m_window->currentKey(), QString("a"));
}

void tst_PreviewWindow::readsReplacedUserInterfaces()
{
    // As careful editors do, twice: a file that was replaced must still be watched.
    for (int width : {140, 180}) {
        QSaveFile file(m_packages->filePath(interfaceFile));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(interfaceOf(width));
        QVERIFY(file.commit());
        QTRY_VERIFY(root() && root()->property("width").toInt() == width);
    }
}

void tst_PreviewWindow::readsChangedPictures()
{
    const auto colour = [this] {
        VTWidget *const tip = m_window->stage()->window();
        return tip ? tip->grab().toImage().pixelColor(14, 14) : QColor();
    };
    QTRY_COMPARE(colour(), QColor(Qt::red));
    writePicture(*m_packages, Qt::blue);
    QTRY_COMPARE(colour(), QColor(Qt::blue));
}

void tst_PreviewWindow::readsChangedClips()
{
    const QByteArray player = "import QtQuick 1.1\nimport com.corvale.vidtips.qml 1.0\n"
                              "Item { width: 90; height: 40\n"
                              "    property real clipWidth: clip.contentWidth\n"
                              "    VTVideoComponent { id: clip; source: \"clip.mp4\" } }\n";
    m_packages->write("Tools.vidtips/Resources/clip.mp4", TestClips::read(TestClips::oddSize()));
    m_packages->write(interfaceFile, player);
    const auto width = [this] { return root() ? root()->property("clipWidth").toInt() : 0; };
    QTRY_COMPARE(width(), 161);
    m_packages->write("Tools.vidtips/Resources/clip.mp4", TestClips::read(TestClips::h264()));
    QTRY_COMPARE(width(), 160);
}

void tst_PreviewWindow::readsNewCatalogues()
{
    QCOMPARE(root()->property("word").toString(), QString("First"));
    m_packages->write("Tools.vidtips/l10n/Vidtips_de_DE.qm",
                      TestCatalogue("C").add("First", "Erstens").bytes());
    QTRY_VERIFY(root() && root()->property("word").toString() == "Erstens");
    m_packages->write("Tools.vidtips/l10n/Vidtips_de_DE.qm",
                      TestCatalogue("C").add("First", "Zuerst").bytes());
    QTRY_VERIFY(root() && root()->property("word").toString() == "Zuerst");
}

void tst_PreviewWindow::followsNewAndVanishedPackages()
{
    m_packages->write("More.vidtips/Control/More.xml", "<vidtips><vidtip key=\"more\"/></vidtips>");
    QTRY_COMPARE(list()->count(), 4);
    QVERIFY(QDir(m_packages->filePath("More.vidtips")).removeRecursively());
    QTRY_COMPARE(list()->count(), 3);
    QCOMPARE(title(), QString("First"));
}

void tst_PreviewWindow::showsProblemsOverTheTip()
{
    m_packages->write(interfaceFile, "import QtQuick 1.1\nItem {\n  nothing: 1\n}\n");
    QTRY_COMPARE(m_window->problems().size(), 1);
    QVERIFY2(m_window->problems().first().contains("VidtipsUI.qml:3:3: "),
             qPrintable(m_window->problems().first()));
    ProblemOverlay *overlay = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *found = qobject_cast<ProblemOverlay *>(widget))
            overlay = found;
    }
    if (!overlay)
        QFAIL("nothing lies over the tip");
    QVERIFY(overlay->isVisible());
    QCOMPARE(overlay->text(), m_window->problems().first());
    m_packages->write(interfaceFile,
                      interfaceOf(100).replace("word:", "late: nobody.knows\n    property string word:"));
    QTRY_VERIFY(m_window->problems().join(' ').contains("nobody"));
    m_packages->write(interfaceFile, interfaceOf(100));
    QTRY_COMPARE(m_window->problems(), QStringList());
    QVERIFY(!overlay->isVisible());
}

void tst_PreviewWindow::switchesSimpleAndDark()
{
    const auto switches = m_window->findChildren<QCheckBox *>();
    QCOMPARE(switches.size(), 2);
    switches.at(0)->setChecked(true);
    QTRY_VERIFY(root() && root()->property("width").toInt() == 60);
    QVERIFY(root()->property("back").value<QColor>().lightness() > 128);
    switches.at(1)->setChecked(true);
    QTRY_VERIFY(root() && root()->property("back").value<QColor>().lightness() < 128);
    // What simple tips write in black on.
    QVERIFY(QToolTip::palette().color(QPalette::ToolTipBase).lightness() > 128);
    QCOMPARE(title(), QString("First"));
}

void tst_PreviewWindow::keepsTheTipBesideTheWindow()
{
    m_window->move(120, 70);
    const auto isBeside = [this] {
        const QPoint tip = m_window->stage()->window()->pos();
        return tip.x() > m_window->frameGeometry().right() && tip.y() == m_window->geometry().top();
    };
    QTRY_VERIFY(isBeside());
    QVERIFY(m_window->stage()->window()->x() < m_window->frameGeometry().right() + 40);
}

QTEST_MAIN(tst_PreviewWindow)

#include "tst_previewwindow.moc"
