#include "SchemaCheck.h"

#include "findings/Finding.h"

#include <QtCore/QFile>
#include <QtCore/QUrl>
#include <QtCore/QXmlStreamReader>
#include <QtXmlPatterns/QAbstractMessageHandler>
#include <QtXmlPatterns/QSourceLocation>
#include <QtXmlPatterns/QXmlSchema>
#include <QtXmlPatterns/QXmlSchemaValidator>

namespace {

// Messages come as a page of XHTML.
QString plainText(const QString &page)
{
    QXmlStreamReader reader(page);
    QString text;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::Characters)
            text += reader.text();
    }
    text = text.simplified();
    return text.endsWith('.') ? text.chopped(1) : text;
}

class FirstMessage : public QAbstractMessageHandler
{
public:
    QString text;
    Position position;

protected:
    void handleMessage(QtMsgType type, const QString &description, const QUrl &,
                       const QSourceLocation &location) override
    {
        if (type != QtFatalMsg || !text.isEmpty())
            return;
        text = plainText(description);
        position = {int(qMax<qint64>(0, location.line())), int(qMax<qint64>(0, location.column()))};
    }
};

} // namespace

struct SchemaCheck::Private
{
    QXmlSchema schema;
};

SchemaCheck::SchemaCheck(const QString &path)
    : d(new Private)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !d->schema.load(&file, QUrl("qrc" + path)) || !d->schema.isValid())
        qFatal("the schema %s cannot be loaded", qPrintable(path));
}

SchemaCheck::~SchemaCheck() = default;

void SchemaCheck::check(const QString &path, Findings &findings)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    FirstMessage message;
    QXmlSchemaValidator validator(d->schema);
    validator.setMessageHandler(&message);
    if (!validator.validate(&file, QUrl::fromLocalFile(path)))
        findings.add("VT102", path, message.position, message.text);
}
