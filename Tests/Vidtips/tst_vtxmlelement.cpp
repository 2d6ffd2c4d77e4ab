#include <Vidtips/VTXmlElement.h>

#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <limits>

QT_WARNING_DISABLE_DEPRECATED

using Vidtips::VTXmlElement;

class tst_VTXmlElement : public QObject
{
    Q_OBJECT

private slots:
    void propertiesInDeclaredOrder_data();
    void propertiesInDeclaredOrder();
    void titleIsTheAttributeUnlessSet();
    void methodsInDeclaredOrder_data();
    void methodsInDeclaredOrder();
    void constructorsInDeclaredOrder();
    void newInstanceTakesAttributes();
    void constructorKeepsTheLastOfEqualNames();
    void startsEmpty();
    void tagNameIsTheObjectName();
    void settersAlwaysEmit();
    void contentIsReadOnlyAsAProperty();
    void appendContentEmitsOncePerCall();
    void setAttributeReplacesSilently();
    void absentAttributeIsNullAndAnEmptyOneIsPresent();
    void attributeNamesSortByCodeUnit();
    void childElementTakesDirectChildrenFirst();
    void childElementPassesOverOtherClasses();
    void childElementWithoutMatchIsNull();
    void childElementOfAnEmptyName();
    void childElementListIsInTreeOrderWithOtherClasses();
    void emptyNameListsEverything_data();
    void emptyNameListsEverything();
    void deletingAnElementDeletesItsSubtree();
    void toXml_data();
    void toXml();
    void toXmlRendersNestedElements();
    void toXmlIndents();
    void toXmlOfForeignChildrenIsAnEmptyElement();
    void toXmlSubstitutesSuccessively_data();
    void toXmlSubstitutesSuccessively();
    void toXmlOfAWideTreeIsLinear();
    void qmlReadsTheTree();
};

static VTXmlElement *makeChild(QObject *parent, const QString &tagName)
{
    auto *element = new VTXmlElement(parent);
    element->setTagName(tagName);
    return element;
}

static QMetaMethod ownMethod(int index)
{
    const QMetaObject &meta = VTXmlElement::staticMetaObject;
    return meta.method(meta.methodOffset() + index);
}

void tst_VTXmlElement::propertiesInDeclaredOrder_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("writable");
    QTest::addColumn<QByteArray>("notify");
    QTest::newRow("0") << QByteArray("tagName") << true << QByteArray("tagNameChanged()");
    QTest::newRow("1") << QByteArray("tagNameSpace") << true << QByteArray("tagNameSpaceChanged()");
    QTest::newRow("2") << QByteArray("content") << false << QByteArray("contentChanged()");
    QTest::newRow("3") << QByteArray("title") << true << QByteArray("contentChanged()");
}

void tst_VTXmlElement::propertiesInDeclaredOrder()
{
    QFETCH(QByteArray, name);
    const QMetaObject &meta = VTXmlElement::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 4);
    const QMetaProperty property =
        meta.property(meta.propertyOffset() + QByteArray(QTest::currentDataTag()).toInt());
    QCOMPARE(QByteArray(property.name()), name);
    QCOMPARE(property.type(), QVariant::String);
    QTEST(property.isWritable(), "writable");
    QTEST(property.notifySignal().methodSignature(), "notify");
}

void tst_VTXmlElement::titleIsTheAttributeUnlessSet()
{
    VTXmlElement element;
    QVERIFY(element.title().isNull());
    element.setAttribute("title", "Line");
    QCOMPARE(element.property("title").toString(), QStringLiteral("Line"));
    QSignalSpy changed(&element, &VTXmlElement::contentChanged);
    QVERIFY(element.setProperty("title", "Linie"));
    QCOMPARE(element.title(), QStringLiteral("Linie"));
    QCOMPARE(element.attribute("title"), QStringLiteral("Line"));
    QCOMPARE(changed.count(), 1);
    element.setTitle("");
    QCOMPARE(element.title(), QStringLiteral(""));
    element.setTitle(QString());
    QCOMPARE(element.title(), QStringLiteral("Line"));
}

