#include "Mistakes.h"

#include "TestPaths.h"

#include <QtCore/QRegularExpression>

namespace {

QVector<Mistake> table;

} // namespace

Files Garden::with(const Files &changes)
{
    const QString shared = TestPaths::source("Examples/Drafting/Content/Base/Shared.vidtips");
    Files files;
    QDirIterator walk(shared, {"*.qml", "*.js", "*.xml"}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        files.insert("Shared.vidtips" + path.mid(shared.size()), TestPackages::read(path));
    }
    // Its own tips are for every locale, which would be one more thing that the mistakes of others touch.
    files.insert("Shared.vidtips/Control/Shared.xml", "<vidtips/>");
    files.insert(control, tip("<summary>Plants a tree.</summary>"));
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        if (it->isNull())
            files.remove(it.key());
        else
            files.insert(it.key(), *it);
    }
    return files;
}

QString Garden::malformed(const QString &error)
{
    return QString("%1:%2; nothing from there on is read").arg(control, error);
}

void Mistakes::add(const Mistake &mistake)
{
    table << mistake;
}

// What a check says of the control file, a preview says of its tip.
void Mistakes::addInControlFile(const QVector<ControlFileMistake> &mistakes)
{
    const QString place = QString(Garden::control) + ':';
    for (const ControlFileMistake &mistake : mistakes) {
        const QString found = place + mistake.finding;
        add({mistake.name, {{Garden::control, mistake.garden}}, found, found, mistake.host, mistake.run});
    }
}

QVector<Mistake> Mistakes::all()
{
    if (table.isEmpty()) {
        addInControlFiles();
        addInPackages();
        addInWhatIsShown();
    }
    return table;
}

QStringList Mistakes::codes()
{
    static const QRegularExpression code("\\[(VT\\d+)\\]");
    QStringList codes;
    for (const Mistake &mistake : all()) {
        auto matches = code.globalMatch(mistake.check);
        while (matches.hasNext())
            codes << matches.next().captured(1);
    }
    codes.removeDuplicates();
    return codes;
}
