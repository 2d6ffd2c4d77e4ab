#include <Vidtips/VTXmlElement.h>
#include <Vidtips/VTXmlParser.h>

#include "MessageRecorder.h"
#include "ProcessorTime.h"

#include <QtCore/QBuffer>
#include <QtCore/QPointer>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

QT_WARNING_DISABLE_DEPRECATED

using Vidtips::VTXmlElement;
using Vidtips::VTXmlParser;

/** A class whose attributes arrive as properties. */
class Panel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int width MEMBER width)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(int fixed READ fixed)
    Q_PROPERTY(QString tagName MEMBER tag)

public:
    Q_INVOKABLE explicit Panel(QObject *parent)
        : QObject(parent)
    {
    }
    int fixed() const { return 7; }

    int width = 0;
    QString title;
    QString tag;
};

/** A class that takes neither attributes nor text nor a name. */
class Plain : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit Plain(QObject *parent)
        : QObject(parent)
    {
    }
};

/** An element class of a host's own, which keeps its text in its own way. */
class Note : public VTXmlElement
{
    Q_OBJECT

public:
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    Q_INVOKABLE explicit Note(QObject *parent, const QXmlAttributes &attrs = QXmlAttributes())
        : VTXmlElement(parent, attrs)
    {
    }
    QT_WARNING_POP
    Q_INVOKABLE void appendContent(const QString &content) { pieces << content; }

    QStringList pieces;
};

/** A class that no element can be made of. */
class Unmakable : public QObject
{
    Q_OBJECT
};

/** A class that removes its parent as soon as it is made. */
class Remover : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit Remover(QObject *parent) { delete parent; }
};

using Flags = QMap<QString, int>;
Q_DECLARE_METATYPE(Flags)

class tst_VTXmlParser : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void registryReplacesAndForgets();
    void flagsHaveTheirValues();
    void elementGetsNameNamespaceTextAndAttributes();
    void whiteSpaceIsKept();
    void registryUsesTheLocalName();
    void readFormsAreEqual();
    void readStartsAfresh();
    void filters_data();
    void filters();
    void filterSeesQualifiedNameAttributesAndUserData();
    void subtreeFlagStopsAsking_data();
    void subtreeFlagStopsAsking();
    void elementInsideASkippedOneIsDetached();
    void attributesBecomeProperties();
    void elementClassOfAHost();
    void classWithoutPropertiesIsLeftAlone();
    void unknownPropertyStops();
    void refusedValueIsReportedAndParsingGoesOn_data();
    void refusedValueIsReportedAndParsingGoesOn();
    void missingObjectStops_data();
    void missingObjectStops();
    void malformedDocumentKeepsThePartialTree();
    void repeatedAttributeIsMalformed_data();
    void repeatedAttributeIsMalformed();
    void emptyInputYieldsNothing();
    void nullSourceYieldsNothing();
    void handlersSurviveWithoutADocument();
    void objectThatDeletesItsParent();
    void deepNestingStopsAtTheBound();
    void deepSkippedNestingStopsAtTheBound();
    void deepContentModel_data();
    void deepContentModel();
    void parenthesesInTextAreNotBounded();
    void largeText();
    void externalEntityIsNotFetched();
    void entityExpansionIsBounded();
    void bounds_data();
    void bounds();
};

static QByteArray deepDocument(int levels)
{
    QByteArray document;
    for (int i = 0; i < levels; ++i)
        document += "<a>";
    for (int i = 0; i < levels; ++i)
        document += "</a>";
    return document;
}

static QList<QObject *> read(VTXmlParser &parser, const QByteArray &document)
{
    QXmlInputSource source;
    source.setData(document);
    return parser.read(source);
}

static std::unique_ptr<VTXmlElement> readRoot(VTXmlParser &parser, const QByteArray &document)
{
    const QList<QObject *> objects = read(parser, document);
    return std::unique_ptr<VTXmlElement>(qobject_cast<VTXmlElement *>(objects.value(0)));
}

/** Returns the flags that the map given as user data has for the element, 1 for those it lacks. */
static int flagsFromMap(const QString &qName, const QXmlAttributes &, void *userData)
{
    return static_cast<Flags *>(userData)->value(qName, VTXmlParser::GenerateElement);
}

void tst_VTXmlParser::defaults()
{
    VTXmlParser parser(nullptr, nullptr);
    QCOMPARE(parser.defaultElement(), &VTXmlElement::staticMetaObject);
    QVERIFY(!parser.metaObjectForElement("VTXmlElement"));
}

