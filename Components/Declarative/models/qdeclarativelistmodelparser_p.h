#pragma once

#include <QtCore/QVariant>

#include <private/qqmlcustomparser_p.h>

/**
 * Reads the ListElement declarations inside a ListModel.
 *
 * Values are literals, enumeration values, texts to translate and lists of further ListElements; anything
 * else keeps the document from loading, with a message.
 */
class QDeclarativeListModelParser : public QQmlCustomParser
{
public:
    QDeclarativeListModelParser();

    using Unit = QQmlRefPointer<QV4::ExecutableCompilationUnit>;
    using Binding = QV4::CompiledData::Binding;

    void verifyBindings(const Unit &, const QList<const Binding *> &) override;
    void applyBindings(QObject *, const Unit &, const QList<const Binding *> &) override;

private:
    bool verifyElement(const Unit &, const Binding *);
    bool verifyValue(const Unit &, const Binding *);
    QVariantMap elementValues(const Unit &, const Binding *) const;
    QVariant value(const Unit &, const Binding *) const;
};
