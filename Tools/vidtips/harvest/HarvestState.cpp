#include "HarvestState.h"

#include "shared/SavedFile.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>

HarvestState::HarvestState(const QString &package, const QString &locale)
    : m_path(package + "/harvest.json")
    , m_locale(locale)
{
}

QString HarvestState::read()
{
    QFile file(m_path);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly))
        return QString("cannot read %1: %2").arg(m_path, file.errorString());
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject()) {
        const bool isJson = error.error == QJsonParseError::NoError;
        return QString("cannot read %1: %2").arg(m_path, isJson ? "it holds no object" : error.errorString());
    }
    m_locales = document.object();
    m_commands = m_locales.value(m_locale).toObject();
    return {};
}

HarvestedCommand HarvestState::command(const QString &key, bool *isKnown) const
{
    *isKnown = m_commands.contains(key);
    const QJsonObject object = m_commands.value(key).toObject();
    HarvestedCommand command;
    command.key = key;
    command.title = object.value("title").toString();
    command.summary = object.value("summary").toString();
    command.shortcut = object.value("shortcut").toString();
    return command;
}

QStringList HarvestState::keys() const
{
    return m_commands.keys();
}

void HarvestState::set(const HarvestedCommand &command)
{
    m_commands.insert(
        command.key,
        QJsonObject{{"title", command.title}, {"summary", command.summary}, {"shortcut", command.shortcut}});
}

QString HarvestState::write() const
{
    QJsonObject locales = m_locales;
    locales.insert(m_locale, m_commands);
    return SavedFile::write(m_path, QJsonDocument(locales).toJson());
}
