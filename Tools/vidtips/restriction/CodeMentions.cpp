#include "CodeMentions.h"

#include "TextMentions.h"

#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtQml/private/qqmljsast_p.h>
#include <QtQml/private/qqmljsastvisitor_p.h>
#include <QtQml/private/qqmljsengine_p.h>
#include <QtQml/private/qqmljslexer_p.h>
#include <QtQml/private/qqmljsparser_p.h>

#include <functional>

using namespace QQmlJS;

namespace {

QString lastOf(const AST::UiQualifiedId *id)
{
    while (id && id->next)
        id = id->next;
    return id ? id->name.toString() : QString();
}

QString wholeOf(const AST::UiQualifiedId *id)
{
    QStringList names;
    for (; id; id = id->next)
        names << id->name.toString();
    return names.join('.');
}

// Its namespace is not the same in all releases of Qt.
Position placeOf(const decltype(AST::UiImport::importToken) &location)
{
    return {int(location.startLine), int(location.startColumn)};
}

Position placeOf(const AST::Node *node)
{
    return placeOf(node->firstSourceLocation());
}

AST::ExpressionNode *argument(const AST::CallExpression *call, int index)
{
    const AST::ArgumentList *list = call->arguments;
    while (list && index-- > 0)
        list = list->next;
    return list ? list->expression : nullptr;
}

// "Qt.quit" for that member, and for others their own name alone.
QString nameOf(AST::ExpressionNode *expression)
{
    if (const auto *const identifier = AST::cast<AST::IdentifierExpression *>(expression))
        return identifier->name.toString();
    const auto *const member = AST::cast<AST::FieldMemberExpression *>(expression);
    if (!member)
        return {};
    const auto *const holder = AST::cast<AST::IdentifierExpression *>(member->base);
    const bool isOfQt = holder && holder->name == QLatin1String("Qt");
    return (isOfQt ? "Qt." : "") + member->name.toString();
}

AST::ExpressionNode *expressionOf(AST::Statement *statement)
{
    auto *const expression = AST::cast<AST::ExpressionStatement *>(statement);
    return expression ? expression->expression : nullptr;
}

/** The texts that variables and properties of a file begin with. */
class Texts : public AST::Visitor
{
public:
    /** Returns the text that @p expression is in any case; a null one where that is not known. */
    QString of(AST::ExpressionNode *expression) const
    {
        if (const auto *const literal = AST::cast<AST::StringLiteral *>(expression))
            return literal->value.toString();
        if (const auto *const nested = AST::cast<AST::NestedExpression *>(expression))
            return of(nested->expression);
        if (const auto *const identifier = AST::cast<AST::IdentifierExpression *>(expression))
            return m_named.value(identifier->name.toString());
        const auto *const sum = AST::cast<AST::BinaryExpression *>(expression);
        const QString left = sum && sum->op == QSOperator::Add ? of(sum->left) : QString();
        const QString right = left.isNull() ? QString() : of(sum->right);
        return right.isNull() ? QString() : left + right;
    }

    /** Returns what @p expression begins with in any case; empty where that is not known. */
    QString beginningOf(AST::ExpressionNode *expression) const
    {
        const QString whole = of(expression);
        const auto *const sum = AST::cast<AST::BinaryExpression *>(expression);
        if (!whole.isNull() || !sum || sum->op != QSOperator::Add)
            return whole;
        const QString left = of(sum->left);
        return left.isNull() ? beginningOf(sum->left) : left + beginningOf(sum->right);
    }

protected:
    bool visit(AST::PatternElement *node) override
    {
        name(node->bindingIdentifier.toString(), node->initializer);
        return true;
    }

    bool visit(AST::UiPublicMember *node) override
    {
        name(node->name.toString(), expressionOf(node->statement));
        return true;
    }

    void throwRecursionDepthError() override { }

private:
    void name(const QString &variable, AST::ExpressionNode *value)
    {
        const auto *const literal = AST::cast<AST::StringLiteral *>(value);
        if (literal && !variable.isEmpty())
            m_named.insert(variable, literal->value.toString());
    }

    QMap<QString, QString> m_named;
};

/** The properties of a document that hold addresses. */
class AddressProperties : public AST::Visitor
{
public:
    QStringList names;

protected:
    bool visit(AST::UiPublicMember *node) override
    {
        const QString type = wholeOf(node->memberType);
        const QString aliased = type == "alias" ? nameOf(expressionOf(node->statement)) : QString();
        if (type == "url" || aliased == "source")
            names << node->name.toString();
        return true;
    }