void tst_VTXmlParser::registryReplacesAndForgets()
{
    VTXmlParser parser(nullptr, nullptr);
    parser.registerElement("panel", &Plain::staticMetaObject);
    parser.registerElement("panel", &Panel::staticMetaObject);
    QCOMPARE(parser.metaObjectForElement("panel"), &Panel::staticMetaObject);
    QVERIFY(!parser.metaObjectForElement("Panel"));
    parser.unregisterElement("panel");
    parser.unregisterElement("panel");
    QVERIFY(!parser.metaObjectForElement("panel"));
}

void tst_VTXmlParser::flagsHaveTheirValues()
{
    QCOMPARE(int(VTXmlParser::GenerateElement), 1);
    QCOMPARE(int(VTXmlParser::GenerateSubtree), 2);
    QCOMPARE(int(VTXmlParser::SkipElement), 4);
    QCOMPARE(int(VTXmlParser::SkipSubtree), 8);
}

void tst_VTXmlParser::elementGetsNameNamespaceTextAndAttributes()
{
    VTXmlParser parser(nullptr, nullptr);
    const auto root =
        readRoot(parser, "<v:tip xmlns:v='urn:v ' v:key='k' plain='p'>one<b>two</b>&amp;three</v:tip>");
    QVERIFY(root);
    QVERIFY(!root->parent());
    QCOMPARE(root->getTagName(), QStringLiteral("v:tip"));
    QCOMPARE(root->getTagNameSpace(), QStringLiteral("urn:v"));
    QCOMPARE(root->content(), QStringLiteral("one&three"));
    QCOMPARE(root->attributeNames(), (QStringList{"plain", "v:key"}));
    QCOMPARE(root->attribute("v:key"), QStringLiteral("k"));
    QCOMPARE(root->childElement("b")->content(), QStringLiteral("two"));
    QCOMPARE(root->childElement("b")->getTagNameSpace(), QString());
}

void tst_VTXmlParser::whiteSpaceIsKept()
{
    VTXmlParser parser(nullptr, nullptr);
    const auto root = readRoot(parser, "<a>\n  <b/>\n  <c/>\n</a>");
    QVERIFY(root);
    QCOMPARE(root->content(), QStringLiteral("\n  \n  \n"));
}

void tst_VTXmlParser::registryUsesTheLocalName()
{
    VTXmlParser parser(nullptr, nullptr);
    parser.registerElement("b", &Plain::staticMetaObject);
    parser.registerElement("x:c", &Plain::staticMetaObject);
    const auto root = readRoot(parser, "<a xmlns:x='urn:x'><x:b/><x:c/></a>");
    QVERIFY(root);
    QVERIFY(qobject_cast<Plain *>(root->children().at(0)));
    QVERIFY(qobject_cast<VTXmlElement *>(root->children().at(1)));
}

void tst_VTXmlParser::readFormsAreEqual()
{
    VTXmlParser parser(nullptr, nullptr);
    QXmlInputSource source;
    source.setData(QByteArray("<a/>"));
    const QList<QObject *> objects = parser.read(&source);
    QCOMPARE(objects.size(), 1);
    QCOMPARE(objects.at(0)->objectName(), QStringLiteral("a"));
    qDeleteAll(objects);
}

void tst_VTXmlParser::readStartsAfresh()
{
    VTXmlParser parser(nullptr, nullptr);
    MessageRecorder recorder;
    qDeleteAll(read(parser, "<a><b><c>"));
    const auto root = readRoot(parser, "<d/>");
    QVERIFY(root);
    QCOMPARE(root->toXml(), QStringLiteral("<d/>"));
    Flags flags{{"skipped", 12}, {"left", 4}};
    VTXmlParser filtering(&flagsFromMap, &flags);
    qDeleteAll(read(filtering, "<a><left><b/></left><skipped><c>"));
    const QList<QObject *> detached = filtering.detachedObjects();
    QCOMPARE(detached.size(), 1);
    QVERIFY(readRoot(filtering, "<d/>"));
    QVERIFY(filtering.detachedObjects().isEmpty());
    qDeleteAll(detached);
}