void tst_VTXmlElement::methodsInDeclaredOrder_data()
{
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QByteArray>("result");
    QTest::addColumn<QList<QByteArray>>("parameters");
    QTest::addColumn<int>("type");
    const int signal = QMetaMethod::Signal;
    const int method = QMetaMethod::Method;
    const QList<QByteArray> none;
    const QList<QByteArray> name{"name"};
    const auto row = [](const char *tag, const char *signature, const char *result,
                        const QList<QByteArray> &parameters, int type) {
        QTest::newRow(tag) << QByteArray(signature) << QByteArray(result) << parameters << type;
    };
    row("0", "tagNameChanged()", "void", none, signal);
    row("1", "tagNameSpaceChanged()", "void", none, signal);
    row("2", "contentChanged()", "void", none, signal);
    row("3", "childElement(QString)", "VTXmlElement*", name, method);
    row("4", "childElementList(QString)", "QList<QObject*>", name, method);
    row("5", "attribute(QString)", "QString", name, method);
    row("6", "hasAttribute(QString)", "bool", name, method);
    row("7", "appendContent(QString)", "void", {"content"}, method);
    row("8", "toXml(int)", "QString", {"index"}, method);
    row("9", "toXml()", "QString", none, method);
}

void tst_VTXmlElement::methodsInDeclaredOrder()
{
    const QMetaObject &meta = VTXmlElement::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 10);
    const QMetaMethod method = ownMethod(QByteArray(QTest::currentDataTag()).toInt());
    QTEST(method.methodSignature(), "signature");
    QTEST(QByteArray(method.typeName()), "result");
    QTEST(method.parameterNames(), "parameters");
    QTEST(int(method.methodType()), "type");
    QVERIFY(method.returnType() != QMetaType::UnknownType);
}

void tst_VTXmlElement::constructorsInDeclaredOrder()
{
    const QMetaObject &meta = VTXmlElement::staticMetaObject;
    QCOMPARE(meta.constructorCount(), 3);
    QCOMPARE(meta.constructor(0).methodSignature(), QByteArray("VTXmlElement(QObject*,QXmlAttributes)"));
    QCOMPARE(meta.constructor(0).parameterNames(), (QList<QByteArray>{"parent", "attrs"}));
    QCOMPARE(meta.constructor(1).methodSignature(), QByteArray("VTXmlElement(QObject*)"));
    QCOMPARE(meta.constructor(2).methodSignature(), QByteArray("VTXmlElement()"));
}

void tst_VTXmlElement::newInstanceTakesAttributes()
{
    QXmlAttributes attributes;
    attributes.append("x:a", "urn:x", "a", "1");
    QObject parent;
    const QMetaObject &meta = VTXmlElement::staticMetaObject;
    QObject *object = meta.newInstance(Q_ARG(QObject *, &parent), Q_ARG(QXmlAttributes, attributes));
    auto *element = qobject_cast<VTXmlElement *>(object);
    QVERIFY(element);
    QCOMPARE(element->parent(), &parent);
    QCOMPARE(element->attributeNames(), QStringList{"x:a"});
    const std::unique_ptr<QObject> bare(meta.newInstance());
    QVERIFY(qobject_cast<VTXmlElement *>(bare.get()));
}

void tst_VTXmlElement::constructorKeepsTheLastOfEqualNames()
{
    QXmlAttributes attributes;
    attributes.append("a", "", "a", "first");
    attributes.append("a", "", "a", "last");
    QCOMPARE(VTXmlElement(nullptr, attributes).attribute("a"), QStringLiteral("last"));
}

void tst_VTXmlElement::startsEmpty()
{
    const VTXmlElement element;
    QVERIFY(!element.parent());
    QVERIFY(element.getTagName().isEmpty());
    QVERIFY(element.getTagNameSpace().isEmpty());
    QVERIFY(element.content().isEmpty());
    QVERIFY(element.attributeNames().isEmpty());
}

