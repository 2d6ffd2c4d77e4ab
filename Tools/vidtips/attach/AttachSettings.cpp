#include "AttachSettings.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcessEnvironment>

namespace {

constexpr char settingsVariable[] = "VIDTIPS_ATTACH";
constexpr char pathVariable[] = "QT_PLUGIN_PATH";
constexpr char pluginsVariable[] = "QT_QPA_GENERIC_PLUGINS";
constexpr char moduleKey[] = "vidtipsattach"; // as in the module's attach.json
constexpr char listSeparator[] = ",";

QString with(const QString &list, const QString &entry, const QString &separator)
{
    return list.isEmpty() ? entry : entry + separator + list;
}

// A wrapper may have added to the variable on the way.
void removeFromVariable(const char *variable, const QString &entry, const QString &separator)
{
    QStringList list = QFile::decodeName(qgetenv(variable)).split(separator);
    list.removeAll(entry);
    const QString rest = list.join(separator);
    if (rest.isEmpty())
        qunsetenv(variable);
    else
        qputenv(variable, QFile::encodeName(rest));
}

} // namespace

void AttachSettings::writeTo(QProcessEnvironment &environment, const QString &plugins) const
{
    const QJsonObject settings{{"dataPaths", QJsonArray::fromStringList(dataPaths)},
                               {"locale", locale},
                               {"report", reportFile},
                               {"harvest", harvestFolder},
                               {"harvestWait", harvestWait},
                               {"trace", isTraced},
                               {"plugins", plugins}};
    environment.insert(settingsVariable,
                       QString::fromUtf8(QJsonDocument(settings).toJson(QJsonDocument::Compact)));
    environment.insert(pathVariable, with(environment.value(pathVariable), plugins, QDir::listSeparator()));
    environment.insert(pluginsVariable, with(environment.value(pluginsVariable), moduleKey, listSeparator));
}

AttachSettings AttachSettings::takeFromEnvironment()
{
    const QJsonObject object = QJsonDocument::fromJson(qgetenv(settingsVariable)).object();
    qunsetenv(settingsVariable);
    removeFromVariable(pathVariable, object.value("plugins").toString(), QDir::listSeparator());
    removeFromVariable(pluginsVariable, moduleKey, listSeparator);
    AttachSettings settings;
    for (const QJsonValue path : object.value("dataPaths").toArray())
        settings.dataPaths << path.toString();
    settings.locale = object.value("locale").toString();
    settings.reportFile = object.value("report").toString();
    settings.harvestFolder = object.value("harvest").toString();
    settings.harvestWait = object.value("harvestWait").toInt();
    settings.isTraced = object.value("trace").toBool();
    return settings;
}
