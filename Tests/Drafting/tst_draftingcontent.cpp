#include "TestPaths.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTXmlElement.h>

#include <QtCore/QDirIterator>
#include <QtCore/QTranslator>
#include <QtGui/QImage>
#include <QtTest/QtTest>

using namespace Vidtips;

/** Checks what the example ships: each key in each language, each file that is named, each translation. */
class tst_DraftingContent : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void bothLanguagesHaveTheSameKeys();
    void everyTipHasTitleAndSummary_data();
    void everyTipHasTitleAndSummary();
    void bothLanguagesAreBuiltAlike();
    void everyResourceExists();
    void clipsAreSmallAndOfEveryFormat();
    void textsForEveryLocaleAreTranslated();
    void helpTopicsExistInBothLanguages();

private:
    std::unique_ptr<VTXmlElement> tip(const QString &key, const QString &locale) const;

    VTContext m_context;
    std::unique_ptr<VTIndex> m_index;
    QHash<QString, QString> m_packages;
    QStringList m_keys;
};

namespace {

const QString content = TestPaths::built("share/vidtips-drafting/Content");

QString simplified(const VTXmlElement *element)
{
    return element ? element->content().simplified() : QString();
}

QStringList childTags(const VTXmlElement *element)
{
    QStringList tags;
    for (QObject *child : element->children())
        tags.append(child->objectName());
    return tags;
}

} // namespace

void tst_DraftingContent::initTestCase()
{
    m_context.set(KeyDataFile, content + QStringLiteral("/Keys.xml"));
    const QStringList dataPaths{content + QStringLiteral("/Base"), content + QStringLiteral("/Extra")};
    m_index = std::make_unique<VTIndex>(&m_context, dataPaths);
    for (const QString &dataPath : dataPaths) {
        QDirIterator files(dataPath, {QStringLiteral("*.xml")}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QFileInfo file(files.next());
            QDir package = file.dir();
            QVERIFY(package.cdUp());
            m_packages.insert(package.dirName(), package.canonicalPath());
            m_index->indexControlFile(file.canonicalFilePath(), package.canonicalPath());
        }
    }
    m_keys = m_index->keys();
    m_keys.removeDuplicates();
    QVERIFY(m_packages.size() >= 3);
    QVERIFY(m_keys.size() > 20);
}

std::unique_ptr<VTXmlElement> tst_DraftingContent::tip(const QString &key, const QString &locale) const
{
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    VTXmlElement *element = m_index->retrieve(key, QLocale(locale), directory, depth, root);
    if (!element)
        return nullptr;
    element->setParent(nullptr);
    delete root;
    return std::unique_ptr<VTXmlElement>(element);
}

void tst_DraftingContent::bothLanguagesHaveTheSameKeys()
{
    for (const QString &key : qAsConst(m_keys)) {
        QVERIFY2(tip(key, QStringLiteral("en_US")), qPrintable(key));
        QVERIFY2(tip(key, QStringLiteral("de_DE")), qPrintable(key));
    }
}

void tst_DraftingContent::everyTipHasTitleAndSummary_data()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("English") << QStringLiteral("en_US");
    QTest::newRow("German") << QStringLiteral("de_DE");
}

void tst_DraftingContent::everyTipHasTitleAndSummary()
{
    QFETCH(QString, locale);
    for (const QString &key : qAsConst(m_keys)) {
        const auto element = tip(key, locale);
        QVERIFY2(!element->attribute(QStringLiteral("title")).isEmpty(), qPrintable(key));
        QVERIFY2(!simplified(element->childElement(QStringLiteral("summary"))).isEmpty(), qPrintable(key));
    }
}

void tst_DraftingContent::bothLanguagesAreBuiltAlike()
{
    for (const QString &key : qAsConst(m_keys)) {
        const auto english = tip(key, QStringLiteral("en_US"));
        const auto german = tip(key, QStringLiteral("de_DE"));
        QCOMPARE(childTags(english.get()), childTags(german.get()));
    }
}

void tst_DraftingContent::everyResourceExists()
{
    for (const QString &key : qAsConst(m_keys)) {
        const auto element = tip(key, QStringLiteral("de_DE"));
        const QDir package(QFileInfo(element->attribute(QStringLiteral("VTLocation"))).dir().filePath(".."));
        for (const char *tag : {"clip", "picture"}) {
            const VTXmlElement *resource = element->childElement(QLatin1String(tag));
            if (!resource)
                continue;
            const QString file =
                package.filePath(QStringLiteral("Resources/") + resource->attribute("source"));
            QVERIFY2(QFileInfo(file).isFile(), qPrintable(file));
            QVERIFY2(qstrcmp(tag, "clip") == 0 || !QImage(file).isNull(), qPrintable(file));
        }
    }
}

void tst_DraftingContent::clipsAreSmallAndOfEveryFormat()
{
    QSet<QString> suffixes;
    QDirIterator clips(content, {"*.mp4", "*.webm", "*.avi"}, QDir::Files, QDirIterator::Subdirectories);
    while (clips.hasNext()) {
        const QFileInfo clip(clips.next());
        QVERIFY2(clip.size() > 10 * 1024 && clip.size() <= 300 * 1024, qPrintable(clip.filePath()));
        suffixes.insert(clip.suffix());
    }
    QCOMPARE(suffixes.size(), 3);
}

void tst_DraftingContent::textsForEveryLocaleAreTranslated()
{
    for (const QString &key : qAsConst(m_keys)) {
        const auto element = tip(key, QStringLiteral("de_DE"));
        const QByteArray context = element->attribute(QStringLiteral("context")).toUtf8();
        if (context.isEmpty())
            continue;
        QTranslator catalogue;
        const QDir package(QFileInfo(element->attribute(QStringLiteral("VTLocation"))).dir().filePath(".."));
        QVERIFY(catalogue.load(package.filePath(QStringLiteral("l10n/Vidtips_de_DE.qm"))));
        QVERIFY(!catalogue.translate("VidtipsUI", "More help").isEmpty());
        QStringList texts{element->attribute(QStringLiteral("title"))};
        for (QObject *child : element->children())
            texts.append(simplified(qobject_cast<VTXmlElement *>(child)));
        texts.removeAll(QString());
        for (const QString &text : qAsConst(texts))
            QVERIFY2(!catalogue.translate(context.constData(), text.toUtf8().constData()).isEmpty(),
                     qPrintable(text));
    }
}

void tst_DraftingContent::helpTopicsExistInBothLanguages()
{
    for (const char *language : {"en", "de"}) {
        QFile page(content + QStringLiteral("/Help/%1.html").arg(QLatin1String(language)));
        QVERIFY(page.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(page.readAll());
        for (const QString &key : qAsConst(m_keys)) {
            const QString topic = tip(key, QStringLiteral("en_US"))->attribute(QStringLiteral("help"));
            QVERIFY2(topic.isEmpty() || topic.contains(QStringLiteral("://"))
                         || text.contains(QStringLiteral("name=\"%1\"").arg(topic)),
                     qPrintable(topic));
        }
    }
}

QTEST_GUILESS_MAIN(tst_DraftingContent)
#include "tst_draftingcontent.moc"
