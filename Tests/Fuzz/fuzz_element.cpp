// What QML does with an element: its properties and invokable methods, called by name. Each byte of the input
// says what to do next, and a simple model says what has to come of it.

#include "FuzzInput.h"
#include "FuzzTarget.h"

#include <Vidtips/VTXmlElement.h>

#include <QtCore/QMap>
#include <QtCore/QVariant>
#include <QtCore/QVector>

using namespace Vidtips;

namespace {

constexpr int maximumElements = 200;

/** What is known of one element. */
struct Model
{
    VTXmlElement *element;
    QMap<QString, QString> attributes;
    QString content;
};

/** Calls @p method, whose result has the type named @p type. */
template <typename Result, typename... Arguments>
Result call(QObject *object, const char *type, const char *method, Arguments... arguments)
{
    Result result{};
    FUZZ_CHECK(QMetaObject::invokeMethod(object, method, Qt::DirectConnection,
                                         QGenericReturnArgument(type, &result), arguments...));
    return result;
}

class Operations
{
public:
    explicit Operations(const QByteArray &input)
        : m_input(input)
    {
        m_models.append({&m_root, {}, {}});
    }

    void run()
    {
        while (!m_input.isEmpty())
            (this->*operations[m_input.takeByte() % (sizeof operations / sizeof *operations)])();
    }

private:
    using Operation = void (Operations::*)();
    static const Operation operations[8];

    Model &chosen() { return m_models[m_input.takeByte() % m_models.size()]; }

    void addChild()
    {
        if (m_models.size() == maximumElements)
            return;
        auto *child = static_cast<VTXmlElement *>(
            VTXmlElement::staticMetaObject.newInstance(Q_ARG(QObject *, chosen().element)));
        FUZZ_CHECK(child);
        m_models.append({child, {}, {}});
    }

    void writeTagName()
    {
        const Model &model = chosen();
        const QString name = m_input.takeText();
        model.element->setProperty("tagName", name);
        FUZZ_CHECK(model.element->property("tagName").toString() == name);
    }

    void writeNameSpace()
    {
        const Model &model = chosen();
        const QString name = m_input.takeText();
        model.element->setProperty("tagNameSpace", name);
        FUZZ_CHECK(model.element->property("tagNameSpace").toString() == name);
    }

    void setAttribute()
    {
        Model &model = chosen();
        const QString name = m_input.takeText();
        const QString value = m_input.takeText();
        model.element->setAttribute(name, value);
        model.attributes.insert(name, value);
    }

    void readAttribute()
    {
        const Model &model = chosen();
        const QString name = m_input.takeText();
        FUZZ_CHECK(call<QString>(model.element, "QString", "attribute", Q_ARG(QString, name))
                   == model.attributes.value(name));
        FUZZ_CHECK(call<bool>(model.element, "bool", "hasAttribute", Q_ARG(QString, name))
                   == model.attributes.contains(name));
        FUZZ_CHECK(model.element->attributeNames() == model.attributes.keys());
    }

    void appendContent()
    {
        Model &model = chosen();
        const QString text = m_input.takeText();
        QMetaObject::invokeMethod(model.element, "appendContent", Q_ARG(QString, text));
        model.content += text;
        FUZZ_CHECK(model.element->property("content").toString() == model.content);
        FUZZ_CHECK(!model.element->setProperty("content", "refused"));
    }

    void findChildren()
    {
        const Model &model = chosen();
        const QString name = m_input.takeText();
        const auto all = call<QList<QObject *>>(model.element, "QList<QObject*>", "childElementList",
                                                Q_ARG(QString, name));
        for (const QObject *child : all)
            FUZZ_CHECK(name.isEmpty() || child->objectName() == name);
        const auto *child =
            call<VTXmlElement *>(model.element, "VTXmlElement*", "childElement", Q_ARG(QString, name));
        FUZZ_CHECK(!child || name.isEmpty() || child->getTagName() == name);
        // An empty name stands for any name in the list only.
        FUZZ_CHECK(name.isEmpty() ? !child || !all.isEmpty() : bool(child) == !all.isEmpty());
    }

    void write()
    {
        const Model &model = chosen();
        call<QString>(model.element, "QString", "toXml");
        call<QString>(model.element, "QString", "toXml", Q_ARG(int, m_input.takeInteger()));
    }

    FuzzInput m_input;
    VTXmlElement m_root;
    QVector<Model> m_models;
};

const Operations::Operation Operations::operations[] = {
    &Operations::addChild,     &Operations::writeTagName,  &Operations::writeNameSpace,
    &Operations::setAttribute, &Operations::readAttribute, &Operations::appendContent,
    &Operations::findChildren, &Operations::write,
};

} // namespace

void fuzz(const QByteArray &input)
{
    Operations(input).run();
}