void tst_VTXmlParser::filters_data()
{
    QTest::addColumn<Flags>("flags");
    QTest::addColumn<QString>("expected");
    const QString everything = QStringLiteral("<a>\n  <b>\n    <c/>\n  </b>\n  <d/>\n</a>");
    const QString emptyB = QStringLiteral("<a>\n  <b/>\n  <d/>\n</a>");
    const QString withoutB = QStringLiteral("<a>\n  <d/>\n</a>");
    QTest::newRow("all generated") << Flags{} << everything;
    QTest::newRow("no flag generates") << Flags{{"b", 0}} << everything;
    QTest::newRow("subtree wins inside") << Flags{{"a", 2}, {"b", 4}, {"c", 8}} << everything;
    QTest::newRow("both generate flags") << Flags{{"b", 3}, {"c", 12}} << everything;
    QTest::newRow("skipped element") << Flags{{"b", 4}} << withoutB;
    QTest::newRow("skipped, subtree generated") << Flags{{"b", 6}} << withoutB;
    QTest::newRow("own object, nothing inside") << Flags{{"b", 8}} << emptyB;
    QTest::newRow("nothing at all") << Flags{{"b", 12}} << withoutB;
    QTest::newRow("skip beats generate inside") << Flags{{"b", 11}} << emptyB;
    QTest::newRow("wanted inside unwanted") << Flags{{"b", 4}, {"d", 4}} << QStringLiteral("<a/>");
    QTest::newRow("skipped root") << Flags{{"a", 12}} << QString();
}

void tst_VTXmlParser::filters()
{
    QFETCH(Flags, flags);
    VTXmlParser parser(&flagsFromMap, &flags);
    const auto root = readRoot(parser, "<a><b>text<c/></b><d/></a>");
    QTEST(root ? root->toXml() : QString(), "expected");
    qDeleteAll(parser.detachedObjects());
}

static int recordCall(const QString &qName, const QXmlAttributes &atts, void *userData)
{
    static_cast<QStringList *>(userData)->append(qName + QLatin1Char('=') + atts.value("key"));
    return atts.value("flags").isEmpty() ? 1 : atts.value("flags").toInt();
}

void tst_VTXmlParser::filterSeesQualifiedNameAttributesAndUserData()
{
    QStringList calls;
    VTXmlParser parser(&recordCall, &calls);
    QVERIFY(readRoot(parser, "<x:a xmlns:x='urn:x' key='1'><b key='2'/></x:a>"));
    QCOMPARE(calls, (QStringList{"x:a=1", "b=2"}));
}

void tst_VTXmlParser::subtreeFlagStopsAsking_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("generate subtree") << 2 << QStringList{"a=", "e="};
    QTest::newRow("skip subtree") << 8 << QStringList{"a=", "e="};
    QTest::newRow("skip all") << 12 << QStringList{"a=", "e="};
    QTest::newRow("skip element") << 4 << QStringList{"a=", "b=", "c=", "d=", "e="};
}

void tst_VTXmlParser::subtreeFlagStopsAsking()
{
    QFETCH(int, flags);
    QStringList asked;
    VTXmlParser parser(&recordCall, &asked);
    const QByteArray document = "<r><a flags='%1'><b><c/></b><d/></a><e/></r>";
    QVERIFY(readRoot(parser, QByteArray(document).replace("%1", QByteArray::number(flags))));
    qDeleteAll(parser.detachedObjects());
    QTEST(QStringList(asked.mid(1)), "calls");
}

void tst_VTXmlParser::elementInsideASkippedOneIsDetached()
{
    Flags flags{{"b", 4}};
    VTXmlParser parser(&flagsFromMap, &flags);
    const auto root = readRoot(parser, "<a><b>dropped<c>kept<d/></c></b>own</a>");
    QVERIFY(root);
    QVERIFY(root->children().isEmpty());
    QCOMPARE(root->content(), QStringLiteral("own"));
    const QList<QObject *> detached = parser.detachedObjects();
    QCOMPARE(detached.size(), 1);
    const std::unique_ptr<VTXmlElement> inner(qobject_cast<VTXmlElement *>(detached.at(0)));
    QVERIFY(inner && !inner->parent());
    QCOMPARE(inner->toXml(), QStringLiteral("<c>\n  <d/>\n</c>"));
    QCOMPARE(inner->content(), QStringLiteral("kept"));
}