void tst_VTXmlElement::tagNameIsTheObjectName()
{
    VTXmlElement element;
    element.setTagName("title");
    QCOMPARE(element.objectName(), QStringLiteral("title"));
    element.setObjectName("other");
    QCOMPARE(element.getTagName(), QStringLiteral("other"));
}

void tst_VTXmlElement::settersAlwaysEmit()
{
    VTXmlElement element;
    QSignalSpy tagName(&element, &VTXmlElement::tagNameChanged);
    QSignalSpy nameSpace(&element, &VTXmlElement::tagNameSpaceChanged);
    QSignalSpy content(&element, &VTXmlElement::contentChanged);
    for (int i = 0; i < 2; ++i) {
        element.setTagName("a");
        element.setTagNameSpace("urn:a");
        element.setContent("text");
    }
    QCOMPARE(tagName.count(), 2);
    QCOMPARE(nameSpace.count(), 2);
    QCOMPARE(content.count(), 2);
    QCOMPARE(element.getTagNameSpace(), QStringLiteral("urn:a"));
    QCOMPARE(element.content(), QStringLiteral("text"));
}

void tst_VTXmlElement::contentIsReadOnlyAsAProperty()
{
    VTXmlElement element;
    element.setContent("text");
    QVERIFY(!element.setProperty("content", "other"));
    QCOMPARE(element.property("content").toString(), QStringLiteral("text"));
}

void tst_VTXmlElement::appendContentEmitsOncePerCall()
{
    VTXmlElement element;
    QSignalSpy changed(&element, &VTXmlElement::contentChanged);
    for (const char *piece : {"a", "", "b"})
        element.appendContent(piece);
    QCOMPARE(changed.count(), 3);
    QCOMPARE(element.content(), QStringLiteral("ab"));
}

void tst_VTXmlElement::setAttributeReplacesSilently()
{
    VTXmlElement element;
    QSignalSpy tagName(&element, &VTXmlElement::tagNameChanged);
    QSignalSpy nameSpace(&element, &VTXmlElement::tagNameSpaceChanged);
    QSignalSpy content(&element, &VTXmlElement::contentChanged);
    element.setAttribute("a", "1");
    element.setAttribute("a", "2");
    QCOMPARE(element.attributeNames(), QStringList{"a"});
    QCOMPARE(element.attribute("a"), QStringLiteral("2"));
    QCOMPARE(tagName.count() + nameSpace.count() + content.count(), 0);
}

void tst_VTXmlElement::absentAttributeIsNullAndAnEmptyOneIsPresent()
{
    VTXmlElement element;
    element.setAttribute("empty", "");
    QVERIFY(element.attribute("absent").isNull());
    QVERIFY(!element.hasAttribute("absent"));
    QVERIFY(element.hasAttribute("empty"));
    QVERIFY(!element.attribute("empty").isNull());
    QVERIFY(!element.hasAttribute("Empty"));
}

void tst_VTXmlElement::attributeNamesSortByCodeUnit()
{
    VTXmlElement element;
    for (const char *name : {"b", "a", "B", "\u00e4", "a1"})
        element.setAttribute(QString::fromUtf8(name), "x");
    QCOMPARE(element.attributeNames(), (QStringList{"B", "a", "a1", "b", QString::fromUtf8("\u00e4")}));
}

void tst_VTXmlElement::childElementTakesDirectChildrenFirst()
{
    VTXmlElement root;
    VTXmlElement *first = makeChild(&root, "group");
    VTXmlElement *deep = makeChild(first, "text");
    VTXmlElement *direct = makeChild(&root, "text");
    QCOMPARE(root.childElement("text"), direct);
    QCOMPARE(first->childElement("text"), deep);
    delete direct;
    QCOMPARE(root.childElement("text"), deep);
}

void tst_VTXmlElement::childElementPassesOverOtherClasses()
{
    VTXmlElement root;
    QObject foreign(&root);
    foreign.setObjectName("text");
    VTXmlElement *inside = makeChild(&foreign, "text");
    QCOMPARE(root.childElement("text"), inside);
}

