#include "TestCatalogue.h"
#include "TestClips.h"
#include "TestPackage.h"

#include "preview/PreviewWindow.h"
#include "preview/ProblemPanel.h"
#include "shared/Diagnostics.h"
#include "stage/PreviewStage.h"

#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>
#include <Vidtips/VTXmlElement.h>

#include <QtCore/QSaveFile>
#include <QtDeclarative/QDeclarativeItem>
#include <QtGui/QClipboard>
#include <QtGui/QDesktopServices>
#include <QtGui/QImage>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
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
        + "\"/>\n<vidtip key=\"b\" title=\"Second\"/>\n<vidtip key=\"c\"/>\n</vidtips>\n";
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

/**
 * Shows tips in the preview's window while their files change and PreviewSwitches is used; the list of tips
 * is drawn by TwoLineDelegate.
 */
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
    void switchesWhatHostsSay_data();
    void switchesWhatHostsSay();
    void switchesLanguageAndDirection();
    void saysWhatALanguageLacks();
    void holdsTheFirstPhase();
    void showsKeptWindows();
    void closesForAnotherScale();
    void findingsOpenTheirPlaces();
    void followsRenamedKeys_data();
    void followsRenamedKeys();
    void keepsTheTipBesideTheWindow();

public slots:
    void open(const QUrl &url) { m_opened = url; }

private:
    QObject *root() const;
    QString title() const { return root() ? root()->property("title").toString() : QString(); }
    QListWidget *list() const
    {
        const auto lists = m_window->findChildren<QListWidget *>();
        return qobject_cast<ProblemPanel *>(lists.at(0)) ? lists.at(1) : lists.at(0);
    }
    QCheckBox *check(const QByteArray &name) const { return m_window->findChild<QCheckBox *>(name); }

    QUrl m_opened;
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
    check("simple")->setChecked(true);
    QTRY_VERIFY(root() && root()->property("width").toInt() == 60);
    QVERIFY(root()->property("back").value<QColor>().lightness() > 128);
    check("dark")->setChecked(true);
    QTRY_VERIFY(root() && root()->property("back").value<QColor>().lightness() < 128);
    QVERIFY(QToolTip::palette().color(QPalette::ToolTipBase).lightness() < 128);
    QCOMPARE(title(), QString("First"));
}

void tst_PreviewWindow::switchesWhatHostsSay_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("motion") << QByteArray("still") << "%(motion)s %(available)s"
                            << "off %(available)s";
    QTest::newRow("available") << QByteArray("unavailable") << "%(motion)s %(available)s"
                               << "%(motion)s off";
}

void tst_PreviewWindow::switchesWhatHostsSay()
{
    QFETCH(QByteArray, name);
    m_packages->write(interfaceFile,
                      "import QtQuick 1.1\nItem { width: 9; height: 9\n  property string said: "
                      "vidTipView.interpolate(\"%(motion)s %(available)s\") }\n");
    const auto said = [this] { return root() ? root()->property("said").toString() : QString(); };
    QTEST(QTest::qWaitFor([&] { return !said().isEmpty(); }) ? said() : QString(), "before");
    check(name)->setChecked(true);
    QTEST(said(), "after");
    check(name)->setChecked(false);
    QTEST(said(), "before");
}

void tst_PreviewWindow::switchesLanguageAndDirection()
{
    m_packages->write("Tools.vidtips/Control/Arabic.xml",
                      "<vidtips locale=\"ar_EG\"><vidtip key=\"a\" title=\"\u062e\u0637\"/></vidtips>");
    auto *const locale = m_window->findChild<QComboBox *>("locale");
    QTRY_VERIFY(locale->findData("ar_EG") >= 0);
    QCOMPARE(QGuiApplication::layoutDirection(), Qt::LeftToRight);
    locale->setCurrentIndex(locale->findData("ar_EG"));
    QCOMPARE(title(), QString::fromUtf8("\u062e\u0637"));
    QCOMPARE(QGuiApplication::layoutDirection(), Qt::RightToLeft);
    QVERIFY(check("mirrored")->isChecked());
    check("mirrored")->setChecked(false);
    QCOMPARE(QGuiApplication::layoutDirection(), Qt::LeftToRight);
    locale->setCurrentIndex(locale->findData("de_DE"));
    QVERIFY(!check("mirrored")->isChecked());
    check("mirrored")->setChecked(true);
    QCOMPARE(QGuiApplication::layoutDirection(), Qt::RightToLeft);
    QCOMPARE(title(), QString("First"));
}

// Another tip takes its place.
void tst_PreviewWindow::saysWhatALanguageLacks()
{
    m_packages->write("Tools.vidtips/Control/German.xml", "<vidtips locale=\"de_DE\"/>");
    m_packages->write("Tools.vidtips/Control/Arabic.xml",
                      "<vidtips locale=\"ar_EG\"><vidtip key=\"only\" title=\"\u062e\u0637\"/></vidtips>");
    auto *const locale = m_window->findChild<QComboBox *>("locale");
    QTRY_VERIFY(locale->findData("ar_EG") >= 0);
    locale->setCurrentIndex(locale->findData("ar_EG"));
    list()->setCurrentRow(3);
    QCOMPARE(m_window->currentKey(), QString("only"));
    locale->setCurrentIndex(locale->findData("de_DE"));
    QCOMPARE(m_window->currentKey(), QString("a"));
    const QList<QLabel *> labels = m_window->findChildren<QLabel *>();
    QVERIFY(std::any_of(labels.cbegin(), labels.cend(), [](const QLabel *label) {
        return label->text().startsWith("There is no tip \"only\" for de_DE; it is there for ar_EG.\n");
    }));
}

