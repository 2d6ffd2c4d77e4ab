#include "Mistakes.h"

#include "TestCatalogue.h"
#include "TestClips.h"
#include "TestPaths.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTextCodec>

namespace {

QVector<Mistake> table;

/** A mistake in the control file, and what is found behind the file's name. */
struct ControlMistake
{
    const char *name;
    QByteArray garden;
    QString finding;
};

// What a check says of the control file, a preview says of its tip.
void addMistakes(const QVector<ControlMistake> &mistakes)
{
    for (const ControlMistake &mistake : mistakes) {
        const QString line = QString(Garden::control) + ':' + mistake.finding;
        table << Mistake{mistake.name, {{Garden::control, mistake.garden}}, line, line};
    }
}

void addStructureMistakes()
{
    using Garden::file;
    using Garden::tip;
    addMistakes(
        {{"misspelt attribute of a tip", file(R"(<vidtip key="tree" title="Tree" tilte="Tree"/>)"),
          "3:33: warning: the attribute \"tilte\" of \"vidtip\" is not read: did you mean \"title\"? "
          "[VT108]"},
         {"attribute that there is not", tip(R"(<picture source="%(kind)s" width="20"/>)"),
          "4:28: warning: the attribute \"width\" of \"picture\" is not read: \"source\" is [VT108]"},
         {"attribute of a text", tip(R"(<step number="1">Click.</step>)"),
          "4:7: warning: the attribute \"number\" of \"step\" is not read: no attribute is [VT108]"},
         {"misspelt attribute of the file",
          file(R"(<vidtip key="tree" title="Tree"/>)", R"(local="en_US" search="Shared")"),
          "2:10: warning: the attribute \"local\" of \"vidtips\" is not read: did you mean \"locale\"? "
          "[VT108]"},
         {"misspelt element", tip("<sumary>Plants a tree.</sumary>"),
          "4:1: warning: \"sumary\" is not read in \"vidtip\": did you mean \"summary\"? [VT109]"},
         {"letters in another order", tip("<stpe>Click.</stpe>"),
          "4:1: warning: \"stpe\" is not read in \"vidtip\": did you mean \"step\"? [VT109]"},
         {"element in capitals", tip("<Note>Mind the roots.</Note>"),
          "4:1: warning: \"Note\" is not read in \"vidtip\": did you mean \"note\"? [VT109]"},
         {"element that there is not", tip("<paragraph>Plants a tree.</paragraph>"),
          "4:1: warning: \"paragraph\" is not read in \"vidtip\": \"summary\", \"unavailable\", \"clip\", "
          "\"picture\", \"icon\", \"step\" and \"note\" are [VT109]"},
         {"steps in a list", tip("<steps><step>Click.</step></steps>"),
          "4:1: warning: \"steps\" is not read in \"vidtip\": did you mean \"step\"? [VT109]"},
         {"element in a picture", tip(R"(<picture source="%(kind)s"><note>A tree.</note></picture>)"),
          "4:28: warning: \"note\" is not read in \"picture\": no element is [VT109]"},
         {"bold words", tip("<summary>Press <b>Ctrl</b> and click.</summary>"),
          "4:16: warning: \"b\" and what it holds is not shown: \"summary\" is plain text [VT110]"},
         {"line break", tip("<note>Mind the roots.<br/>And the leaves.</note>"),
          "4:22: warning: \"br\" and what it holds is not shown: \"note\" is plain text [VT110]"},
         {"second summary", tip("<summary>One.</summary>\n<summary>Two.</summary>"),
          "5:1: warning: this \"summary\" is not shown: there is one in line 4 already [VT111]"},
         {"second picture", tip("<picture source=\"%(one)s\"/>\n  <picture source=\"%(two)s\"/>"),
          "5:3: warning: this \"picture\" is not shown: there is one in line 4 already [VT111]"},
         {"empty step", tip("<step>Click.</step>\n<step></step>"),
          "5:1: warning: this \"step\" is empty [VT112]"},
         {"blank summary", tip("<summary>\n </summary>"), "4:1: warning: this \"summary\" is empty [VT112]"},
         {"picture without a file", tip("<picture/>"),
          "4:1: warning: this \"picture\" has no \"source\" [VT113]"},
         {"clip with an empty name", tip(R"(<clip source=""/>)"),
          "4:7: warning: \"source\" of this \"clip\" is empty [VT113]"},
         {"tip without a title", file("<vidtip key=\"tree\"/>"),
          "3:1: warning: this \"vidtip\" has no \"title\" [VT113]"},
         {"tip with an empty title", file("<vidtip key=\"tree\" title=\" \"/>"),
          "3:20: warning: \"title\" of this \"vidtip\" is empty [VT113]"},
         {"text beside elements", tip("<summary>One.</summary>\n  Two."),
          "5:3: warning: text in \"vidtip\" is not shown [VT114]"},
         {"name of a picture as text", tip("<picture source=\"%(kind)s\">tree.png</picture>"),
          "4:28: warning: text in \"picture\" is not shown [VT114]"},
         {"schema that is missing", file(R"(<vidtip key="tree" title="Tree" schema="my.xml"/>)"),
          "3:33: warning: there is no schema \"my.xml\" [VT410]"}});
}

void addPlaceholderMistakes()
{
    using Garden::file;
    using Garden::tip;
    addMistakes(
        {{"placeholder without its letter", tip("<note>A grid of %(grid)mm.</note>"),
          "4:17: warning: \"%(grid)\" is not filled in: write \"%(grid)s\" [VT116]"},
         {"placeholder that is open", tip("<note>A grid\nof %(grid wide.</note>"),
          "5:4: warning: \"%(grid\" is not filled in: write \"%(grid)s\" [VT116]"},
         {"placeholder of two words", tip("<note>A grid of %(grid size)s.</note>"),
          "4:17: warning: \"%(grid size)\" is not filled in: a name is made of the letters a to z, digits, "
          "\"-\" "
          "and \"_\" [VT116]"},
         {"placeholder after an entity", tip("<note>&lt;&amp; %(grid)d</note>"),
          "4:17: warning: \"%(grid)\" is not filled in: write \"%(grid)s\" [VT116]"},
         {"placeholder in a title", file("<vidtip key=\"tree\" title=\"Tree of %(size)\"/>"),
          "3:20: warning: \"%(size)\" is not filled in: write \"%(size)s\" [VT116]"}});
}

void addXmlMistakes()
{
    using Garden::file;
    using Garden::tip;
    addMistakes(
        {{"ampersand", tip("<note>Roots & leaves</note>"),
          "4:15: error: Expected '#' or '[a-zA-Z]', but got ' ': write \"&amp;\" for \"&\" [VT101]"},
         {"ampersand before a letter", tip("<note>R&D knows</note>"),
          "4:11: error: Expected ';', but got ' ': write \"&amp;\" for \"&\" [VT101]"},
         {"entity without its end", tip("<note>5 &lt 6</note>"),
          "4:13: error: Expected ';', but got ' ': write \"&lt;\" with its semicolon [VT101]"},
         {"entity of HTML", tip("<note>3&nbsp;m</note>"),
          "4:14: error: Entity 'nbsp' not declared: write the character itself: XML knows only &amp; &lt; "
          "&gt; "
          "&quot; and &apos; [VT101]"},
         {"less than", tip("<note>Trees < hedges</note>"),
          "4:15: error: Unexpected ' ': write \"&lt;\" for \"<\"; a tag has no blank behind it [VT101]"},
         {"less than in a value", tip("<picture source=\"a<b\"/>"),
          "4:20: error: Unexpected '<': write \"&lt;\" for \"<\" [VT101]"},
         {"typographic quotes", tip("<picture source=\u201Ctree.png\u201D/>"),
          "4:18: error: Expected ''' or '\"', but got '[a-zA-Z]': write straight quotes (\") around a value "
          "[VT101]"},
         {"no quotes", tip("<picture source=tree.png/>"),
          "4:18: error: Expected ''' or '\"', but got '[a-zA-Z]': write the value in quotes, name=\"value\" "
          "[VT101]"},
         {"quotes in a value", tip("<picture source=\"a \"big\" tree.png\"/>"),
          "4:22: error: Expected '>' or '/', but got '[a-zA-Z]': write \"&quot;\" for a quotation mark "
          "inside a "
          "value, or close the value before [VT101]"},
         {"no blank between attributes", tip("<picture source=\"a.png\"width=\"2\"/>"),
          "4:25: error: Expected '>' or '/', but got '[a-zA-Z]': write a blank before \"width\" [VT101]"},
         {"attribute without a value", tip("<picture source/>"),
          "4:17: error: Expected '=', but got '/': write an attribute as name=\"value\" [VT101]"},
         {"attribute twice", tip("<picture source=\"a.png\" source=\"b.png\"/>"),
          "4:1: error: Attribute 'source' redefined: write the attribute once [VT101]"},
         {"other closing tag", tip("<summary>Plants a tree.</sumary>"),
          "4:24: error: Opening and ending tag mismatch: \"summary\" of line 4 is not closed: write "
          "\"</summary>\" [VT101]"},
         {"tag that is not closed", tip("<summary>Plants\na tree."),
          "6:1: error: Opening and ending tag mismatch: \"summary\" of line 4 is not closed: write "
          "\"</summary>\" [VT101]"},
         {"two dashes in a comment", tip("<!-- trees -- and hedges -->"),
          "4:15: error: Expected '>', but got ' ': a comment cannot hold \"--\" [VT101]"},
         {"prefix that is not declared", tip("<x:note>Mind the roots.</x:note>"),
          "4:1: error: Namespace prefix 'x' not declared: leave the prefix out, or declare it by an "
          "attribute "
          "\"xmlns:\u2026\" [VT101]"},
         {"control character", tip("<note>Mind\x01 the roots.</note>"),
          "4:12: error: Unexpected '': delete the control character U+0001 [VT101]"},
         {"comment that is not closed", tip("<!-- trees"),
          "7:1: error: Premature end of document: the comment of line 4 is not closed: write \"-->\" "
          "[VT101]"},
         {"value that is not closed", tip("<picture source=\"a.png/>\n<note>Mind the roots.</note>"),
          "5:2: error: Unexpected '<': the value that begins in line 4 is not closed [VT101]"},
         {"file that was cut off", file("<vidtip key=\"tree\" title=\"Tree\">\n<note>Mind").chopped(12),
          "4:11: error: Premature end of document: \"note\" of line 4 is not closed: write \"</note>\" "
          "[VT101]"}});
}

// What keeps the whole file out leaves a preview without the tip.
void addLostFileMistakes()
{
    const auto lost = [](const char *name, const QByteArray &garden, const QString &finding) {
        const QString line = QString(Garden::control) + ':' + finding;
        table << Mistake{
            name, {{Garden::control, garden}}, line, line + "\nvidtips: there are no tips for en_US"};
    };
    const QByteArray right = Garden::tip("<summary>Plants a tree.</summary>");
    lost("UTF-16", QTextCodec::codecForName("UTF-16LE")->fromUnicode(QString::fromUtf8(right)),
         "1:1: error: the file is UTF-16, which is never admitted: save it as UTF-8 [VT210]");
    lost("encoding that there is not", QByteArray(right).replace("UTF-8", "UTF8-x"),
         "1:31: error: there is no encoding \"UTF8-x\": save the file as UTF-8 and write encoding=\"UTF-8\" "
         "[VT117]");
    lost("UTF-16 that is declared only", QByteArray(right).replace("UTF-8", "UTF-16"),
         "1:31: error: the file declares UTF-16 and is not: write encoding=\"UTF-8\" [VT117]");
}

void addEncodingMistakes()
{
    const QByteArray umlaut = QByteArray("<note>Fine B") + char(0xE4) + "ume</note>";
    const QByteArray right = Garden::tip("<summary>Plants a tree.</summary>");
    addMistakes({{"Latin-1 in UTF-8", Garden::tip(umlaut),
                  "4:13: error: the byte E4 is not UTF-8, which the file declares (it would be \"\u00E4\" in "
                  "ISO-8859-1): save the file as UTF-8 [VT117]"},
                 {"Latin-1 without a declaration", Garden::tip(umlaut).mid(right.indexOf('\n') + 1),
                  "3:13: error: the byte E4 is not UTF-8, which a file is that declares nothing else (it "
                  "would be \"\u00E4\" in ISO-8859-1): save the file as UTF-8 [VT117]"}});
}

void addKeyMistakes()
{
    using Garden::file;
    const auto key = [](const char *name, const QByteArray &key, const QString &finding) {
        const QString line = QString(Garden::control) + ":4:9: warning: the key " + finding + " [VT305]";
        const QByteArray right = "<vidtip key=\"tree\" title=\"Tree\"/>\n";
        table << Mistake{name,
                         {{Garden::control, file(right + "<vidtip key=\"" + key + "\" title=\"T\"/>")}},
                         line,
                         QString()};
    };
    key("key of two words", "oak tree", "\"oak tree\" holds a blank");
    key("blank behind a key", "oak ", "\"oak \" holds a blank");
    key("typographic quotes in a key", "\u201Coak\u201D",
        "\"\u201Coak\u201D\" holds a quotation mark, \u201C");
    key("invisible character in a key", "oak\u200B", "\"oak\" holds the invisible character U+200b");
    const QString twice = QString(Garden::control)
        + ":4:9: error: the key \"tree\" vanishes: it has an entry in line 3 already [VT303]";
    table << Mistake{"key twice",
                     {{Garden::control,
                       file("<vidtip key=\"tree\" title=\"Tree\"/>\n<vidtip key=\"tree\" title=\"T\"/>")}},
                     twice,
                     twice + "\nthe tip \"tree\" is not shown"};
}

void addFileMistakes()
{
    using Garden::tip;
    addMistakes({{"clip that is missing", tip("<clip source=\"tree.mp4\"/>"),
                  "4:7: error: \"tree.mp4\" of the tip \"tree\" is missing: looked for "
                  "Garden.vidtips/Resources/tree.mp4, Shared.vidtips/Resources/tree.mp4 [VT405]"},
                 {"picture that is missing", tip("<picture source=\"tree.png\"/>"),
                  "4:10: error: \"tree.png\" of the tip \"tree\" is missing: looked for "
                  "Garden.vidtips/Resources/tree.png, Shared.vidtips/Resources/tree.png [VT404]"},
                 {"package that is missing",
                  Garden::file("<vidtip key=\"tree\" title=\"Tree\"/>", "search=\"Shared Oaks\""),
                  "2:10: warning: \"search\" names \"Oaks\", and there is no such package [VT401]"}});
    const auto elsewhere = [](const char *name, const QByteArray &source, const QString &reason,
                              const Files &others = {}) {
        Files files = others;
        files.insert(Garden::control, tip("<picture source=\"" + source + "\"/>"));
        const QString line =
            QString("%1:4:10: warning: \"%2\" of the tip \"tree\" %3: put the file into the package [VT411]")
                .arg(Garden::control, source, reason);
        table << Mistake{name, files, line, line};
    };
    const QByteArray picture = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1\" height=\"1\"/>";
    elsewhere("absolute path", "/nowhere/tree.png", "is a path of this machine");
    elsewhere("absolute path of Windows", "C:\\nowhere\\tree.png", "is a path of this machine");
    elsewhere("address of a file", "file:///nowhere/tree.png", "is a path of this machine");
    elsewhere("address in the network", "https://localhost/tree.png", "is in the network, and is not loaded");
    elsewhere("path out of the package", "../../tree.svg", "lies outside the package",
              {{"tree.svg", picture}, {"Garden.vidtips/Resources/bush.svg", picture}});
    const auto swapped = [&](const char *name, const QByteArray &element, const QByteArray &file,
                             const QByteArray &bytes, const QString &finding) {
        const QString line =
            QString("%1:4:%2: warning: %3 [VT412]").arg(Garden::control).arg(element.size() + 3).arg(finding);
        table << Mistake{name,
                         {{Garden::control, tip('<' + element + " source=\"" + file + "\"/>")},
                          {"Garden.vidtips/Resources/" + file, bytes}},
                         line,
                         line};
    };
    swapped("clip that is a picture", "clip", "tree.svg", picture,
            "\"tree.svg\" is a picture, and this is a \"clip\": did you mean \"picture\"?");
    swapped("picture that is a clip", "picture", "tree.mp4", TestClips::read(TestClips::h264()),
            "\"tree.mp4\" is a clip, and this is a \"picture\": did you mean \"clip\"?");
    const auto folder = [](const char *name, const QByteArray &path, const QString &finding) {
        const Files files{{path + "/Control/Bush.xml", "<vidtips/>"}};
        table << Mistake{name, files, path + ": warning: " + finding, QString()};
    };
    const QString noPackage = "the folder is no package, because its name does not end in \".vidtips\"";
    folder("package with another suffix", "Bush.vidtip", noPackage + ": name it \"Bush.vidtips\" [VT211]");
    folder("package without a suffix", "Bush 1.0", noPackage + ": name it \"Bush 1.0.vidtips\" [VT211]");
    folder("blank behind the suffix", "Bush.vidtips ", noPackage + ": name it \"Bush.vidtips\" [VT211]");
    folder("copy without the suffix", "Garden", noPackage + " [VT211]");
    folder("package in a folder", "Plants/Bush.vidtips",
           "the package lies too deep to be found: move it up, or name \"Plants\" as well [VT212]");
    table << Mistake{
        "picture larger than a screen",
        {{"Garden.vidtips/Resources/tree.svg",
          "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8000\" height=\"6000\"/>"}},
        "Garden.vidtips/Resources/tree.svg: warning: the picture is 8000 x 6000 pixels, and screens have "
        "3840 x 2160 at most [VT409]",
        QString()};
}

// Beside the packages, where nobody but the application reads it.
void addKeyDataMistakes()
{
    const auto mistake = [](const char *name, const QByteArray &keyData, const QString &finding) {
        table << Mistake{name, {{"keys.xml", keyData}}, "keys.xml:" + finding, QString()};
    };
    mistake("key data that is empty", "", " error: the file holds no element [VT804]");
    mistake("key data with a misspelt root", "<vidtipskeys/>",
            "1:1: error: the document element is \"vidtipskeys\": did you mean \"vidtipkeys\"? [VT804]");
    mistake("key data with a misspelt element", "<vidtipkeys>\n<kye name=\"tree\"/></vidtipkeys>",
            "2:1: warning: \"kye\" is not read here: only \"key\" is [VT805]");
    mistake("key data with a misspelt attribute",
            "<vidtipkeys>\n<key name=\"tree\" shrtcut=\"T\"/></vidtipkeys>",
            "2:18: warning: the attribute \"shrtcut\" is not read: did you mean \"shortcut\"? [VT805]");
    mistake("key data with a misspelt attribute of the schema",
            "<vidtipkeys>\n<key name=\"tree\" hlep=\"trees\"/></vidtipkeys>",
            "2:18: warning: the attribute \"hlep\" is not read: did you mean \"help\"? [VT805]");
}

// A shared user interface of two words, in a package of its own.
Files withWords(Files changes)
{
    changes.insert("Words.vidtips/Control/Words.xml", "<vidtips/>");
    changes.insert("Words.vidtips/ui/VidtipsUI.qml",
                   "import QtQuick 1.1\nItem {\n  width: 20; height: 10\n"
                   "  property string more: vidTipView.translate(\"More help\", \"VidtipsUI\")\n"
                   "  property string keep: vidTipView.translate(\"Keep open\", \"VidtipsUI\")\n}\n");
    return changes;
}

void addTranslationMistakes()
{
    const QByteArray entries = "<vidtip key=\"tree\" title=\"Plants\" context=\"G\"/>\n"
                               "<vidtip key=\"bush\" title=\"Plants\" context=\"G\"/>";
    const QByteArray german = "<vidtips locale=\"de_DE\" search=\"Words, Shared\">\n"
                              "<vidtip key=\"tree\" title=\"Baum\"/></vidtips>";
    const QByteArray words =
        TestCatalogue("VidtipsUI").add("More help", "Mehr").add("Keep open", "Offen").bytes();
    const auto silent = [](const char *name, const Files &files, const QString &line) {
        table << Mistake{name, withWords(files), line, QString()};
    };
    silent("text that many tips use",
           {{Garden::control, Garden::file(entries, "search=\"Words, Shared\"")},
            {"Garden.vidtips/l10n/Vidtips_de_DE.qm", words},
            {"Garden.vidtips/l10n/Vidtips_fr_FR.qm", words}},
           "Garden.vidtips/Control/Garden.xml:3:20: warning: \"Plants\" is not translated in de_DE, fr_FR; "
           "it also "
           "stands in line 4 [VT704]");
    silent("words of the shared user interface",
           {{"Garden.vidtips/Control/German.xml", german},
            {"Garden.vidtips/l10n/Vidtips_de_DE.qm",
             TestCatalogue("VidtipsUI").add("More help", "Mehr").bytes()}},
           "Words.vidtips/ui/VidtipsUI.qml:5:46: warning: \"Keep open\" is not translated in de_DE: "
           "Garden.vidtips/l10n/Vidtips_de_DE.qm lacks it [VT705]");
    silent("no catalogue for the user interface", {{"Garden.vidtips/Control/German.xml", german}},
           "Garden.vidtips/Control/German.xml:1:10: warning: the words of the user interface, such as \"More "
           "help\", "
           "are not translated in de_DE: there is no Vidtips_de_DE.qm [VT705]");
}

// A preview plays clips and does not judge them.
void clipMistake(const QString &clip, const char *name, const QString &finding)
{
    const QString file = "Garden.vidtips/Resources/tree." + QFileInfo(clip).suffix();
    table << Mistake{name, {{file, TestClips::read(clip)}}, file + ": " + finding, QString()};
}

QString h264(const QString &name, const QString &size, const QStringList &options)
{
    const QStringList codec{"-c:v", "libx264", "-pix_fmt", "yuv420p", "-movflags", "+faststart"};
    return TestClips::make(name, TestClips::moving(size, 50, options + codec));
}

void addClipMistakes()
{
    const QString whole = h264("mistake-whole.mp4", "160x120", {});
    const QByteArray bytes = TestClips::read(whole);
    clipMistake(TestClips::write("mistake-cut.mp4", bytes.left(bytes.size() / 2)), "clip that was cut off",
                "error: the clip is cut off after 0.8 s of 2.0 s [VT505]");
    clipMistake(
        h264("mistake-variable.mp4", "160x120", {"-vf", "select='lt(n,10)+gt(n,30)'", "-vsync", "vfr"}),
        "clip of variable frame rate",
        "warning: the frame rate varies, from 40 to 880 ms a frame, and the clip is played as if it did not "
        "[VT506]");
    clipMistake(
        TestClips::make("mistake-turned.mp4", {"-i", whole, "-c", "copy", "-metadata:s:v", "rotate=90"}),
        "clip of a telephone",
        "warning: the clip is to be turned by 90 degrees, and is shown as it is stored [VT507]");
    clipMistake(h264("mistake-aspect.mp4", "160x120", {"-vf", "setsar=4/3"}), "pixels that are not square",
                "warning: the clip's pixels are 4:3, and are shown square [VT508]");
    clipMistake(h264("mistake-hd.mp4", "1280x720", {"-t", "0.1"}), "HD without colours",
                "warning: the clip is HD (1280 x 720) and does not say its colours, which are shown as those "
                "of small "
                "clips [VT509]");
    clipMistake(TestClips::make("mistake-alpha.mov",
                                TestClips::moving("160x120", 5, {"-pix_fmt", "argb", "-c:v", "qtrle"})),
                "clip with transparency", "warning: the clip has transparency, which is not shown [VT510]");
    clipMistake(TestClips::write("mistake-none.mp4", "no clip"), "file that is no clip",
                "error: the clip does not open: Could not open media [VT501]");
}

// A user interface of the package's own, of which a preview shows what its QML says.
void qmlMistake(const char *name, const QByteArray &qml, const QString &check, const QString &preview)
{
    const QString file = "Garden.vidtips/ui/VidtipsUI.qml:";
    const QString silent;
    table << Mistake{name,
                     {{"Garden.vidtips/ui/VidtipsUI.qml", qml}},
                     file + check,
                     preview.isEmpty() ? silent : file + preview};
}

void addQmlMistakes()
{
    const QByteArray head = "import QtQuick 1.1\nItem {\n";
    const QByteArray size = "  width: 20; height: 10\n";
    qmlMistake("picture that QML misses", head + size + "  Image { source: \"corner.png\" }\n}",
               "4:19: error: there is no \"corner.png\" beside this file [VT605]",
               "4:3: QML Image: Cannot open: Garden.vidtips/ui/corner.png");
    qmlMistake("part that QML misses", head + size + "  Loader {\n    source: \"Part.qml\"\n  }\n}",
               "5:13: error: there is no \"Part.qml\" beside this file [VT605]", "");
    qmlMistake("root without a size", head + "  Text { text: \"Tree\" }\n}",
               "2:1: warning: the tip has no size: give this item a width and a height [VT606]", "");
    qmlMistake("binding loop",
               head + "  width: 20\n  height: box.height\n  Item { id: box; height: parent.height + 1 }\n}",
               "5:3: warning: QML Item: Binding loop detected for property \"height\" [VT607]",
               "5:3: QML Item: Binding loop detected for property \"height\"");
    qmlMistake("value that is not there", head + size + "  property int n: vidtip.attribute(\"a\").size.n\n}",
               "4: warning: TypeError: Cannot read property 'n' of undefined [VT607]",
               "4: TypeError: Cannot read property 'n' of undefined");
    qmlMistake("QtQuick 2", "import QtQuick 2.15\nItem { width: 20; height: 10 }",
               "1:1: error: QtQuick 2 cannot be shown in a tip [VT602]",
               "1:1: error: QtQuick 2 cannot be shown in a tip [VT602]");
    qmlMistake("property that there is not", head + size + "  txt: \"Tree\"\n}",
               "4:3: error: Cannot assign to non-existent property \"txt\" [VT601]",
               "4:3: Cannot assign to non-existent property \"txt\"");
}

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

QVector<Mistake> allMistakes()
{
    if (table.isEmpty()) {
        addStructureMistakes();
        addPlaceholderMistakes();
        addXmlMistakes();
        addLostFileMistakes();
        addEncodingMistakes();
        addKeyMistakes();
        addFileMistakes();
        addKeyDataMistakes();
        addTranslationMistakes();
        addClipMistakes();
        addQmlMistakes();
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
