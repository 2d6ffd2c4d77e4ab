#include "HarvestedCommand.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

namespace {

// An icon is called after the key, with endings; names of files have at most 255 bytes.
constexpr int longestKey = 200;
constexpr int longestShownKey = 40;

// What no control file can hold, however it is written.
const QRegularExpression &forbidden()
{
    static const QRegularExpression characters("[\\x{0}-\\x{8}\\x{b}\\x{c}\\x{e}-\\x{1f}\\x{fffe}\\x{ffff}]");
    return characters;
}

const QRegularExpression &forbiddenInKeys()
{
    static const QRegularExpression characters("[\\x{0}-\\x{1f}\\x{fffe}\\x{ffff}]");
    return characters;
}

QString textIn(const QJsonObject &object, const char *name)
{
    return object.value(name).toString().remove(forbidden());
}

// Tabs and line ends become blanks where a key is read.
QString problemWith(const QString &key)
{
    if (key.contains(forbiddenInKeys()))
        return "holds a control character";
    return key.size() > longestKey ? QString("is longer than %1 characters").arg(longestKey) : QString();
}

HarvestedCommand commandOf(const QJsonObject &object, const QString &folder)
{
    HarvestedCommand command;
    command.key = object.value("key").toString();
    command.source = object.value("source").toString();
    command.className = textIn(object, "class");
    command.title = textIn(object, "title");
    command.summary = textIn(object, "summary");
    command.shortcut = textIn(object, "shortcut");
    command.group = textIn(object, "group");
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
        const bool isTold = command.source == "name" || command.source == "button" || isOwnIcon
            || (command.source == "text" && takesTexts);
        command.keyProblem = isTold ? problemWith(command.key) : QString();
        command.hasUsableKey = isTold && command.keyProblem.isEmpty();
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

QString HarvestedCommand::shownKey() const
{
    const QString shown =
        QString(key).replace(forbiddenInKeys(), QString(QChar(QChar::ReplacementCharacter)));
    return shown.size() > longestShownKey ? shown.left(longestShownKey) + "..." : shown;
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