    void throwRecursionDepthError() override { }
};

/** Searches a file for what it asks for. */
class Search : public AST::Visitor
{
public:
    Search(const Texts &texts, const QStringList &addressProperties)
        : m_texts(texts)
        , m_properties(addressProperties.cbegin(), addressProperties.cend())
    {
        m_properties.unite({"source", "folder", "baseUrl"});
    }

    Mentions mentions;

protected:
    bool visit(AST::UiImport *node) override;
    bool visit(AST::UiPublicMember *node) override;
    bool visit(AST::UiScriptBinding *node) override;
    void endVisit(AST::UiScriptBinding *) override { m_isAddress = false; }
    bool visit(AST::ReturnStatement *node) override;
    bool visit(AST::BinaryExpression *node) override;
    bool visit(AST::CallExpression *node) override;
    bool visit(AST::FieldMemberExpression *node) override;
    bool visit(AST::IdentifierExpression *node) override;
    bool visit(AST::StringLiteral *node) override;
    void throwRecursionDepthError() override { }

private:
    void add(Mention::Kind kind, const QString &text, Position position)
    {
        mentions.append({kind, text, position});
    }

    void addAddresses(AST::ExpressionNode *expression);
    void addRequest(AST::CallExpression *node);
    void addCreated(AST::CallExpression *node);

    const Texts &m_texts;
    QSet<QString> m_properties;
    bool m_isAddress = false; ///< What is returned here.
};

bool Search::visit(AST::UiImport *node)
{
    if (!node->importUri) {
        add(Mention::Address, node->fileName.toString(), placeOf(node->fileNameToken));
        return true;
    }
    const AST::UiVersionSpecifier *const version = node->version;
    mentions.append({Mention::Module, wholeOf(node->importUri), placeOf(node->importToken),
                     version ? version->majorVersion : -1, version ? version->minorVersion : -1});
    return true;
}

bool Search::visit(AST::UiPublicMember *node)
{
    if (m_properties.contains(node->name.toString()))
        addAddresses(expressionOf(node->statement));
    return true;
}

bool Search::visit(AST::UiScriptBinding *node)
{
    m_isAddress = m_properties.contains(lastOf(node->qualifiedId));
    if (m_isAddress)
        addAddresses(expressionOf(node->statement));
    return true;
}

bool Search::visit(AST::ReturnStatement *node)
{
    if (m_isAddress)
        addAddresses(node->expression);
    return true;
}

bool Search::visit(AST::BinaryExpression *node)
{
    if (node->op == QSOperator::Assign && m_properties.contains(nameOf(node->left)))
        addAddresses(node->right);
    return true;
}

bool Search::visit(AST::CallExpression *node)
{
    static const QMap<QString, std::function<void(Search *, AST::CallExpression *)>> calls{
        {"Qt.include",
         [](Search *self, AST::CallExpression *call) { self->addAddresses(argument(call, 0)); }},
        {"Qt.createComponent",
         [](Search *self, AST::CallExpression *call) { self->addAddresses(argument(call, 0)); }},
        {"Qt.createQmlObject", &Search::addCreated},
        {"open", &Search::addRequest},
        {"Qt.openUrlExternally", [](Search *self, AST::CallExpression *call) {
             self->add(Mention::Opening, self->m_texts.of(argument(call, 0)), placeOf(call));
         }}};
    const auto found = calls.find(nameOf(node->base));
    if (found != calls.end() && node->arguments)
        (*found)(this, node);
    return true;
}

// Whoever has such a function may call it under another name.
bool Search::visit(AST::FieldMemberExpression *node)
{
    static const QMap<QString, QString> doors{
        {"Qt.quit", "Qt.quit()"}, {"Qt.exit", "Qt.exit()"}, {"setStyleSheet", "setting a style sheet"}};
    const QString door = doors.value(nameOf(node));
    if (!door.isEmpty())
        add(Mention::Door, door, placeOf(node));
    return true;
}

bool Search::visit(AST::IdentifierExpression *node)
{
    if (node->name == QLatin1String("openDatabaseSync"))
        add(Mention::Door, "openDatabaseSync()", placeOf(node));
    return true;
}

bool Search::visit(AST::StringLiteral *node)
{
    for (const QString &address : TextMentions::addressesInMarkup(node->value.toString()))
        add(Mention::Address, address, placeOf(node));
    return true;
}

// Each thing that the expression may become.
void Search::addAddresses(AST::ExpressionNode *expression)
{
    const QString whole = m_texts.of(expression);
    const auto *const pair = AST::cast<AST::BinaryExpression *>(expression);
    if (!whole.isNull()) {
        add(Mention::Address, whole, placeOf(expression));
    } else if (const auto *const nested = AST::cast<AST::NestedExpression *>(expression)) {
        addAddresses(nested->expression);
    } else if (const auto *const choice = AST::cast<AST::ConditionalExpression *>(expression)) {
        addAddresses(choice->ok);
        addAddresses(choice->ko);
    } else if (pair && (pair->op == QSOperator::And || pair->op == QSOperator::Or)) {
        addAddresses(pair->left);
        addAddresses(pair->right);
    } else if (!m_texts.beginningOf(expression).isEmpty()) {
        add(Mention::Beginning, m_texts.beginningOf(expression), placeOf(expression));
    } else if (const auto *const call = AST::cast<AST::CallExpression *>(expression)) {
        if (nameOf(call->base) == "Qt.resolvedUrl")
            addAddresses(argument(call, 0));
    }
}

void Search::addRequest(AST::CallExpression *node)
{
    const QString method = m_texts.of(argument(node, 0)).toUpper();
    if (method == "GET" || method == "HEAD")
        addAddresses(argument(node, 1));
    else if (QStringList{"PUT", "POST", "DELETE", "OPTIONS", "PROPFIND", "PATCH"}.contains(method))
        add(Mention::Door, QString("XMLHttpRequest \"%1\"").arg(method), placeOf(node));
}

void Search::addCreated(AST::CallExpression *node)
{
    const Mentions created =
        CodeMentions::inDocument(m_texts.of(argument(node, 0)), {m_properties.cbegin(), m_properties.cend()});
    for (Mention mention : created) {
        mention.position = placeOf(node);
        mentions << mention;
    }
}

/** The directives at the beginning of a script. */
class ScriptImports : public Directives
{
public:
    void importFile(const QString &file, const QString &, int line, int column) override
    {
        mentions.append({Mention::Address, file, {line, column}});
    }