void tst_VTXmlParser::attributesBecomeProperties()
{
    VTXmlParser parser(nullptr, nullptr);
    parser.registerElement("panel", &Panel::staticMetaObject);
    const auto root =
        readRoot(parser, "<a><panel objectName='first' width='12' title='x&lt;y'>text</panel></a>");
    QVERIFY(root);
    auto *panel = qobject_cast<Panel *>(root->children().value(0));
    QVERIFY(panel);
    QCOMPARE(panel->objectName(), QStringLiteral("first"));
    QCOMPARE(panel->width, 12);
    QCOMPARE(panel->title, QStringLiteral("x<y"));
    QCOMPARE(panel->tag, QStringLiteral("panel"));
}

void tst_VTXmlParser::elementClassOfAHost()
{
    VTXmlParser parser(nullptr, nullptr);
    parser.setDefaultElement(&Note::staticMetaObject);
    const auto root = readRoot(parser, "<x:a xmlns:x='urn:x' key='k'>one<b>in</b>two</x:a>");
    auto *note = qobject_cast<Note *>(root.get());
    QVERIFY(note);
    QCOMPARE(note->pieces, (QStringList{"one", "two"}));
    QCOMPARE(note->getTagName(), QStringLiteral("x:a"));
    QCOMPARE(note->getTagNameSpace(), QStringLiteral("urn:x"));
    QCOMPARE(note->attribute("key"), QStringLiteral("k"));
    QCOMPARE(qobject_cast<Note *>(note->childElement("b"))->pieces, QStringList{"in"});
}

void tst_VTXmlParser::classWithoutPropertiesIsLeftAlone()
{
    VTXmlParser parser(nullptr, nullptr);
    parser.registerElement("plain", &Plain::staticMetaObject);
    const auto root = readRoot(parser, "<a><plain>text<b/></plain></a>");
    QVERIFY(root);
    QObject *plain = root->children().value(0);
    QVERIFY(plain);
    QVERIFY(plain->objectName().isEmpty());
    QVERIFY(plain->dynamicPropertyNames().isEmpty());
    QCOMPARE(plain->children().size(), 1);
}

void tst_VTXmlParser::unknownPropertyStops()
{
    VTXmlParser parser(nullptr, nullptr);
    parser.registerElement("panel", &Panel::staticMetaObject);
    MessageRecorder recorder;
    const auto root = readRoot(parser, "<a><b/><panel width='1' height='2' depth='3'/><c/></a>");
    QVERIFY(root);
    QCOMPARE(root->toXml(), QStringLiteral("<a>\n  <b/>\n</a>"));
    QCOMPARE(root->children().size(), 1);
    const auto messages = recorder.messages();
    QCOMPARE(messages.value(0).text, QStringLiteral("No Property named height on Panel"));
    QCOMPARE(messages.value(0).type, QtDebugMsg);
    QVERIFY(messages.value(0).file.endsWith("VTXmlParser.cpp"));
    QVERIFY(messages.value(0).function.contains("VTXmlParser::startElement(const QString"));
    QVERIFY(messages.value(1).text.startsWith(QStringLiteral("Fatal error at 1,")));
    QCOMPARE(messages.size(), 2);
}

void tst_VTXmlParser::refusedValueIsReportedAndParsingGoesOn_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QString>("message");
    QTest::newRow("not convertible") << QByteArray("width='wide'")
                                     << "Could not write \"wide\" to property width of Panel";
    QTest::newRow("read only") << QByteArray("fixed='3'")
                               << "Could not write \"3\" to property fixed of Panel";
    QTest::newRow("marker in the value")
        << QByteArray("width='%2'") << "Could not write \"%2\" to property width of Panel";
}

void tst_VTXmlParser::refusedValueIsReportedAndParsingGoesOn()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QString, message);
    VTXmlParser parser(nullptr, nullptr);
    parser.registerElement("panel", &Panel::staticMetaObject);
    MessageRecorder recorder;
    const auto root = readRoot(parser, "<a><panel " + attributes + " title='t'/><c/></a>");
    QCOMPARE(recorder.texts(), QStringList{message});
    QVERIFY(root);
    QCOMPARE(root->children().size(), 2);
    QCOMPARE(qobject_cast<Panel *>(root->children().at(0))->title, QStringLiteral("t"));
}

void tst_VTXmlParser::missingObjectStops_data()
{
    QTest::addColumn<bool>("hasDefault");
    QTest::newRow("class without constructor") << true;
    QTest::newRow("no default class") << false;
}