void tst_PreviewWindow::holdsTheFirstPhase()
{
    m_packages->write(interfaceFile,
                      "import QtQuick 1.1\nItem { id: tip; width: 9; height: 9; property bool grown: false\n"
                      "  property bool seen: false\n"
                      "  Timer { interval: 10; running: true; onTriggered: tip.seen = true }\n"
                      "  Timer { interval: 100; running: true; onTriggered: tip.grown = true } }\n");
    QTRY_VERIFY(root() && root()->property("grown").toBool());
    auto *const phase = m_window->findChild<QComboBox *>("phase");
    phase->setCurrentIndex(phase->findData(int(TipPhase::First)));
    QVERIFY(root() && root()->property("seen").toBool());
    // As much as would do otherwise.
    QTest::qWait(300);
    QVERIFY(!root()->property("grown").toBool());
    phase->setCurrentIndex(phase->findData(int(TipPhase::AsItComes)));
    QTRY_VERIFY(root() && root()->property("grown").toBool());
}

void tst_PreviewWindow::showsKeptWindows()
{
    auto *const phase = m_window->findChild<QComboBox *>("phase");
    phase->setCurrentIndex(phase->findData(int(TipPhase::Kept)));
    const auto isKept = [this] {
        const VTWidget *const tip = m_window->stage()->window();
        return tip && tip->isVisible() && tip->view()->reserved();
    };
    QVERIFY(isKept());
    QCOMPARE(title(), QString("First"));
    QTest::keyClick(list(), Qt::Key_Down);
    QVERIFY(isKept());
    QCOMPARE(title(), QString("Second"));
    // One that the user closes.
    m_window->stage()->window()->close();
    QTRY_VERIFY(!m_window->stage()->window());
    QTest::keyClick(list(), Qt::Key_Up);
    QVERIFY(isKept());
    phase->setCurrentIndex(phase->findData(int(TipPhase::AsItComes)));
    QVERIFY(!isKept());
    QCOMPARE(title(), QString("First"));
}

void tst_PreviewWindow::closesForAnotherScale()
{
    auto *const scale = m_window->findChild<QComboBox *>("scale");
    scale->setCurrentIndex(scale->findData(2.0));
    QVERIFY(!m_window->isVisible());
    QCOMPARE(m_window->settings().scale, 2.0);
}

void tst_PreviewWindow::findingsOpenTheirPlaces()
{
    auto *const panel = m_window->findChild<ProblemPanel *>();
    QVERIFY(!panel->isVisible());
    m_packages->write(controlFile,
                      "<vidtips>\n<vidtip key=\"a\"><summary>Press <b>Ctrl</b></summary>\n"
                      "</vidtip>\n<vidtip key=\"a b\"/>\n</vidtips>\n");
    m_packages->write("Tools.vidtips/ui/schema.xml",
                      "<schema><element name=\"vidtip\">"
                      "<element name=\"summary\" text=\"yes\"/>"
                      "</element></schema>");
    QTRY_COMPARE(panel->count(), 1);
    QVERIFY(panel->isVisible());
    const QString place = m_packages->filePath(controlFile) + ":2:32";
    QVERIFY2(panel->item(0)->text().contains("plain text [VT110]"), qPrintable(panel->item(0)->text()));
    // It is no error, and does not hide the tip.
    for (const QWidget *widget : QApplication::topLevelWidgets())
        QVERIFY(!qobject_cast<const ProblemOverlay *>(widget) || !widget->isVisible());
    QDesktopServices::setUrlHandler("file", this, "open");
    panel->open(0);
    QDesktopServices::unsetUrlHandler("file");
    QCOMPARE(m_opened, QUrl::fromLocalFile(m_packages->filePath(controlFile)));
    QCOMPARE(QGuiApplication::clipboard()->text(), place);
    QGuiApplication::clipboard()->clear();
    panel->setCurrentRow(0);
    QTest::keyClick(panel, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), place);
    panel->open(1);
    panel->open(-1);
}

void tst_PreviewWindow::followsRenamedKeys_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QString>("key");
    QTest::newRow("where it stood") << QByteArray(
        "<vidtip key=\"a\"/>\n<vidtip key=\"x\" title=\"Second\"/>\n"
        "<vidtip key=\"c\"/>\n<vidtip key=\"y\"/>")
                                    << "x";
    QTest::newRow("elsewhere") << QByteArray(
        "<vidtip key=\"a\"/>\n<vidtip key=\"c\"/>\n\n\n<vidtip key=\"x\"/>")
                               << "x";
    QTest::newRow("gone") << QByteArray("<vidtip key=\"a\"/>\n\n<vidtip key=\"c\"/>") << "a";
}

void tst_PreviewWindow::followsRenamedKeys()
{
    QFETCH(QByteArray, entries);
    QTest::keyClick(list(), Qt::Key_Down);
    QCOMPARE(m_window->currentKey(), QString("b"));
    QSignalSpy reloaded(m_window.get(), &PreviewWindow::reloaded);
    m_packages->write(controlFile, "<vidtips>\n" + entries + "\n</vidtips>\n");
    QTRY_VERIFY(!reloaded.isEmpty() && list()->count() > 0);
    QFETCH(QString, key);
    QTRY_COMPARE(m_window->currentKey(), key);
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
