#include "Mistakes.h"

#include <QtCore/QTextCodec>

namespace {

void addStructureMistakes()
{
    using Garden::file;
    using Garden::tip;
    Mistakes::addInControlFile(
        {{"misspelt attribute of a tip", file(R"(<vidtip key="tree" title="Tree" tilte="Tree"/>)"),
          "3:33: warning: the attribute \"tilte\" of \"vidtip\" is not read: did you mean \"title\"? "
          "[VT108]"},
         {"attribute that there is not", tip(R"(<picture source="%(kind)s" width="20"/>)"),
          "4:28: warning: the attribute \"width\" of \"picture\" is not read: \"source\" is [VT108]",
          "Tip \"tree\": Could not find the picture %(kind)s"},
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
          "4:28: warning: \"note\" is not read in \"picture\": no element is [VT109]",
          "Tip \"tree\": Could not find the picture %(kind)s"},
         {"bold words", tip("<summary>Press <b>Ctrl</b> and click.</summary>"),
          "4:16: warning: \"b\" and what it holds is not shown: \"summary\" is plain text [VT110]"},
         {"line break", tip("<note>Mind the roots.<br/>And the leaves.</note>"),
          "4:22: warning: \"br\" and what it holds is not shown: \"note\" is plain text [VT110]"},
         {"second summary", tip("<summary>One.</summary>\n<summary>Two.</summary>"),
          "5:1: warning: this \"summary\" is not shown: there is one in line 4 already [VT111]"},
         {"second picture", tip("<picture source=\"%(one)s\"/>\n  <picture source=\"%(two)s\"/>"),
          "5:3: warning: this \"picture\" is not shown: there is one in line 4 already [VT111]",
          "Tip \"tree\": Could not find the picture %(one)s"},
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
          "4:28: warning: text in \"picture\" is not shown [VT114]",
          "Tip \"tree\": Could not find the picture %(kind)s"},
         {"schema that is missing", file(R"(<vidtip key="tree" title="Tree" schema="my.xml"/>)"),
          "3:33: warning: there is no schema \"my.xml\" [VT410]"}});
}

void addPlaceholderMistakes()
{
    using Garden::file;
    using Garden::tip;
    Mistakes::addInControlFile(
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
         {"placeholder in braces", tip("<note>A grid of %{grid}.</note>"),
          "4:17: warning: \"%{grid}\" is not filled in: write \"%(grid)s\" [VT116]"},
         {"placeholder with a blank", tip("<note>A grid of % (grid)s.</note>"),
          "4:17: warning: \"% (grid)s\" is not filled in: write \"%(grid)s\" [VT116]"},
         {"numbered placeholder", tip("<note>100 %, 5%2 or %1.</note>"),
          "4:21: warning: \"%1\" is not filled in: write \"%(name)s\", with the name of a value [VT116]"},
         {"placeholder in a title", file("<vidtip key=\"tree\" title=\"Tree of %(size)\"/>"),
          "3:20: warning: \"%(size)\" is not filled in: write \"%(size)s\" [VT116]"}});
}

// Right as XML, and not what users are to read.
void addTextMistakes()
{
    using Garden::file;
    using Garden::tip;
    Mistakes::addInControlFile(
        {{"tags in a section of CDATA", tip("<note><![CDATA[Mind the <b>roots</b>.]]></note>"),
          "4:7: warning: \"<b>\" is shown as it is written: \"note\" is plain text [VT119]"},
         {"tags that are escaped", tip("<note>Mind the roots.&lt;br/&gt;And the leaves.</note>"),
          "4:7: warning: \"<br/>\" is shown as it is written: \"note\" is plain text [VT119]"},
         {"umlaut that was converted twice", tip("<note>B\u00C3\u00A4ume</note>"),
          "4:8: warning: \"\u00C3\u00A4\" was \"\u00E4\" before the text was read in another encoding "
          "[VT120]"},
         {"apostrophe that was converted twice", tip("<note>Don\u00E2\u20AC\u2122t</note>"),
          "4:10: warning: \"\u00E2\u20AC\u2122\" was \"\u2019\" before the text was read in another encoding "
          "[VT120]"},
         {"title that was converted twice", file("<vidtip key=\"tree\" title=\"5 \u00C2\u00B0C\"/>"),
          "3:20: warning: \"\u00C2\u00B0\" was \"\u00B0\" before the text was read in another encoding "
          "[VT120]"},
         {"misspelt key of a shortcut", file("<vidtip key=\"tree\" title=\"Tree\" shortcut=\"Crtl+T\"/>"),
          "3:33: warning: there is no key \"Crtl\": did you mean \"Ctrl\"? [VT121]"},
         {"picture beside a clip", tip("<clip source=\"%(clip)s\"/>\n<picture source=\"%(kind)s\"/>"),
          "5:1: warning: this \"picture\" is not shown: there is a \"clip\" [VT122]",
          "Tip \"tree\": Could not find the clip %(clip)s"},
         {"tip without a context among others",
          file("<vidtip key=\"bush\" title=\"Bush\" context=\"G\"/>\n<vidtip key=\"tree\" title=\"Tree\"/>",
               "search=\"Shared\""),
          "4:1: warning: the tip \"tree\" is not translated: it has no \"context\", as others of this file "
          "[VT710]"}});
}

