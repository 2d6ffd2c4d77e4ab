#include "TsFile.h"

#include "PseudoText.h"
#include "TextSource.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QXmlStreamReader>

namespace {

constexpr int mostPluralForms = 6;
const QString unfinished = QStringLiteral("unfinished");
const QString vanished = QStringLiteral("vanished");
const QString obsolete = QStringLiteral("obsolete"); // the same, as older tools wrote it

QString escaped(const QString &text)
{
    return text.toHtmlEscaped().replace('\'', "&apos;");
}

QString element(const QString &name, const QString &text, int indent, const QString &attributes = {})
{
    return QString("%1<%2%3>%4</%2>\n").arg(QString(indent, ' '), name, attributes, escaped(text));
}

QString optional(const QString &name, const QString &text)
{
    return text.isEmpty() ? QString() : element(name, text, 8);
}

QString translation(const TsMessage &message)
{
    const QString type = message.state.isEmpty() ? QString() : QString(" type=\"%1\"").arg(message.state);
    if (!message.isPlural)
        return element("translation", message.translations.value(0), 8, type);
    QString forms;
    for (const QString &form : message.translations)
        forms += element("numerusform", form, 12);
    return QString("        <translation%1>\n%2        </translation>\n").arg(type, forms);
}

// Laid out as Qt's own tools do, so that a translator's tool changes nothing but translations.
QString asXml(const TsMessage &message)
{
    QString xml = QString("    <message%1>\n").arg(message.isPlural ? " numerus=\"yes\"" : "");
    for (const auto &location : message.locations)
        xml += QString("        <location filename=\"%1\" line=\"%2\"/>\n")
                   .arg(escaped(location.first))
                   .arg(location.second);
    return xml + element("source", message.source, 8) + optional("comment", message.comment)
        + optional("extracomment", message.extraComment)
        + optional("translatorcomment", message.translatorComment) + translation(message)
        + "    </message>\n";
}

void readTranslation(QXmlStreamReader &reader, TsMessage &message)
{
    message.state = reader.attributes().value("type").toString();
    if (!message.isPlural) {
        message.translations = QStringList{reader.readElementText(QXmlStreamReader::IncludeChildElements)};
        return;
    }
    while (reader.readNextStartElement())
        message.translations << reader.readElementText(QXmlStreamReader::IncludeChildElements);
}

} // namespace

bool TsMessage::isTranslated() const
{
    return translations.join(QString()).size() > 0;
}

bool TsMessage::isGone() const
{
    return state == vanished || state == obsolete;
}

TsFile::TsFile(const QString &locale, const QString &sourceLocale)
    : m_locale(locale)
    , m_sourceLocale(sourceLocale)
{
}

QString TsFile::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString("the translations cannot be read: %1").arg(path);
    QXmlStreamReader reader(&file);
    if (reader.readNextStartElement() && reader.name() != "TS")
        return QString("the file holds no translations: %1").arg(path);
    while (reader.readNextStartElement()) {
        if (reader.name() != "context") {
            reader.skipCurrentElement();
            continue;
        }
        QString context;
        while (reader.readNextStartElement()) {
            if (reader.name() == "name")
                context = reader.readElementText();
            else if (reader.name() == "message")
                readMessage(reader, context);
            else
                reader.skipCurrentElement();
        }
    }
    if (reader.hasError())
        return QString("%1:%2:%3: %4")
            .arg(path)
            .arg(reader.lineNumber())
            .arg(reader.columnNumber())
            .arg(reader.errorString());
    return {};
}

void TsFile::readMessage(QXmlStreamReader &reader, const QString &context)
{
    TsMessage message;
    message.context = context;
    message.isPlural = reader.attributes().value("numerus") == "yes";
    while (reader.readNextStartElement()) {
        const QString name = reader.name().toString();
        if (name == "translation") {
            message.line = int(reader.lineNumber());
            readTranslation(reader, message);
        } else if (name == "location") {
            message.locations.append({reader.attributes().value("filename").toString(),
                                      reader.attributes().value("line").toInt()});
            reader.skipCurrentElement();
        } else {
            const QString text = reader.readElementText(QXmlStreamReader::IncludeChildElements);
            if (name == "source")
                message.source = text;
            else if (name == "comment")
                message.comment = text;
            else if (name == "extracomment")
                message.extraComment = text;
            else if (name == "translatorcomment")
                message.translatorComment = text;
        }
    }
    m_messages.append(message);
}

int TsFile::find(const TranslatableText &text) const
{
    for (int i = 0; i < m_messages.size(); ++i) {
        const TsMessage &message = m_messages.at(i);
        if (message.source == text.source && message.context == text.context
            && message.comment == text.comment)
            return i;
    }
    return -1;
}

TsFile::Changes TsFile::merge(const QVector<TranslatableText> &texts, const QString &folder)
{
    Changes changes;
    QVector<bool> isUsed(m_messages.size(), false);
    for (const TranslatableText &text : texts) {
        int index = find(text);
        if (index < 0) {
            index = m_messages.size();
            TsMessage message;
            message.context = text.context;
            message.source = text.source;
            message.comment = text.comment;
            message.state = unfinished;
            message.isPlural = text.isPlural;
            m_messages.append(message);
            isUsed.append(false);
            ++changes.added;
        }
        TsMessage &message = m_messages[index];
        if (!isUsed.at(index)) {
            ++changes.texts;
            message.locations.clear();
            if (message.isGone())
                message.state = message.isTranslated() ? QString() : unfinished;
            changes.untranslated += !message.isTranslated();
        }
        isUsed[index] = true;
        message.locations.append({QDir(folder).relativeFilePath(text.file), text.position.line});
    }
    changes.vanished = markVanished(isUsed);
    return changes;
}

// What nobody translated is not worth keeping.
int TsFile::markVanished(const QVector<bool> &isUsed)
{
    int marked = 0;
    for (int i = m_messages.size() - 1; i >= 0; --i) {
        TsMessage &message = m_messages[i];
        if (isUsed.at(i))
            continue;
        if (!message.isTranslated()) {
            m_messages.removeAt(i);
            continue;
        }
        marked += message.state != vanished;
        message.state = vanished;
        message.locations.clear();
    }
    return marked;
}

bool TsFile::pseudotranslate()
{
    for (const TsMessage &message : qAsConst(m_messages)) {
        const QString pseudo = PseudoText::of(message.source);
        if (message.isTranslated() && message.state != vanished
            && message.translations.constFirst() != pseudo)
            return false;
    }
    for (TsMessage &message : m_messages) {
        const QString pseudo = PseudoText::of(message.source);
        message.translations = QStringList{pseudo};
        // Languages have up to six forms, and a reader takes those that it needs.
        for (int form = 1; message.isPlural && form < mostPluralForms; ++form)
            message.translations << pseudo;
        if (message.state == unfinished)
            message.state.clear();
    }
    return true;
}

QByteArray TsFile::toXml() const
{
    QString xml = QString("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n"
                          "<TS version=\"2.1\" language=\"%1\" sourcelanguage=\"%2\">\n")
                      .arg(escaped(m_locale), escaped(m_sourceLocale));
    QStringList contexts;
    for (const TsMessage &message : m_messages)
        contexts << message.context;
    contexts.removeDuplicates();
    for (const QString &context : qAsConst(contexts)) {
        xml += "<context>\n" + element("name", context, 4);
        for (const TsMessage &message : m_messages) {
            if (message.context == context)
                xml += asXml(message);
        }
        xml += "</context>\n";
    }
    return (xml + "</TS>\n").toUtf8();
}
