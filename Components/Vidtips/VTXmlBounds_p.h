#pragma once

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtXml/QXmlDeclHandler>
#include <QtXml/QXmlInputSource>

namespace Vidtips {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

/**
 * Passes a document on to a reader of XML, and ends it where reading it would take far more than its size.
 *
 * The reader recurses into the parentheses of a document type declaration, compares each entity and each
 * namespace with all others, and bounds neither how often an entity is used nor what one expands to that
 * refers to a later one.
 * It is the reader's source and hears of its declarations; of namespaces it has to be told.
 */
class VTXmlBounds : public QXmlInputSource, public QXmlDeclHandler
{
public:
    static constexpr int mostParentheses = 2000; ///< open ones
    static constexpr int mostEntities = 1000; ///< declared ones
    static constexpr int mostInnerReferences = 10000; ///< in what entities stand for
    static constexpr int mostExpansion = 1000000; ///< characters that all references together expand to
    static constexpr int mostNamespaces = 30; ///< in scope: at each end of an element all are compared

    /** Makes one of @p source, which stays the caller's. */
    explicit VTXmlBounds(const QXmlInputSource *source);

    /** Notes that the first element has begun, after which there are no declarations. */
    void leaveProlog() { m_isProlog = false; }

    /** Notes that @p prefix stands for a namespace from here on; returns false where the bound is passed. */
    bool enterNamespace(const QString &prefix);

    /** Notes that @p prefix stands for none from here on. */
    void leaveNamespace(const QString &prefix) { m_prefixes.remove(prefix); }

    /** Returns what was too much, or nothing; of parentheses the reader itself says that they have no end. */
    QString errorString() const override { return m_problem; }

    QChar next() override;
    void fetchData() override { m_source->fetchData(); }
    QString data() const override { return m_source->data(); }
    void reset() override { m_source->reset(); }

    bool attributeDecl(const QString &, const QString &, const QString &, const QString &,
                       const QString &) override
    {
        return true;
    }
    bool internalEntityDecl(const QString &name, const QString &value) override;
    bool externalEntityDecl(const QString &name, const QString &publicId, const QString &systemId) override;

private:
    static constexpr int unknown = -1;

    struct Entity
    {
        int size; ///< characters, with its references as they stand there
        QStringList references;
        int expansion; ///< characters
    };

    bool isWithinBounds(QChar character);
    bool countsParentheses(QChar character);
    bool followsReference(QChar character);
    int expansionOf(const QString &reference);
    bool declareEntity(const QString &reference, const Entity &entity);
    bool refuse(const QString &problem);

    QXmlInputSource *m_source;
    QHash<QString, Entity> m_entities; ///< by how a reference begins, as in "&name"
    QSet<QString> m_prefixes;
    QString m_reference; ///< as far as it was read, as in "&na"
    QString m_problem;
    int m_longestReference = 0;
    int m_innerReferences = 0;
    int m_expansion = 0;
    int m_parentheses = 0;
    bool m_isProlog = true;
};

QT_WARNING_POP

} // namespace Vidtips
