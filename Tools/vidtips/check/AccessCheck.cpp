#include "AccessCheck.h"

#include "findings/Finding.h"

#include <QtCore/QFile>
#include <QtCore/QSet>
#include <QtCore/QVector>
#include <QtQml/private/qqmljsast_p.h>
#include <QtQml/private/qqmljsastvisitor_p.h>
#include <QtQml/private/qqmljsengine_p.h>
#include <QtQml/private/qqmljslexer_p.h>
#include <QtQml/private/qqmljsparser_p.h>

using namespace QQmlJS;

namespace {

// What surely writes nothing.
bool isWordless(const QString &type)
{
    static const QSet<QString> types{"AnimatedImage",
                                     "Behavior",
                                     "BorderImage",
                                     "Column",
                                     "Connections",
                                     "Flickable",
                                     "Flipable",
                                     "Flow",
                                     "FocusScope",
                                     "Gradient",
                                     "GradientStop",
                                     "Grid",
                                     "Image",
                                     "Item",
                                     "MouseArea",
                                     "NumberAnimation",
                                     "PropertyAnimation",
                                     "PropertyChanges",
                                     "Rectangle",
                                     "Rotation",
                                     "Row",
                                     "Scale",
                                     "State",
                                     "SystemPalette",
                                     "Timer",
                                     "Transition",
                                     "Translate",
                                     "VTStyledRectangle",
                                     "VTVideoComponent"};
    return types.contains(type);
}

bool isClickHandler(const QString &name)
{
    static const QSet<QString> names{"onClicked", "onPressed", "onReleased", "onDoubleClicked",
                                     "onPressAndHold"};
    return names.contains(name);
}

struct Object
{
    QString type;
    Position place;
    QString role; ///< as written, for example "VTAccessible.Button"
    bool isNamed = false;
    bool isIgnored = false;
    bool isClickable = false;
    bool hasWords = false; ///< on it, that is in it
    QVector<Position> areas; ///< directly inside, which may have a name from here
    QVector<Position> nameless; ///< somewhere inside, which have none

    bool isButton() const { return role.endsWith(".Button") || role.endsWith(".Link"); }
    bool isWhole() const { return !role.isEmpty() && !role.endsWith(".List") && !role.endsWith(".Grouping"); }
};

class NameSearch : public AST::Visitor
{
public:
    explicit NameSearch(const QString &source)
        : m_source(source)
    {
    }

    QVector<Position> nameless() const { return m_nameless; }

protected:
    bool visit(AST::UiObjectDefinition *node) override { return begin(node->qualifiedTypeNameId); }
    bool visit(AST::UiObjectBinding *node) override { return begin(node->qualifiedTypeNameId); }
    void endVisit(AST::UiObjectDefinition *) override { end(); }
    void endVisit(AST::UiObjectBinding *) override { end(); }
    bool visit(AST::UiScriptBinding *node) override;
    void throwRecursionDepthError() override { }

private:
    bool begin(const AST::UiQualifiedId *type);
    void end();
    QString written(const AST::Node *node) const;

    const QString m_source;
    QVector<Object> m_open;
    QVector<Position> m_nameless;
};

const AST::UiQualifiedId *last(const AST::UiQualifiedId *id)
{
    while (id->next)
        id = id->next;
    return id;
}

bool isOf(const AST::UiQualifiedId *id, const char *type)
{
    for (; id && id->next; id = id->next) {
        if (id->name == QLatin1String(type) && !id->next->next)
            return true;
    }
    return false;
}

QString NameSearch::written(const AST::Node *node) const
{
    const int begin = int(node->firstSourceLocation().begin());
    return m_source.mid(begin, int(node->lastSourceLocation().end()) - begin);
}

bool NameSearch::begin(const AST::UiQualifiedId *type)
{
    const auto place = type->identifierToken;
    Object object;
    object.type = last(type)->name.toString();
    object.place = {int(place.startLine), int(place.startColumn)};
    m_open << object;
    return true;
}

bool NameSearch::visit(AST::UiScriptBinding *node)
{
    if (m_open.isEmpty())
        return true;
    Object &object = m_open.last();
    const QString name = last(node->qualifiedId)->name.toString();
    if (!isOf(node->qualifiedId, "VTAccessible")) {
        object.isClickable = object.isClickable || (object.type == "MouseArea" && isClickHandler(name));
    } else if (name == "name") {
        object.isNamed = true;
    } else if (name == "ignored") {
        object.isIgnored = true;
    } else if (name == "role") {
        object.role = written(node->statement).remove(';').trimmed();
    }
    return true;
}

void NameSearch::end()
{
    Object object = m_open.takeLast();
    const bool givesName = object.isNamed || object.hasWords || !isWordless(object.type);
    const bool needsNone = givesName || object.isIgnored;
    if (!givesName)
        object.nameless += object.areas;
    if (object.isWhole())
        object.nameless.clear();
    if (object.isButton() && !needsNone)
        object.nameless << object.place;
    const bool isBareArea = object.isClickable && object.role.isEmpty() && !needsNone;
    if (m_open.isEmpty()) {
        m_nameless += object.nameless;
        if (isBareArea)
            m_nameless << object.place;
        return;
    }
    Object &holder = m_open.last();
    holder.nameless += object.nameless;
    holder.hasWords = holder.hasWords || object.hasWords || !isWordless(object.type);
    if (isBareArea)
        holder.areas << object.place;
}

QVector<Position> namelessIn(const QString &source)
{
    Engine engine;
    Lexer lexer(&engine);
    lexer.setCode(source, 1, true);
    Parser parser(&engine);
    if (!parser.parse())
        return {};
    NameSearch search(source);
    AST::Node::accept(parser.ast(), &search);
    return search.nameless();
}

} // namespace

void AccessCheck::run(const QStringList &files, Findings &findings) const
{
    for (const QString &path : files) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QVector<Position> places = namelessIn(QString::fromUtf8(file.readAll()));
        for (const Position &place : places)
            findings.add("VT604", path, place, "what can be pressed here has no name");
    }
}