void tst_VTXmlParser::missingObjectStops()
{
    QFETCH(bool, hasDefault);
    VTXmlParser parser(nullptr, nullptr);
    parser.registerElement("a", &VTXmlElement::staticMetaObject);
    parser.setDefaultElement(hasDefault ? &Unmakable::staticMetaObject : nullptr);
    MessageRecorder recorder;
    const auto root = readRoot(parser, "<a>text<x:b xmlns:x='urn:x'/>more</a>");
    QVERIFY(root);
    QCOMPARE(root->content(), QStringLiteral("text"));
    QVERIFY(root->children().isEmpty());
    QCOMPARE(recorder.texts().value(0), QStringLiteral("Could not find object for element: b"));
    QCOMPARE(recorder.texts().size(), 2);
}

void tst_VTXmlParser::malformedDocumentKeepsThePartialTree()
{
    VTXmlParser parser(nullptr, nullptr);
    MessageRecorder recorder;
    const auto root = readRoot(parser, "<a>\n<b/><c></d></a>");
    QVERIFY(root);
    QCOMPARE(root->toXml(), QStringLiteral("<a>\n  <b/>\n  <c/>\n</a>"));
    const auto messages = recorder.messages();
    QCOMPARE(messages.size(), 1);
    QCOMPARE(messages.at(0).text, QStringLiteral("Fatal error at 2,11 : tag mismatch"));
    QCOMPARE(messages.at(0).type, QtDebugMsg);
    QVERIFY(messages.at(0).function.contains("VTXmlParser::fatalError(const QXmlParseException"));
}

void tst_VTXmlParser::repeatedAttributeIsMalformed_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("partialTree");
    QTest::newRow("made") << QByteArray("<a><b/><c x='1' y='2' x='3'/></a>") << "<a>\n  <b/>\n</a>";
    QTest::newRow("nothing but it") << QByteArray("<a><b/><c x='1' x='1'/></a>") << "<a>\n  <b/>\n</a>";
    QTest::newRow("skipped") << QByteArray("<a><skip x='1' y='2' x='3'/><b/></a>") << "<a/>";
    QTest::newRow("in a skipped tree")
        << QByteArray("<a><skip><c x='1' y='2' x='3'/></skip><b/></a>") << "<a/>";
}

void tst_VTXmlParser::repeatedAttributeIsMalformed()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, partialTree);
    Flags flags{{"skip", 12}};
    VTXmlParser parser(&flagsFromMap, &flags);
    MessageRecorder recorder;
    const auto root = readRoot(parser, document);
    QVERIFY(root);
    QCOMPARE(root->toXml(), partialTree);
    QCOMPARE(recorder.texts().size(), 1);
    QVERIFY(recorder.texts().constFirst().startsWith(QStringLiteral("Fatal error at 1,")));
    QVERIFY(recorder.texts().constFirst().endsWith(QStringLiteral(" : attribute 'x' redefined")));

    const auto next = readRoot(parser, "<a x='1' y:x='2'/>");
    QVERIFY(next);
    QCOMPARE(next->attributeNames(), (QStringList{"x", "y:x"}));
    QCOMPARE(recorder.texts().size(), 1);

    parser.setDefaultElement(nullptr);
    QVERIFY(read(parser, "<a/>").isEmpty());
    QCOMPARE(recorder.texts().size(), 3);
    QVERIFY(recorder.texts().constLast().endsWith(QStringLiteral(" : error triggered by consumer")));
}

void tst_VTXmlParser::emptyInputYieldsNothing()
{
    VTXmlParser parser(nullptr, nullptr);
    MessageRecorder recorder;
    QVERIFY(read(parser, QByteArray()).isEmpty());
    QVERIFY(read(parser, QByteArray("\0\xff\xfe<", 4)).isEmpty());
    QCOMPARE(recorder.texts().size(), 2);
}

void tst_VTXmlParser::nullSourceYieldsNothing()
{
    VTXmlParser parser(nullptr, nullptr);
    QVERIFY(parser.read(nullptr).isEmpty());
}

void tst_VTXmlParser::handlersSurviveWithoutADocument()
{
    VTXmlParser parser(nullptr, nullptr);
    QVERIFY(parser.endElement({}, {}, {}));
    QVERIFY(parser.characters("text"));
    QVERIFY(parser.ignorableWhitespace(" "));
    QVERIFY(parser.startElement({}, "a", "a", QXmlAttributes()));
    QVERIFY(parser.characters("text"));
    const QList<QObject *> objects = parser.detachedObjects();
    QCOMPARE(objects.size(), 1);
    QCOMPARE(qobject_cast<VTXmlElement *>(objects.at(0))->content(), QStringLiteral("text"));
    delete objects.at(0);
    QVERIFY(parser.characters("more"));
    QVERIFY(parser.detachedObjects().isEmpty());
}