void tst_VTXmlElement::childElementWithoutMatchIsNull()
{
    VTXmlElement root;
    root.setTagName("root");
    makeChild(&root, "a");
    QVERIFY(!root.childElement("A"));
    QVERIFY(!root.childElement("root"));
    QVERIFY(root.childElementList("b").isEmpty());
}

// Unlike in the list, an empty name is a name; a null one is any.
void tst_VTXmlElement::childElementOfAnEmptyName()
{
    VTXmlElement root;
    VTXmlElement *named = makeChild(&root, "a");
    QVERIFY(!root.childElement(QString("")));
    QCOMPARE(root.childElement(QString()), named);
    VTXmlElement *unnamed = makeChild(&root, "");
    QCOMPARE(root.childElement(QString("")), unnamed);
}

void tst_VTXmlElement::childElementListIsInTreeOrderWithOtherClasses()
{
    VTXmlElement root;
    VTXmlElement *first = makeChild(&root, "x");
    VTXmlElement *inFirst = makeChild(first, "x");
    VTXmlElement *other = makeChild(&root, "y");
    VTXmlElement *inOther = makeChild(other, "x");
    auto *foreign = new QObject(&root);
    foreign->setObjectName("x");
    QCOMPARE(root.childElementList("x"), (QList<QObject *>{first, inFirst, inOther, foreign}));
}

void tst_VTXmlElement::emptyNameListsEverything_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString("");
    QTest::newRow("null") << QString();
}

void tst_VTXmlElement::emptyNameListsEverything()
{
    QFETCH(QString, name);
    VTXmlElement root;
    VTXmlElement *child = makeChild(&root, "a");
    auto *unnamed = new QObject(child);
    VTXmlElement *second = makeChild(&root, "b");
    QCOMPARE(root.childElementList(name), (QList<QObject *>{child, unnamed, second}));
}

void tst_VTXmlElement::deletingAnElementDeletesItsSubtree()
{
    auto *root = new VTXmlElement;
    VTXmlElement *leaf = makeChild(makeChild(root, "a"), "b");
    QSignalSpy destroyed(leaf, &QObject::destroyed);
    delete root;
    QCOMPARE(destroyed.count(), 1);
}

void tst_VTXmlElement::toXml_data()
{
    QTest::addColumn<QString>("tagName");
    QTest::addColumn<QStringList>("attributes");
    QTest::addColumn<QString>("expected");
    QTest::newRow("bare") << "a" << QStringList() << "<a/>";
    QTest::newRow("attributes by name") << "a" << QStringList{"x", "1", "b", "2"} << "<a b=\"2\" x=\"1\"/>";
    QTest::newRow("not escaped") << "a" << QStringList{"x", "\"<&>\""} << "<a x=\"\"<&>\"\"/>";
    QTest::newRow("empty value") << "a" << QStringList{"x", ""} << "<a x=\"\"/>";
    QTest::newRow("no name") << "" << QStringList() << "</>";
}

void tst_VTXmlElement::toXml()
{
    QFETCH(QString, tagName);
    QFETCH(QStringList, attributes);
    VTXmlElement element;
    element.setTagName(tagName);
    element.setTagNameSpace("urn:left-out");
    element.setContent("left out");
    for (int i = 0; i < attributes.size(); i += 2)
        element.setAttribute(attributes.at(i), attributes.at(i + 1));
    QTEST(element.toXml(), "expected");
}

void tst_VTXmlElement::toXmlRendersNestedElements()
{
    VTXmlElement root;
    root.setTagName("a");
    root.setAttribute("x", "1");
    root.setAttribute("b", "2");
    VTXmlElement *child = makeChild(&root, "c");
    QCOMPARE(root.toXml(), QStringLiteral("<a b=\"2\" x=\"1\">\n  <c/>\n</a>"));
    makeChild(child, "d");
    makeChild(&root, "e");
    QCOMPARE(root.toXml(), QStringLiteral("<a b=\"2\" x=\"1\">\n  <c>\n    <d/>\n  </c>\n  <e/>\n</a>"));
}

