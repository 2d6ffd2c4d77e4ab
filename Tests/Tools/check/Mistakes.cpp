#include "Mistakes.h"

#include <QtCore/QRegularExpression>

namespace {

QVector<Mistake> table;

// What a check says of the control file, a preview says of its tip.
void mistake(const char *name, const QByteArray &garden, const QString &finding)
{
    const QString line = QString(Garden::control) + ':' + finding;
    table << Mistake{name, {{Garden::control, garden}}, line, line};
}

void addStructureMistakes()
{
    using Garden::file;
    using Garden::tip;
    mistake(
        "misspelt attribute of a tip", file(R"(<vidtip key="tree" tilte="Tree"/>)"),
        "3:20: warning: the attribute \"tilte\" of \"vidtip\" is not read: did you mean \"title\"? [VT108]");
    mistake("attribute that there is not", tip(R"(<picture source="%(kind)s" width="20"/>)"),
            "4:28: warning: the attribute \"width\" of \"picture\" is not read: \"source\" is [VT108]");
    mistake("attribute of a text", tip(R"(<step number="1">Click.</step>)"),
            "4:7: warning: the attribute \"number\" of \"step\" is not read: no attribute is [VT108]");
    mistake("misspelt attribute of the file",
            file(R"(<vidtip key="tree" title="Tree"/>)", R"(local="en_US" search="Shared")"),
            "2:10: warning: the attribute \"local\" of \"vidtips\" is not read: did you mean \"locale\"? "
            "[VT108]");
    mistake("misspelt element", tip("<sumary>Plants a tree.</sumary>"),
            "4:1: warning: \"sumary\" is not read in \"vidtip\": did you mean \"summary\"? [VT109]");
    mistake("letters in another order", tip("<stpe>Click.</stpe>"),
            "4:1: warning: \"stpe\" is not read in \"vidtip\": did you mean \"step\"? [VT109]");
    mistake("element in capitals", tip("<Note>Mind the roots.</Note>"),
            "4:1: warning: \"Note\" is not read in \"vidtip\": did you mean \"note\"? [VT109]");
    mistake("element that there is not", tip("<paragraph>Plants a tree.</paragraph>"),
            "4:1: warning: \"paragraph\" is not read in \"vidtip\": \"summary\", \"unavailable\", \"clip\", "
            "\"picture\", \"step\" and \"note\" are [VT109]");
    mistake("steps in a list", tip("<steps><step>Click.</step></steps>"),
            "4:1: warning: \"steps\" is not read in \"vidtip\": did you mean \"step\"? [VT109]");
    mistake("element in a picture", tip(R"(<picture source="%(kind)s"><note>A tree.</note></picture>)"),
            "4:28: warning: \"note\" is not read in \"picture\": no element is [VT109]");
    mistake("bold words", tip("<summary>Press <b>Ctrl</b> and click.</summary>"),
            "4:16: warning: \"b\" and what it holds is not shown: \"summary\" is plain text [VT110]");
    mistake("line break", tip("<note>Mind the roots.<br/>And the leaves.</note>"),
            "4:22: warning: \"br\" and what it holds is not shown: \"note\" is plain text [VT110]");
    mistake("second summary", tip("<summary>One.</summary>\n<summary>Two.</summary>"),
            "5:1: warning: this \"summary\" is not shown: there is one in line 4 already [VT111]");
    mistake("second picture", tip("<picture source=\"%(one)s\"/>\n  <picture source=\"%(two)s\"/>"),
            "5:3: warning: this \"picture\" is not shown: there is one in line 4 already [VT111]");
    mistake("empty step", tip("<step>Click.</step>\n<step></step>"),
            "5:1: warning: this \"step\" is empty [VT112]");
    mistake("blank summary", tip("<summary>\n </summary>"),
            "4:1: warning: this \"summary\" is empty [VT112]");
    mistake("picture without a file", tip("<picture/>"),
            "4:1: warning: this \"picture\" has no \"source\" [VT113]");
    mistake("clip with an empty name", tip(R"(<clip source=""/>)"),
            "4:7: warning: \"source\" of this \"clip\" is empty [VT113]");
    mistake("text beside elements", tip("<summary>One.</summary>\n  Two."),
            "5:3: warning: text in \"vidtip\" is not shown [VT114]");
    mistake("name of a picture as text", tip("<picture source=\"%(kind)s\">tree.png</picture>"),
            "4:28: warning: text in \"picture\" is not shown [VT114]");
    mistake("schema that is missing", file(R"(<vidtip key="tree" title="Tree" schema="my.xml"/>)"),
            "3:33: warning: there is no schema \"my.xml\" [VT410]");
}

void addPlaceholderMistakes()
{
    using Garden::file;
    using Garden::tip;
    mistake("placeholder without its letter", tip("<note>A grid of %(grid)mm.</note>"),
            "4:17: warning: \"%(grid)\" is not filled in: write \"%(grid)s\" [VT116]");
    mistake("placeholder that is open", tip("<note>A grid\nof %(grid wide.</note>"),
            "5:4: warning: \"%(grid\" is not filled in: write \"%(grid)s\" [VT116]");
    mistake("placeholder of two words", tip("<note>A grid of %(grid size)s.</note>"),
            "4:17: warning: \"%(grid size)\" is not filled in: a name is made of the letters a to z, digits, "
            "\"-\" "
            "and \"_\" [VT116]");
    mistake("placeholder after an entity", tip("<note>&lt;&amp; %(grid)d</note>"),
            "4:17: warning: \"%(grid)\" is not filled in: write \"%(grid)s\" [VT116]");
    mistake("placeholder in a title", file("<vidtip key=\"tree\" title=\"Tree of %(size)\"/>"),
            "3:20: warning: \"%(size)\" is not filled in: write \"%(size)s\" [VT116]");
}

} // namespace

Files Garden::with(const Files &changes)
{
    const QString shared = QString(EXAMPLE_CONTENT) + "/Base/Shared.vidtips";
    Files files;
    QDirIterator walk(shared, {"*.qml", "*.js", "*.xml"}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        files.insert("Shared.vidtips" + path.mid(shared.size()), TestPackages::read(path));
    }
    files.insert(control, tip("<summary>Plants a tree.</summary>"));
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        if (it->isNull())
            files.remove(it.key());
        else
            files.insert(it.key(), *it);
    }
    return files;
}

QVector<Mistake> allMistakes()
{
    if (table.isEmpty()) {
        addStructureMistakes();
        addPlaceholderMistakes();
    }
    return table;
}

QStringList codesOfMistakes()
{
    static const QRegularExpression code("\\[(VT\\d+)\\]");
    QStringList codes;
    for (const Mistake &mistake : allMistakes()) {
        auto matches = code.globalMatch(mistake.check);
        while (matches.hasNext())
            codes << matches.next().captured(1);
    }
    codes.removeDuplicates();
    return codes;
}