void tst_VTXmlParser::objectThatDeletesItsParent()
{
    VTXmlParser parser(nullptr, nullptr);
    parser.registerElement("remover", &Remover::staticMetaObject);
    const QByteArray inner = "<a><b><remover/>text<c/></b></a>";
    const auto root = readRoot(parser, inner);
    QVERIFY(root);
    QVERIFY(root->children().isEmpty());
    // The remover takes no parent, and the parent of what comes after it is gone.
    QCOMPARE(parser.detachedObjects().size(), 2);
    qDeleteAll(parser.detachedObjects());
    QVERIFY(read(parser, "<remover>text<c/></remover>").isEmpty());
    qDeleteAll(parser.detachedObjects());
}

void tst_VTXmlParser::deepNestingStopsAtTheBound()
{
    VTXmlParser parser(nullptr, nullptr);
    MessageRecorder recorder;
    const auto within = readRoot(parser, deepDocument(VTXmlParser::maximumDepth));
    QVERIFY(within);
    QCOMPARE(recorder.texts(), QStringList());
    const auto beyond = readRoot(parser, deepDocument(100000));
    QVERIFY(beyond);
    QCOMPARE(recorder.texts().size(), 1);
    QVERIFY(recorder.texts().constFirst().startsWith(QStringLiteral("Fatal error at 1,")));
    QVERIFY(recorder.texts().constFirst().endsWith(QStringLiteral(" : elements are nested too deep")));
    QCOMPARE(beyond->childElementList("a").size(), VTXmlParser::maximumDepth - 1);
    QVERIFY(!beyond->toXml().isEmpty());
}

void tst_VTXmlParser::deepSkippedNestingStopsAtTheBound()
{
    Flags flags{{"a", 12}};
    VTXmlParser parser(&flagsFromMap, &flags);
    MessageRecorder recorder;
    const auto within = readRoot(parser, "<r>" + deepDocument(VTXmlParser::maximumDepth - 1) + "<b/></r>");
    QVERIFY(within);
    QCOMPARE(within->toXml(), QStringLiteral("<r>\n  <b/>\n</r>"));
    QCOMPARE(recorder.texts(), QStringList());
    const auto beyond = readRoot(parser, "<r>" + deepDocument(100000) + "<b/></r>");
    QVERIFY(beyond);
    QCOMPARE(beyond->toXml(), QStringLiteral("<r/>"));
    QCOMPARE(recorder.texts().size(), 1);
    QVERIFY(recorder.texts().constFirst().startsWith(QStringLiteral("Fatal error at 1,")));
    QVERIFY(recorder.texts().constFirst().endsWith(QStringLiteral(" : elements are nested too deep")));
}

void tst_VTXmlParser::deepContentModel_data()
{
    QTest::addColumn<QByteArray>("declarations");
    QTest::addColumn<bool>("isRead");
    const auto model = [](int levels) {
        return "<!ELEMENT a " + QByteArray(levels, '(') + 'b' + QByteArray(levels, ')') + '>';
    };
    const QByteArray group = QByteArray(1900, '(');
    QTest::newRow("shallow") << model(100) << true;
    QTest::newRow("many") << model(20).repeated(1000) << true;
    QTest::newRow("at the bound") << model(VTXmlParser::maximumDepth) << true;
    QTest::newRow("beyond the bound") << model(VTXmlParser::maximumDepth + 1) << false;
    QTest::newRow("deep") << model(200000) << false;
    QTest::newRow("deep in an entity") << "<!ENTITY % p '" + model(200000) + "'>%p;" << false;
    QTest::newRow("deep by expansion")
        << "<!ENTITY % p '" + group + "'><!ENTITY % q '" + QByteArray("%p;").repeated(100)
            + "'><!ENTITY % r '&#60;!ELEMENT a " + QByteArray("%q;").repeated(100) + "'>%r;"
        << false;
}

void tst_VTXmlParser::deepContentModel()
{
    QFETCH(QByteArray, declarations);
    VTXmlParser parser(nullptr, nullptr);
    MessageRecorder recorder;
    const auto root = readRoot(parser, "<!DOCTYPE a [" + declarations + "]><a>((text</a>");
    QTEST(root != nullptr, "isRead");
    QCOMPARE(recorder.texts().isEmpty(), root != nullptr);
}

