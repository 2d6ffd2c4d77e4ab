#include "Mistakes.h"

#include "TestCatalogue.h"
#include "TestClips.h"

namespace {

QString noPicture(const QString &source)
{
    return QString("Tip \"tree\": Could not find the picture %1").arg(source);
}

void addFileMistakes()
{
    using Garden::tip;
    Mistakes::addInControlFile(
        {{"clip that is missing", tip("<clip source=\"tree.mp4\"/>"),
          "4:7: error: \"tree.mp4\" of the tip \"tree\" is missing: looked for "
          "Garden.vidtips/Resources/tree.mp4, Shared.vidtips/Resources/tree.mp4 [VT405]",
          "Tip \"tree\": Could not find the clip tree.mp4"},
         {"picture that is missing", tip("<picture source=\"tree.png\"/>"),
          "4:10: error: \"tree.png\" of the tip \"tree\" is missing: looked for "
          "Garden.vidtips/Resources/tree.png, Shared.vidtips/Resources/tree.png [VT404]",
          noPicture("tree.png")},
         {"package that is missing",
          Garden::file("<vidtip key=\"tree\" title=\"Tree\"/>", "search=\"Shared Oaks\""),
          "2:10: warning: \"search\" names \"Oaks\", and there is no such package [VT401]"},
         {"misspelt package",
          Garden::file("<vidtip key=\"tree\" title=\"Tree\"/>", "search=\"Shared Gaden\""),
          "2:10: warning: \"search\" names \"Gaden\", and there is no such package: did you mean \"Garden\"? "
          "[VT401]"}});
    const QByteArray drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1\" height=\"1\"/>";
    const auto misnamed = [&](const char *name, const QByteArray &source) {
        const QString line =
            QString("%1:4:10: error: \"%2\" of the tip \"tree\" is missing: there is \"oak tree.svg\" "
                    "[VT404]")
                .arg(Garden::control, source);
        const Files files{{Garden::control, tip("<picture source=\"" + source + "\"/>")},
                          {"Garden.vidtips/Resources/oak tree.svg", drawing},
                          {"Garden.vidtips/Resources/oak_tree.txt", "A tree."}};
        Mistakes::add({name, files, line, line, noPicture(source).trimmed()});
    };
    misnamed("misspelt picture", "oaktree.svg");
    misnamed("picture in other letters", "Oak Tree.SVG");
    misnamed("picture with the folder of resources", "Resources/oak tree.svg");
    misnamed("picture with a blank behind its name", "oaktree.svg ");
    misnamed("picture by a path of Windows", "pictures\\oak tree.svg");
    const auto elsewhere = [](const char *name, const QByteArray &source, const QString &reason,
                              const QString &host, const Files &others = {}) {
        Files files = others;
        files.insert(Garden::control, tip("<picture source=\"" + source + "\"/>"));
        const QString line =
            QString("%1:4:10: warning: \"%2\" of the tip \"tree\" %3: put the file into the package [VT411]")
                .arg(Garden::control, source, reason);
        Mistakes::add({name, files, line, line, host});
    };
    elsewhere("absolute path", "/nowhere/tree.png", "is a path of this machine",
              noPicture("/nowhere/tree.png"));
    elsewhere("absolute path of Windows", "C:\\nowhere\\tree.png", "is a path of this machine",
              noPicture("C:\\nowhere\\tree.png"));
    elsewhere("address of a file", "file:///nowhere/tree.png", "is a path of this machine",
              noPicture("/nowhere/tree.png"));
    elsewhere("address in the network", "https://localhost/tree.png", "is in the network, and is not loaded",
              noPicture("https://localhost/tree.png"));
    elsewhere("path out of the package", "../../tree.svg", "lies outside the package", {},
              {{"tree.svg", drawing}, {"Garden.vidtips/Resources/bush.svg", drawing}});
    const auto swapped = [&](const char *name, const QByteArray &element, const QByteArray &file,
                             const QByteArray &bytes, const QString &finding, const QString &host = {}) {
        const QString line =
            QString("%1:4:%2: warning: %3 [VT412]").arg(Garden::control).arg(element.size() + 3).arg(finding);
        Mistakes::add({name,
                       {{Garden::control, tip('<' + element + " source=\"" + file + "\"/>")},
                        {"Garden.vidtips/Resources/" + file, bytes}},
                       line,
                       line,
                       host});
    };
    swapped("clip that is a picture", "clip", "tree.svg", drawing,
            "\"tree.svg\" is a picture, and this is a \"clip\": did you mean \"picture\"?");
    swapped("picture that is a clip", "picture", "tree.mp4", TestClips::read(TestClips::h264()),
            "\"tree.mp4\" is a clip, and this is a \"picture\": did you mean \"clip\"?",
            "Shared.vidtips/ui/PictureStage.qml:16:5: QML Image: Error decoding: "
            "Garden.vidtips/Resources/tree.mp4: "
            "Unsupported image format");
    const auto folder = [](const char *name, const QByteArray &path, const QString &finding) {
        const Files files{{path + "/Control/Bush.xml", "<vidtips/>"}};
        Mistakes::add({name, files, path + ": warning: " + finding, QString()});
    };
    const QString unknown = QString(Garden::control)
        + ":2:25: warning: \"search\" names \"Oaks\", which is not known, as it has no control file: one "
          "that "
          "holds <vidtips/> will do [VT401]";
    Mistakes::add(
        {"package without a control file",
         {{"Oaks.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem { width: 9; height: 9 }\n"},
          {Garden::control,
           Garden::file("<vidtip key=\"tree\" title=\"Tree\"/>", "locale=\"en_US\" search=\"Shared Oaks\"")}},
         unknown + "\nOaks.vidtips: warning: no control file of the package \"Oaks\" is admitted [VT208]",
         unknown});
    const QString noPackage = "the folder is no package, because its name does not end in \".vidtips\"";
    folder("package with another suffix", "Bush.vidtip", noPackage + ": name it \"Bush.vidtips\" [VT211]");
    folder("package without a suffix", "Bush 1.0", noPackage + ": name it \"Bush 1.0.vidtips\" [VT211]");
    folder("blank behind the suffix", "Bush.vidtips ", noPackage + ": name it \"Bush.vidtips\" [VT211]");
    folder("copy without the suffix", "Garden", noPackage + " [VT211]");
    folder("package in a folder", "Plants/Bush.vidtips",
           "the package lies too deep to be found: move it up, or name \"Plants\" as well [VT212]");
    Mistakes::add(
        {"picture larger than a screen",
         {{"Garden.vidtips/Resources/tree.svg",
           "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8000\" height=\"6000\"/>"}},
         "Garden.vidtips/Resources/tree.svg: warning: the picture is 8000 x 6000 pixels, and screens have "
         "3840 x 2160 at most [VT409]",
         QString()});
}

// Beside the packages, where nobody but the application reads it.
void addKeyDataMistakes()
{
    const auto mistake = [](const char *name, const QByteArray &keyData, const QString &finding) {
        Mistakes::add({name, {{"keys.xml", keyData}}, "keys.xml:" + finding, QString()});
    };
    mistake("key data that is empty", "", " error: the file holds no element [VT804]");
    mistake("key data with a misspelt root", "<vidtipskeys/>",
            "1:1: error: the document element is \"vidtipskeys\": did you mean \"vidtipkeys\"? [VT804]");
    mistake("key data with a misspelt element", "<vidtipkeys>\n<kye name=\"tree\"/></vidtipkeys>",
            "2:1: warning: \"kye\" is not read here: only \"key\" is [VT805]");
    mistake("key data with a misspelt attribute",
            "<vidtipkeys>\n<key name=\"tree\" shrtcut=\"T\"/></vidtipkeys>",
            "2:18: warning: the attribute \"shrtcut\" is not read: did you mean \"shortcut\"? [VT805]");
    mistake("shortcut for a system that there is not",
            "<vidtipkeys>\n<key name=\"tree\" shortcut-mac=\"T\" shortcut-macos=\"T\"/></vidtipkeys>",
            "2:35: warning: the attribute \"shortcut-macos\" is not read: did you mean \"shortcut-mac\"? "
            "[VT805]");
    mistake("key data with a misspelt key of a shortcut",
            "<vidtipkeys>\n<key name=\"tree\" shortcut-mac=\"Comand+T\"/></vidtipkeys>",
            "2:18: warning: there is no key \"Comand\": did you mean \"Command\"? [VT121]");
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
        Mistakes::add({name, withWords(files), line, QString()});
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

const char translations[] = "Garden.vidtips/l10n/Vidtips_de_DE.ts";

// A tip that a catalogue translates, with what translators wrote beside it.
void translationMistake(const char *name, const QByteArray &ts, const QString &finding)
{
    const QByteArray catalogue = TestCatalogue("VidtipsUI")
                                     .add("Tree", "Baum")
                                     .add("More help", "Mehr")
                                     .add("Keep open", "Offen")
                                     .bytes();
    const Files files{{Garden::control,
                       Garden::file("<vidtip key=\"tree\" title=\"Tree\" context=\"VidtipsUI\"/>",
                                    "search=\"Words, Shared\"")},
                      {"Garden.vidtips/l10n/Vidtips_de_DE.qm", catalogue},
                      {translations, ts}};
    const QString line = finding.isEmpty() ? QString() : QString(translations) + ':' + finding;
    Mistakes::add({name, withWords(files), line, line, {}, {}, "de_DE"});
}

QByteArray translated(const QByteArray &messages)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n<TS version=\"2.1\" "
           "language=\"de_DE\">\n<context><name>VidtipsUI</name>\n"
        + messages + "</context>\n</TS>\n";
}

QByteArray message(const QByteArray &source, const QByteArray &translation)
{
    return "<message><source>" + source + "</source>\n<translation>" + translation
        + "</translation></message>\n";
}

// TranslationCheck finds what is between catalogues and the files that they are made from.
void addCatalogueMistakes()
{
    translationMistake(
        "catalogue older than its translations",
        translated(message("More help", "Mehr") + message("Tree", "Laubbaum")),
        "8: warning: Vidtips_de_DE.qm is older than this file: it has \"Baum\" for \"Tree\" [VT707]");
    translationMistake(
        "catalogue that lacks translations",
        translated(message("Bush", "Busch") + message("Tree", "Laubbaum")),
        "6: warning: Vidtips_de_DE.qm is older than this file: it lacks \"Bush\", and so on, 2 "
        "in all [VT707]");
    translationMistake("translations with an ampersand", translated(message("Tree", "Baum & Strauch")),
                       "6:21: error: Expected '#' or '[a-zA-Z]', but got ' ': write \"&amp;\" for \"&\" "
                       "[VT708]");
    translationMistake(
        "translated placeholder",
        translated(message("At %(place)s", "Bei %(Ort)s") + message("In %(place)s", "In")
                   + message("%(a)s, %(b)s", "%(b)s, %(a)s")),
        "6: warning: Vidtips_de_DE.qm is older than this file: it lacks \"At %(place)s\", and so "
        "on, 3 in all [VT707]\nGarden.vidtips/l10n/Vidtips_de_DE.ts:6: warning: the translation "
        "of \"At %(place)s\" has \"%(Ort)s\" in place of \"%(place)s\" "
        "[VT711]\nGarden.vidtips/l10n/Vidtips_de_DE.ts:8: warning: the translation of \"In "
        "%(place)s\" has no placeholder in place of \"%(place)s\" [VT711]");
    translationMistake("translations of another kind", "<xliff/>",
                       "1:1: error: the document element of translations is \"TS\", not \"xliff\" [VT708]");
    Mistakes::add(
        {"language without a catalogue",
         {{Garden::control,
           Garden::file("<vidtip key=\"tree\" title=\"Tree\" context=\"G\"/>", "search=\"Shared\"")}},
         {},
         QString(Garden::control)
             + ":3:1: warning: the texts of this tip are shown as they are written: there is no "
               "Vidtips_fr_FR.qm [VT701]",
         {},
         {},
         "fr_FR"});
    const QString stray = "Garden.vidtips/L10N/Vidtips_de_DE.ts";
    Mistakes::add({"catalogues in a folder of another name",
                   {{stray, translated(message("Tree", "Baum"))}},
                   stray
                       + ": warning: no catalogue is looked for here: move it to the folder "
                         "\"Garden.vidtips/l10n\" [VT712]",
                   {}});
    const QString damaged =
        "Garden.vidtips/l10n/Vidtips_de_DE.qm: error: the catalogue does not load [VT703]";
    Mistakes::add({"damaged catalogue",
                   withWords({{Garden::control,
                               Garden::file("<vidtip key=\"tree\" title=\"Tree\" context=\"G\"/>",
                                            "search=\"Words, Shared\"")},
                              {"Garden.vidtips/l10n/Vidtips_de_DE.qm", "no catalogue"}}),
                   damaged,
                   damaged,
                   {},
                   {},
                   "de_DE"});
    Mistakes::addInControlFile(
        {{"folder of translations that is missing",
          Garden::file("<vidtip key=\"tree\" title=\"Tree\" l10n_name=\"texts\"/>"),
          "3:33: warning: there is no folder \"texts\" with translations: looked for Garden.vidtips/texts, "
          "Shared.vidtips/texts [VT709]"},
         {"folder of translations in other letters",
          Garden::file("<vidtip key=\"tree\" title=\"Tree\"/>",
                       "locale=\"en_US\" search=\"Shared\" l10n_name=\"control\""),
          "2:41: warning: there is no folder \"control\" with translations: there is \"Control\" [VT709]"}});
}

void addSchemaMistakes()
{
    const auto mistake = [](const char *name, const QByteArray &file, const QByteArray &schema,
                            const QString &finding) {
        const QString path = "Garden.vidtips/ui/" + QString::fromLatin1(file);
        Mistakes::add(
            {name,
             {{"Garden.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem { width: 20; height: 10 }\n"},
              {path, schema}},
             path + finding,
             path + finding});
    };
    const QByteArray right = "<schema><element name=\"vidtip\"/></schema>";
    const QString misnamed =
        ": warning: the file is not read: the schema beside a user interface has the name "
        "\"schema.xml\" [VT118]";
    mistake("schema in other letters", "Schema.xml", right, misnamed);
    mistake("misspelt schema", "shema.xml", right, misnamed);
    mistake("schema with another ending", "schema.xsd", right, misnamed);
    mistake("misspelt element of a schema", "schema.xml",
            "<schema>\n<element name=\"vidtip\">\n<elemnt name=\"summary\"/></element></schema>",
            ":3:1: error: a schema is made of \"element\" and \"attribute\", not \"elemnt\" [VT115]");
}

} // namespace

void Mistakes::addInPackages()
{
    addFileMistakes();
    addKeyDataMistakes();
    addTranslationMistakes();
    addCatalogueMistakes();
    addSchemaMistakes();
}