void tst_VTXmlElement::toXmlIndents()
{
    VTXmlElement root;
    root.setTagName("a");
    makeChild(&root, "b");
    QCOMPARE(root.toXml(3), QStringLiteral("   <a>\n     <b/>\n   </a>"));
    QCOMPARE(root.toXml(-5), QStringLiteral("<a>\n<b/>\n</a>"));
    QCOMPARE(root.toXml(std::numeric_limits<int>::min()), QStringLiteral("<a>\n<b/>\n</a>"));
    QCOMPARE(root.toXml(std::numeric_limits<int>::max()), root.toXml(4096));
    QVERIFY(root.toXml(4096).startsWith(QString(4096, QLatin1Char(' ')) + "<a>\n"));
}

void tst_VTXmlElement::toXmlOfForeignChildrenIsAnEmptyElement()
{
    VTXmlElement root;
    root.setTagName("a");
    auto *foreign = new QObject(&root);
    foreign->setObjectName("x");
    makeChild(foreign, "b");
    QCOMPARE(root.toXml(), QStringLiteral("<a/>"));
}

void tst_VTXmlElement::toXmlSubstitutesSuccessively_data()
{
    QTest::addColumn<QString>("tagName");
    QTest::addColumn<QString>("attribute");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("tag takes the attributes") << "t%3"
                                              << "x"
                                              << "1"
                                              << "<t x=\"1\" x=\"1\"/>";
    QTest::newRow("tag takes the mark") << "t%4"
                                        << "x"
                                        << "1"
                                        << "<t/ x=\"1\"/>";
    QTest::newRow("value takes the mark") << "t"
                                          << "x"
                                          << "a%4b"
                                          << "<t x=\"a/b\"/>";
    QTest::newRow("name takes the value") << "t"
                                          << "n%2"
                                          << "v"
                                          << "<t nv=\"v\"/>";
    QTest::newRow("unused marker stays") << "t"
                                         << "x"
                                         << "%9"
                                         << "<t x=\"%9\"/>";
}

void tst_VTXmlElement::toXmlSubstitutesSuccessively()
{
    QFETCH(QString, attribute);
    QFETCH(QString, value);
    QFETCH(QString, tagName);
    VTXmlElement element;
    element.setTagName(tagName);
    element.setAttribute(attribute, value);
    QTEST(element.toXml(), "expected");
}

void tst_VTXmlElement::toXmlOfAWideTreeIsLinear()
{
    VTXmlElement root;
    root.setTagName("r");
    for (int i = 0; i < 50000; ++i)
        makeChild(&root, "c");
    QCOMPARE(root.toXml().count(QLatin1Char('\n')), 50001);
}

void tst_VTXmlElement::qmlReadsTheTree()
{
    VTXmlElement root;
    VTXmlElement *child = makeChild(&root, "title");
    child->setAttribute("lang", "en");
    QQmlEngine::setObjectOwnership(&root, QQmlEngine::CppOwnership);
    QJSEngine engine;
    engine.globalObject().setProperty("tip", engine.newQObject(&root));
    const auto evaluate = [&](const char *script) {
        return engine.evaluate(QString::fromLatin1(script)).toString();
    };
    QCOMPARE(evaluate("tip.childElement('title').attribute('lang')"), QStringLiteral("en"));
    QCOMPARE(evaluate("tip.childElement('title').hasAttribute('x')"), QStringLiteral("false"));
    QCOMPARE(evaluate("tip.childElement('none')"), QStringLiteral("null"));
    QCOMPARE(evaluate("tip.childElement('title').toXml(1)"), QStringLiteral(" <title lang=\"en\"/>"));
}

QTEST_GUILESS_MAIN(tst_VTXmlElement)
#include "tst_vtxmlelement.moc"
