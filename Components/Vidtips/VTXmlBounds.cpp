#include "VTXmlBounds_p.h"

QT_WARNING_DISABLE_DEPRECATED

namespace Vidtips {

namespace {

const QLatin1Char general('&');
const QLatin1Char parameter('%');
const QLatin1Char end(';');

bool beginsReference(QChar character)
{
    return character == general || character == parameter;
}

/** Returns how each reference in @p text begins, as in "&name". */
QStringList referencesIn(const QString &text)
{
    QStringList references;
    int begin = -1;
    for (int i = 0; i < text.size(); ++i) {
        if (beginsReference(text.at(i))) {
            begin = i;
        } else if (begin >= 0 && text.at(i) == end) {
            references.append(text.mid(begin, i - begin));
            begin = -1;
        }
    }
    return references;
}

} // namespace

VTXmlBounds::VTXmlBounds(const QXmlInputSource *source)
    : m_source(const_cast<QXmlInputSource *>(source)) // as the reader itself does
{
}

bool VTXmlBounds::enterNamespace(const QString &prefix)
{
    m_prefixes.insert(prefix);
    return m_prefixes.size() <= mostNamespaces
        || refuse(QStringLiteral("more than %1 namespaces").arg(mostNamespaces));
}

QChar VTXmlBounds::next()
{
    const QChar character = m_source->next();
    return isWithinBounds(character) ? character : QChar(EndOfDocument);
}

bool VTXmlBounds::isWithinBounds(QChar character)
{
    if (m_isProlog && !countsParentheses(character))
        return false;
    return m_entities.isEmpty() || followsReference(character);
}

bool VTXmlBounds::countsParentheses(QChar character)
{
    if (character == QLatin1Char('('))
        ++m_parentheses;
    else if (character == QLatin1Char(')') && m_parentheses > 0)
        --m_parentheses;
    return m_parentheses <= mostParentheses;
}

// What looks like a reference in a comment counts as well: nobody has that many there.
bool VTXmlBounds::followsReference(QChar character)
{
    if (beginsReference(character)) {
        m_reference = character;
    } else if (m_reference.size() > m_longestReference) {
        m_reference.clear();
    } else if (!m_reference.isEmpty() && character != end) {
        m_reference += character;
    } else if (!m_reference.isEmpty()) {
        m_expansion += expansionOf(m_reference);
        m_reference.clear();
    }
    return m_expansion <= mostExpansion
        || refuse(QStringLiteral("entities expand to more than %1 characters").arg(mostExpansion));
}

// An entity may refer to one that is declared after it.
int VTXmlBounds::expansionOf(const QString &reference)
{
    const auto entity = m_entities.find(reference);
    if (entity == m_entities.end())
        return 0;
    if (entity->expansion == unknown) {
        entity->expansion = 0; // within itself, which the reader refuses
        int expansion = entity->size;
        for (const QString &inner : qAsConst(entity->references))
            expansion = qMin(expansion + expansionOf(inner), mostExpansion + 1);
        entity->expansion = expansion;
    }
    return entity->expansion;
}

bool VTXmlBounds::internalEntityDecl(const QString &name, const QString &value)
{
    const QString reference = name.startsWith(parameter) ? name : general + name;
    return declareEntity(reference, {value.size(), referencesIn(value), unknown});
}

bool VTXmlBounds::externalEntityDecl(const QString &name, const QString &, const QString &)
{
    return declareEntity(general + name, {0, {}, unknown});
}

bool VTXmlBounds::declareEntity(const QString &reference, const Entity &entity)
{
    for (Entity &other : m_entities)
        other.expansion = unknown;
    m_entities.insert(reference, entity);
    m_longestReference = qMax(m_longestReference, reference.size());
    m_innerReferences += entity.references.size();
    if (m_innerReferences > mostInnerReferences)
        return refuse(QStringLiteral("more than %1 references in entities").arg(mostInnerReferences));
    return m_entities.size() <= mostEntities
        || refuse(QStringLiteral("more than %1 entities").arg(mostEntities));
}

bool VTXmlBounds::refuse(const QString &problem)
{
    m_problem = problem;
    return false;
}

} // namespace Vidtips