    void importModule(const QString &name, const QString &version, const QString &, int line,
                      int column) override
    {
        mentions.append({Mention::Module,
                         name,
                         {line, column},
                         version.section('.', 0, 0).toInt(),
                         version.section('.', 1, 1).toInt()});
    }

    Mentions mentions;
};

/** A file that is parsed; what does not parse is not run. */
class Code
{
public:
    explicit Code(const QString &source, bool isDocument)
        : m_lexer(&m_engine)
        , m_parser(&m_engine)
    {
        m_lexer.setCode(source, 1, isDocument);
        if (isDocument && m_parser.parse())
            m_root = m_parser.ast();
        else if (!isDocument && m_parser.parseProgram())
            m_root = m_parser.rootNode();
    }

    void accept(AST::Visitor *visitor) const { AST::Node::accept(m_root, visitor); }

    Mentions mentions(const QStringList &addressProperties) const
    {
        Texts texts;
        accept(&texts);
        Search search(texts, addressProperties);
        accept(&search);
        return search.mentions;
    }

private:
    Engine m_engine;
    Lexer m_lexer;
    Parser m_parser;
    AST::Node *m_root = nullptr;
};

// What the parser of scripts does not know. Places stay.
QString withoutDirectives(const QString &source)
{
    QStringList lines = source.split('\n');
    for (QString &line : lines) {
        if (line.trimmed().startsWith('.'))
            line.fill(' ');
    }
    return lines.join('\n');
}

} // namespace

QStringList CodeMentions::addressPropertiesIn(const QString &source)
{
    AddressProperties properties;
    Code(source, true).accept(&properties);
    return properties.names;
}

Mentions CodeMentions::inDocument(const QString &source, const QStringList &addressProperties)
{
    return Code(source, true).mentions(addressProperties);
}

Mentions CodeMentions::inScript(const QString &source, const QStringList &addressProperties)
{
    Engine engine;
    Lexer lexer(&engine);
    lexer.setCode(source, 1, false);
    ScriptImports imports;
    DiagnosticMessage error;
    lexer.scanDirectives(&imports, &error);
    return imports.mentions + Code(withoutDirectives(source), false).mentions(addressProperties);
}