void tst_VTXmlParser::largeText()
{
    VTXmlParser parser(nullptr, nullptr);
    QByteArray document = "<a b='" + QByteArray(1 << 20, 'v') + "'>" + QByteArray(8 << 20, 't') + "</a>";
    QBuffer buffer(&document);
    QXmlInputSource source(&buffer);
    const QList<QObject *> objects = parser.read(source);
    const std::unique_ptr<VTXmlElement> root(qobject_cast<VTXmlElement *>(objects.value(0)));
    QVERIFY(root);
    QCOMPARE(root->content().size(), 8 << 20);
    QCOMPARE(root->attribute("b").size(), 1 << 20);
}

void tst_VTXmlParser::parenthesesInTextAreNotBounded()
{
    VTXmlParser parser(nullptr, nullptr);
    const auto root = readRoot(parser, "<a>" + QByteArray(100000, '(') + "</a>");
    QVERIFY(root);
    QCOMPARE(root->content().size(), 100000);
}

void tst_VTXmlParser::externalEntityIsNotFetched()
{
    const QTemporaryDir directory;
    QFile secret(directory.filePath("secret.txt"));
    QVERIFY(secret.open(QIODevice::WriteOnly));
    secret.write("<leaked/>");
    secret.close();
    const QByteArray url = "file://" + secret.fileName().toUtf8();
    VTXmlParser parser(nullptr, nullptr);
    const auto root = readRoot(parser,
                               "<!DOCTYPE a [<!ENTITY % p SYSTEM '" + url + "'><!ENTITY e SYSTEM '" + url
                                   + "'>]><a>1&e;2</a>");
    QVERIFY(root);
    QCOMPARE(root->toXml(), QStringLiteral("<a/>"));
    QCOMPARE(root->content(), QStringLiteral("12"));
}

void tst_VTXmlParser::entityExpansionIsBounded()
{
    QByteArray document = "<!DOCTYPE a [<!ENTITY e0 'lol'>";
    for (int i = 1; i < 30; ++i) {
        const QByteArray inner = "&e" + QByteArray::number(i - 1) + ';';
        document += "<!ENTITY e" + QByteArray::number(i) + " '" + inner.repeated(10) + "'>";
    }
    document += "]><a><b/>&e29;</a>";
    VTXmlParser parser(nullptr, nullptr);
    MessageRecorder recorder;
    const auto root = readRoot(parser, document);
    QVERIFY(recorder.texts().value(0).startsWith(QStringLiteral("Fatal error at ")));
    QVERIFY(!root || root->content().size() < (1 << 20));
}

