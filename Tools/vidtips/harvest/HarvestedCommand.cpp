#include "HarvestedCommand.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QSet>

namespace {

HarvestedCommand commandOf(const QJsonObject &object, const QString &folder)
{
    HarvestedCommand command;
    command.key = object.value("key").toString();
    command.source = object.value("source").toString();
    command.className = object.value("class").toString();
    command.title = object.value("title").toString();
    command.summary = object.value("summary").toString();
    command.shortcut = object.value("shortcut").toString();
    command.group = object.value("group").toString();
    const QString icon = object.value("icon").toString();
    command.icon = icon.isEmpty() ? QString() : folder + '/' + icon;
    return command;
}

QString camelCase(const QString &text)
{
    QString name;
    bool isStart = false;
    for (const QChar character : text) {
        if (character.isLetterOrNumber() && character.unicode() < 128)
            name += isStart && !name.isEmpty() ? character.toUpper() : character;
        isStart = !character.isLetterOrNumber();
    }
    return name;
}

// An icon's name tells a command apart only where no other command shows the icon.
void judgeKeys(QVector<HarvestedCommand> &commands, bool takesTexts)
{
    QMap<QString, int> uses;
    for (const HarvestedCommand &command : qAsConst(commands))
        ++uses[command.key];
    for (HarvestedCommand &command : commands) {
        const bool isOwnIcon = command.source == "icon" && uses.value(command.key) == 1;
        command.hasUsableKey = command.source == "name" || command.source == "button" || isOwnIcon
            || (command.source == "text" && takesTexts);
    }
}

// A window that is open twice has its commands twice.
void dropRepetitions(QVector<HarvestedCommand> &commands)
{
    QSet<QString> keys;
    QVector<HarvestedCommand> kept;
    for (const HarvestedCommand &command : qAsConst(commands)) {
        if (command.hasUsableKey && keys.contains(command.key))
            continue;
        if (command.hasUsableKey)
            keys.insert(command.key);
        kept << command;
    }
    commands = kept;
}

} // namespace

QString HarvestedCommand::suggestedName() const
{
    QString name = camelCase(group.toLower() + ' ' + title);
    if (!name.isEmpty())
        name[0] = name[0].toLower();
    return name;
}

QString HarvestedCommand::read(const QString &folder, bool takesTexts, QVector<HarvestedCommand> &commands)
{
    QFile file(folder + "/commands.json");
    if (!file.open(QIODevice::ReadOnly))
        return QString("cannot read what the program has: %1").arg(file.errorString());
    for (const QJsonValue value : QJsonDocument::fromJson(file.readAll()).array())
        commands << commandOf(value.toObject(), folder);
    judgeKeys(commands, takesTexts);
    dropRepetitions(commands);
    return {};
}