void addXmlMistakes()
{
    using Garden::file;
    using Garden::tip;
    Mistakes::addInControlFile(
        {{"ampersand", tip("<note>Roots & leaves</note>"),
          "4:15: error: Expected '#' or '[a-zA-Z]', but got ' ': write \"&amp;\" for \"&\" [VT101]",
          Garden::malformed("4:14: letter is expected")},
         {"ampersand before a letter", tip("<note>R&D knows</note>"),
          "4:11: error: Expected ';', but got ' ': write \"&amp;\" for \"&\" [VT101]",
          Garden::malformed("4:10: error occurred while parsing reference")},
         {"entity without its end", tip("<note>5 &lt 6</note>"),
          "4:13: error: Expected ';', but got ' ': write \"&lt;\" with its semicolon [VT101]",
          Garden::malformed("4:12: error occurred while parsing reference")},
         {"entity of HTML", tip("<note>3&nbsp;m</note>"),
          "4:14: error: Entity 'nbsp' not declared: write the character itself: XML knows only &amp; &lt; "
          "&gt; "
          "&quot; and &apos; [VT101]"},
         {"less than", tip("<note>Trees < hedges</note>"),
          "4:15: error: Unexpected ' ': write \"&lt;\" for \"<\"; a tag has no blank behind it [VT101]",
          Garden::malformed("4:14: error occurred while parsing element")},
         {"less than in a value", tip("<picture source=\"a<b\"/>"),
          "4:20: error: Unexpected '<': write \"&lt;\" for \"<\" [VT101]",
          Garden::malformed("4:19: unexpected character")},
         {"typographic quotes", tip("<picture source=\u201Ctree.png\u201D/>"),
          "4:18: error: Expected ''' or '\"', but got '[a-zA-Z]': write straight quotes (\") around a value "
          "[VT101]",
          Garden::malformed("4:17: unexpected character")},
         {"no quotes", tip("<picture source=tree.png/>"),
          "4:18: error: Expected ''' or '\"', but got '[a-zA-Z]': write the value in quotes, name=\"value\" "
          "[VT101]",
          Garden::malformed("4:17: unexpected character")},
         {"quotes in a value", tip("<picture source=\"a \"big\" tree.png\"/>"),
          "4:22: error: Expected '>' or '/', but got '[a-zA-Z]': write \"&quot;\" for a quotation mark "
          "inside a "
          "value, or close the value before [VT101]",
          Garden::malformed("4:24: unexpected character")},
         {"no blank between attributes", tip("<picture source=\"a.png\"width=\"2\"/>"),
          "4:25: error: Expected '>' or '/', but got '[a-zA-Z]': write a blank before \"width\" [VT101]",
          "Tip \"tree\": Could not find the picture a.png"},
         {"attribute without a value", tip("<picture source/>"),
          "4:17: error: Expected '=', but got '/': write an attribute as name=\"value\" [VT101]",
          Garden::malformed("4:16: unexpected character")},
         {"attribute twice", tip("<picture source=\"a.png\" source=\"b.png\"/>"),
          "4:1: error: Attribute 'source' redefined: write the attribute once [VT101]",
          Garden::malformed("4:39: attribute 'source' redefined")},
         {"other closing tag", tip("<summary>Plants a tree.</sumary>"),
          "4:24: error: Opening and ending tag mismatch: \"summary\" of line 4 is not closed: write "
          "\"</summary>\" [VT101]",
          Garden::malformed("4:32: tag mismatch")},
         {"tag that is not closed", tip("<summary>Plants\na tree."),
          "6:1: error: Opening and ending tag mismatch: \"summary\" of line 4 is not closed: write "
          "\"</summary>\" [VT101]",
          Garden::malformed("6:9: tag mismatch")},
         {"two dashes in a comment", tip("<!-- trees -- and hedges -->"),
          "4:15: error: Expected '>', but got ' ': a comment cannot hold \"--\" [VT101]",
          Garden::malformed("4:14: error occurred while parsing comment")},
         {"prefix that is not declared", tip("<x:note>Mind the roots.</x:note>"),
          "4:1: error: Namespace prefix 'x' not declared: leave the prefix out, or declare it by an "
          "attribute "
          "\"xmlns:\u2026\" [VT101]"},
         {"control character", tip("<note>Mind\x01 the roots.</note>"),
          "4:12: error: Unexpected '': delete the control character U+0001 [VT101]"},
         {"vertical tab", tip("<note>Mind\x0b the roots.</note>"),
          "4:12: error: Unexpected '': delete the control character U+000b [VT101]"},
         {"key in angle brackets", tip("<note>Press <Return.</note>"),
          "4:22: error: Expected '>' or '/', but got '<': close the tag \"<Return.\" by \">\", or write "
          "\"&lt;\" "
          "for \"<\" where none is meant [VT101]",
          Garden::malformed("4:21: error occurred while parsing element")},
         {"comment that is not closed", tip("<!-- trees"),
          "7:1: error: Premature end of document: the comment of line 4 is not closed: write \"-->\" "
          "[VT101]",
          Garden::malformed("7:1: unexpected end of file")},
         {"value that is not closed", tip("<picture source=\"a.png/>\n<note>Mind the roots.</note>"),
          "5:2: error: Unexpected '<': the value that begins in line 4 is not closed [VT101]",
          Garden::malformed("5:1: unexpected character")},
         {"file that was cut off", file("<vidtip key=\"tree\" title=\"Tree\">\n<note>Mind").chopped(12),
          "4:11: error: Premature end of document: \"note\" of line 4 is not closed: write \"</note>\" "
          "[VT101]",
          Garden::malformed("4:11: unexpected end of file")}});
}