// VTXmlBounds: what is within them is read as ever, and what is beyond ends in time that its size accounts
// for.
void tst_VTXmlParser::bounds_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("content"); // characters
    QTest::addColumn<QString>("problem");
    const auto many = [](int count, const char *text) {
        QByteArray all;
        for (int i = 0; i < count; ++i)
            all += QByteArray(text).replace("#", QByteArray::number(i));
        return all;
    };
    const auto withEntities = [](const QByteArray &declarations, const QByteArray &rest) {
        return "<!DOCTYPE a [" + declarations + "]>" + rest;
    };
    const auto uses = [](int count) { return "<a>" + QByteArray("&e;").repeated(count) + "</a>"; };

    const QString namespaces = QStringLiteral("more than 30 namespaces");
    QTest::newRow("30 namespaces") << "<a" + many(30, " xmlns:p#='u'") + ">t</a>" << 1 << QString();
    QTest::newRow("31 namespaces") << "<a" + many(31, " xmlns:p#='u'") + ">t</a>" << 0 << namespaces;
    QTest::newRow("default namespace")
        << "<a xmlns='u'" + many(30, " xmlns:p#='u'") + ">t</a>" << 0 << namespaces;
    QTest::newRow("100,000 namespaces") << "<a" + many(100000, " xmlns:p#='u'") + ">t</a>" << 0 << namespaces;
    QTest::newRow("namespaces of siblings")
        << "<a>" + many(1000, "<b xmlns:p#='u'/>") + "t</a>" << 1 << QString();
    QTest::newRow("the same namespace within")
        << "<a>" + QByteArray("<b xmlns:p='u'>").repeated(40) + QByteArray("</b>").repeated(40) + "t</a>" << 1
        << QString();
    QTest::newRow("namespaces within each other")
        << "<a>t" + many(31, "<b xmlns:p#='u'>") + QByteArray("</b>").repeated(31) + "</a>" << 1
        << namespaces;

    const QString entities = QStringLiteral("more than 1000 entities");
    QTest::newRow("1,000 entities") << withEntities(many(1000, "<!ENTITY e# 'u'>"), "<a>&e0;&e999;</a>") << 2
                                    << QString();
    QTest::newRow("1,001 entities") << withEntities(many(1001, "<!ENTITY e# 'u'>"), "<a/>") << 0 << entities;
    QTest::newRow("20,000 entities") << withEntities(many(20000, "<!ENTITY e# 'u'>"), "<a/>") << 0
                                     << entities;
    QTest::newRow("20,000 external entities")
        << withEntities(many(20000, "<!ENTITY e# SYSTEM 'u'>"), "<a/>") << 0 << entities;
    QTest::newRow("declared again") << withEntities(many(2000, "<!ENTITY e 'u'>"), uses(1)) << 1 << QString();

    const QString expansion = QStringLiteral("entities expand to more than 1000000 characters");
    const QByteArray long4000 = "<!ENTITY e '" + QByteArray(4000, 'x') + "'>";
    QTest::newRow("a million characters") << withEntities(long4000, uses(250)) << 1000000 << QString();
    QTest::newRow("more than a million") << withEntities(long4000, uses(251)) << 0 << expansion;
    QTest::newRow("300,000 uses") << withEntities(long4000, uses(300000)) << 0 << expansion;
    QTest::newRow("300,000 uses in an attribute")
        << withEntities(long4000, "<a b='" + QByteArray("&e;").repeated(300000) + "'/>") << 0 << expansion;
    QTest::newRow("300,000 short uses")
        << withEntities("<!ENTITY e 'x'>", uses(300000)) << 300000 << QString();
    QTest::newRow("300,000 uses of none")
        << withEntities(long4000, "<a>" + QByteArray("&lt;").repeated(300000) + "</a>") << 300000
        << QString();
    QTest::newRow("300,000 parameters") << withEntities(
        "<!ENTITY % e '" + QByteArray(2000, ' ') + "'>" + QByteArray("%e;").repeated(300000), "<a/>")
                                        << 0 << expansion;
    QTest::newRow("an entity that is declared later")
        << withEntities("<!ENTITY e '&f;&f;'><!ENTITY f 'xy'>", uses(2)) << 8 << QString();
    const auto chain = [&](int levels) {
        QByteArray declarations;
        for (int i = 0; i < levels; ++i)
            declarations += "<!ENTITY e" + QByteArray::number(i) + " '"
                + QByteArray("&e" + QByteArray::number(i + 1) + ';').repeated(20) + "'>";
        return declarations + "<!ENTITY e" + QByteArray::number(levels) + " '0123456789'>";
    };
    QTest::newRow("entities of later ones") << withEntities(chain(3), "<a>&e0;</a>") << 80000 << QString();
    QTest::newRow("entities of later ones, without end")
        << withEntities(chain(50), "<a>&e0;</a>") << 0 << expansion;
    QTest::newRow("entities of later ones, in an attribute")
        << withEntities(chain(50), "<a b='&e0;'/>") << 0 << expansion;
    QTest::newRow("references in entities") << withEntities(
        many(500, "<!ENTITY e# '&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;'>"), "<a/>")
                                            << 0 << QStringLiteral("more than 10000 references in entities");
}

void tst_VTXmlParser::bounds()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, problem);
    VTXmlParser parser(nullptr, nullptr);
    MessageRecorder recorder;
    const double before = processorTime();
    const auto root = readRoot(parser, document);
    // It takes a tenth of a second at most, and without the bounds from ten seconds to for ever.
    QVERIFY(processorTime() - before < 5000);
    QTEST(root ? root->content().size() : 0, "content");
    QCOMPARE(recorder.texts().value(0).section(QStringLiteral(" : "), 1), problem);
    // The next document begins anew.
    QVERIFY(readRoot(parser, "<!DOCTYPE a [<!ENTITY e 'x'>]><a xmlns:p='u'>&e;</a>"));
    QCOMPARE(recorder.texts().size(), problem.isEmpty() ? 0 : 1);
}

QTEST_GUILESS_MAIN(tst_VTXmlParser)
#include "tst_vtxmlparser.moc"
