#include "KeysCommand.h"

#include "shared/Console.h"
#include "shared/Content.h"
#include "shared/Places.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <tuple>

namespace {

constexpr int columns = 5;
constexpr int widestTitle = 40;

struct Row
{
    QString key, locale, title, package, file;
    Position position;
};

QVector<Row> rowsOf(const Content &content)
{
    QVector<Row> rows;
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted)
            continue;
        const QString package = content.index().packageNameForLocation(file.path);
        for (const XmlNode *entry : file.entries())
            rows.append({entry->attribute("key"), file.locale(), entry->attribute("title").simplified(),
                         package, file.path, entry->position});
    }
    std::sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) {
        return std::tie(a.key, a.locale, a.file, a.position) < std::tie(b.key, b.locale, b.file, b.position);
    });
    return rows;
}

QStringList cellsOf(const Row &row, bool isForPeople)
{
    QString title = row.title;
    if (isForPeople && title.size() > widestTitle)
        title = title.left(widestTitle - 1) + QChar(0x2026);
    return {row.key, row.locale.isEmpty() ? "*" : row.locale, title, row.package,
            Places::shown(row.file, {row.position.line, 0})};
}

void writeTable(const QVector<Row> &rows, Console &console)
{
    QVector<QStringList> table{{"KEY", "LOCALE", "TITLE", "PACKAGE", "FILE"}};
    QVector<int> widths(columns);
    for (const Row &row : rows)
        table << cellsOf(row, true);
    for (const QStringList &cells : qAsConst(table)) {
        for (int i = 0; i < columns; ++i)
            widths[i] = std::max(widths[i], cells.at(i).size());
    }
    for (int line = 0; line < table.size(); ++line) {
        QString text;
        for (int i = 0; i < columns; ++i) {
            const QString cell =
                i + 1 < columns ? table[line][i].leftJustified(widths[i] + 2) : table[line][i];
            const Console::Colour body = i == 0 ? Console::Cyan
                : i == columns - 1              ? Console::Dim
                                                : Console::Plain;
            text += console.in(line == 0 ? Console::Bold : body, cell);
        }
        console.writeLine(text);
    }
}

void writeJson(const QVector<Row> &rows, Console &console)
{
    QJsonArray list;
    for (const Row &row : rows)
        list.append(QJsonObject{{"key", row.key},
                                {"locale", row.locale},
                                {"title", row.title},
                                {"package", row.package},
                                {"file", row.file},
                                {"line", row.position.line},
                                {"column", row.position.column}});
    console.write(QString::fromUtf8(QJsonDocument(list).toJson()));
}

} // namespace

QStringList KeysCommand::description() const
{
    return {
        "Lists every key that a host with the data paths DIR knows: key, locale (* for every locale), title, "
        "package and file, in the order of the keys. In a pipe the columns are separated by tabulators.",
        "A DIR is a data path that holds packages, a folder of data paths, or a package."};
}

QList<Command::Example> KeysCommand::examples() const
{
    return {{"Content", "List all keys."}, {"Content | cut -f1 | sort -u", "Each key once, for a script."}};
}

QList<QCommandLineOption> KeysCommand::options() const
{
    return {{"json", "Write a JSON array of key, locale, title, package, file, line and column."}};
}

int KeysCommand::run(const QCommandLineParser &arguments, Console &console)
{
    if (arguments.positionalArguments().isEmpty())
        return console.fail("keys needs a folder; see \"vidtips keys --help\"");
    Content content;
    const QString problem = content.loadWhole(arguments.positionalArguments());
    if (!problem.isEmpty())
        return console.fail(problem);
    for (const QString &folder : content.emptyFolders())
        console.note(QString("vidtips: no package was found in %1").arg(Places::shown(folder)));
    if (content.packages().isEmpty())
        return ExitBadInput;
    const QVector<Row> rows = rowsOf(content);
    if (arguments.isSet("json")) {
        writeJson(rows, console);
    } else if (console.isTerminal()) {
        writeTable(rows, console);
    } else {
        for (const Row &row : rows)
            console.writeLine(cellsOf(row, false).join('\t'));
    }
    return ExitFine;
}