// What keeps the whole file out leaves a preview without the tip.
void addLostFileMistakes()
{
    const auto lost = [](const char *name, const QByteArray &garden, const QString &finding,
                         const QString &host) {
        const QString line = QString(Garden::control) + ':' + finding;
        Mistakes::add(
            {name, {{Garden::control, garden}}, line, line + "\nvidtips: there are no tips for en_US", host});
    };
    const QByteArray right = Garden::tip("<summary>Plants a tree.</summary>");
    lost("UTF-16", QTextCodec::codecForName("UTF-16LE")->fromUnicode(QString::fromUtf8(right)),
         "1:1: error: the file is UTF-16, which is never admitted: save it as UTF-8 [VT210]", "no tip");
    lost("misspelt key", Garden::file("<vidtip Key=\"tree\" title=\"Tree\"/>"),
         "3:1: error: this entry has no key [VT103]", "no tip");
    lost("language in place of a locale",
         Garden::file("<vidtip key=\"tree\" title=\"Tree\"/>", "locale=\"english\" search=\"Shared\""),
         "2:10: error: Qt knows no locale \"english\" [VT106]", "no tip");
    lost("encoding that there is not", QByteArray(right).replace("UTF-8", "UTF8-x"),
         "1:31: error: there is no encoding \"UTF8-x\": save the file as UTF-8 and write encoding=\"UTF-8\" "
         "[VT117]",
         {});
    lost("UTF-16 that is declared only", QByteArray(right).replace("UTF-8", "UTF-16"),
         "1:31: error: the file declares UTF-16 and is not: write encoding=\"UTF-8\" [VT117]",
         Garden::malformed("1:1: error occurred while parsing element") + "\nno tip");
}

// The language that nobody asked for is the only one that is left.
void addLostLanguage()
{
    const QString german = "Garden.vidtips/Control/German.xml";
    const QString lost = QString(Garden::control)
        + ":1:1: error: the first element is \"vidtip\" instead of \"vidtips\" [VT201]";
    Mistakes::add(
        {"content that is lost in one language",
         {{Garden::control, "<vidtip key=\"tree\" title=\"Tree\"/>"},
          {"Garden.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem { width: 20; height: 10 }\n"},
          {german,
           "<vidtips locale=\"de_DE\" search=\"Shared\">\n<vidtip key=\"tree\" title=\"Baum\"/></vidtips>"}},
         lost,
         lost + "\nshown for de_DE: there are no tips for en_US; there are for de_DE",
         "no tip",
         {},
         {}});
}

void addEncodingMistakes()
{
    const QByteArray umlaut = QByteArray("<note>Fine B") + char(0xE4) + "ume</note>";
    const QByteArray right = Garden::tip("<summary>Plants a tree.</summary>");
    Mistakes::addInControlFile(
        {{"Latin-1 in UTF-8", Garden::tip(umlaut),
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
        Mistakes::add({name,
                       {{Garden::control, file(right + "<vidtip key=\"" + key + "\" title=\"T\"/>")}},
                       line,
                       QString()});
    };
    key("key of two words", "oak tree", "\"oak tree\" holds a blank");
    key("blank behind a key", "oak ", "\"oak \" holds a blank");
    key("typographic quotes in a key", "\u201Coak\u201D",
        "\"\u201Coak\u201D\" holds a quotation mark, \u201C");
    key("invisible character in a key", "oak\u200B", "\"oak\" holds the invisible character U+200b");
    const QString twice = QString(Garden::control)
        + ":4:9: error: the key \"tree\" vanishes: it has an entry in line 3 already [VT303]";
    Mistakes::add({"key twice",
                   {{Garden::control,
                     file("<vidtip key=\"tree\" title=\"Tree\"/>\n<vidtip key=\"tree\" title=\"T\"/>")}},
                   twice,
                   twice + "\nthe tip \"tree\" is not shown",
                   "no tip"});
}

} // namespace

void Mistakes::addInControlFiles()
{
    addStructureMistakes();
    addPlaceholderMistakes();
    addTextMistakes();
    addXmlMistakes();
    addLostFileMistakes();
    addLostLanguage();
    addEncodingMistakes();
    addKeyMistakes();
}
