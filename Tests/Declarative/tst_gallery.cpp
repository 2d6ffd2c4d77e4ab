#include "TestPaths.h"
#include "galleryscene.h"
#include "galleryvalue.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>
#include <QtGui/QFont>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

/**
 * Plays the recorded scenes of gallery/, defects/ and the folders of scenes/ and compares every value, line,
 * message and picture.
 *
 * galleryscenes.json lists the scenes of gallery/ by element family. gallerydifferences.json lists what the
 * engine, not an element, makes different, one entry for each difference with its reason; an entry that no
 * longer differs fails the scene. The option `--family NAME` limits the run to one family: one of
 * galleryscenes.json, or a folder (`defects`, `scenes/text`); `--scene NAME` plays that scene alone.
 */
class tst_Gallery : public QObject
{
    Q_OBJECT

public:
    static QString family;
    static QString scene;

private slots:
    void initTestCase();
    void scenes_data();
    void scenes();

private:
    void addScene(const QString &folder, const QString &name);
    void addScenes(const QString &folder);
    void playTrace(GalleryScene *scene, const QJsonArray &trace, const QJsonArray &steps);
    void compareRecord(GalleryScene *scene, const QJsonObject &record, const QJsonValue &result);
    void updateExpected(const QJsonObject &record);
    void compareObjects(GalleryScene *scene);
    void compareProperties(GalleryScene *scene, QObject *object, const QString &name);
    void compareErrors(GalleryScene *scene, const QJsonObject &recorded);
    void compareMessages(const QString &what, const QJsonArray &recorded, const QJsonArray &seen);
    void comparePicture(GalleryScene *scene, const QString &file);
    void differs(const QString &what, const QJsonValue &recorded, const QJsonValue &seen);
    void finish();

    QJsonArray m_differences;
    QVector<QJsonObject> m_allowed; ///< differences of the scene that were not met yet
    QStringList m_unexpected;
    QDir m_folder; ///< where the scene and its recording are
    QString m_scene;
    int m_record = 0;
    bool m_hasText = false;
    QHash<QString, QJsonObject> m_expected; ///< properties of the named objects by now
    QHash<QString, QString> m_types;
    QHash<QString, QJsonValue> m_reported; ///< what differed in the record before, by what
    QJsonArray m_allWarnings;
};

QString tst_Gallery::family;
QString tst_Gallery::scene;

namespace {

const QDir sets(TestPaths::source("Tests/Declarative"));

/** The folders of recorded scenes besides gallery/. */
QStringList sceneFolders()
{
    QStringList folders{QStringLiteral("defects")};
    const auto families =
        QDir(sets.filePath(QStringLiteral("scenes"))).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : families)
        folders.append(QLatin1String("scenes/") + name);
    return folders;
}

/** The folder with the scene @p name, whose name is given once; empty when there is none. */
QString folderOf(const QString &name)
{
    const QStringList folders = QStringList{QStringLiteral("gallery")} + sceneFolders();
    for (const QString &folder : folders) {
        if (sets.exists(folder + QLatin1Char('/') + name + QLatin1String(".qml")))
            return folder;
    }
    return {};
}

QJsonDocument readJson(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isNull())
        qFatal("%s: %s", qPrintable(path), qPrintable(error.errorString()));
    return document;
}

/** Whether words of @p text are the script engine's own. */
bool isScriptError(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(Error|TypeError|ReferenceError|SyntaxError|Unable to assign)\\b"));
    return pattern.match(text).hasMatch();
}

bool sameMessage(const QJsonObject &recorded, const QJsonObject &seen)
{
    const QString words = recorded.value(QLatin1String("text")).toString();
    const QString seenWords = seen.value(QLatin1String("text")).toString();
    if (recorded.value(QLatin1String("file")) != seen.value(QLatin1String("file"))
        || recorded.value(QLatin1String("line")) != seen.value(QLatin1String("line"))) {
        return false;
    }
    if (isScriptError(words))
        return isScriptError(seenWords);
    const int column = recorded.value(QLatin1String("column")).toInt(-1);
    return words == seenWords && (column < 0 || column == seen.value(QLatin1String("column")).toInt());
}

/** The share of pixels in which a channel of @p a and @p b is more than @p limit apart. */
double shareApart(const QImage &a, const QImage &b, int limit)
{
    int apart = 0;
    for (int y = 0; y < a.height(); ++y) {
        const auto *left = reinterpret_cast<const QRgb *>(a.constScanLine(y));
        const auto *right = reinterpret_cast<const QRgb *>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const int most =
                std::max({qAbs(qRed(left[x]) - qRed(right[x])), qAbs(qGreen(left[x]) - qGreen(right[x])),
                          qAbs(qBlue(left[x]) - qBlue(right[x])), qAbs(qAlpha(left[x]) - qAlpha(right[x]))});
            apart += most > limit;
        }
    }
    return double(apart) / qMax(1, a.width() * a.height());
}

} // namespace

void tst_Gallery::initTestCase()
{
    m_differences = readJson(sets.filePath(QStringLiteral("gallerydifferences.json"))).array();
    for (const QJsonValue &entry : qAsConst(m_differences)) {
        const QJsonObject object = entry.toObject();
        QVERIFY2(!object.value(QLatin1String("reason")).toString().isEmpty(),
                 qPrintable(GalleryValue::text(entry)));
        QVERIFY2(!folderOf(object.value(QLatin1String("scene")).toString()).isEmpty(),
                 qPrintable(GalleryValue::text(entry)));
    }
}

void tst_Gallery::scenes_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");
    if (!scene.isEmpty())
        return addScene(folderOf(scene), scene);
    const QStringList folders = sceneFolders();
    if (folders.contains(family))
        return addScenes(family);
    const QJsonObject families = readJson(sets.filePath(QStringLiteral("galleryscenes.json"))).object();
    if (!family.isEmpty() && !families.contains(family))
        qFatal("there is no family %s", qPrintable(family));
    for (auto it = families.begin(); it != families.end(); ++it) {
        if (!family.isEmpty() && it.key() != family)
            continue;
        const auto names = it.value().toArray();
        for (const QJsonValue &name : names)
            addScene(QStringLiteral("gallery"), name.toString());
    }
    if (family.isEmpty())
        std::for_each(folders.begin(), folders.end(), [this](const QString &folder) { addScenes(folder); });
}

void tst_Gallery::addScene(const QString &folder, const QString &name)
{
    QTest::newRow(qPrintable(name)) << folder << name;
}

void tst_Gallery::addScenes(const QString &folder)
{
    const auto files = QDir(sets.filePath(folder)).entryList({QStringLiteral("*.qml")}, QDir::Files);
    for (const QString &file : files)
        addScene(folder, file.chopped(int(qstrlen(".qml"))));
}

void tst_Gallery::scenes()
{
    QFETCH(QString, folder);
    QFETCH(QString, name);
    m_folder = QDir(sets.filePath(folder));
    QVERIFY2(m_folder.exists(name + QLatin1String(".qml")), "no such scene");
    m_scene = name;
    m_record = 0;
    m_expected.clear();
    m_types.clear();
    m_reported.clear();
    m_unexpected.clear();
    m_allWarnings = {};
    m_allowed.clear();
    for (const QJsonValue &entry : qAsConst(m_differences)) {
        if (entry.toObject().value(QLatin1String("scene")) == name)
            m_allowed.append(entry.toObject());
    }
    QFile source(m_folder.filePath(name + QLatin1String(".qml")));
    QVERIFY(source.open(QIODevice::ReadOnly));
    m_hasText = QRegularExpression(QStringLiteral("\\b(Text|TextInput|TextEdit|Badge)\\b"))
                    .match(QString::fromUtf8(source.readAll()))
                    .hasMatch();

    const QString base = m_folder.filePath(name);
    const QJsonArray trace = readJson(base + QLatin1String(".trace.json")).array();
    const QJsonArray steps = readJson(base + QLatin1String(".steps.json")).array();
    const QJsonObject errors = readJson(base + QLatin1String(".errors.json")).object();
    QVERIFY2(!trace.isEmpty() || !errors.isEmpty(), "the scene has no recording");
    {
        GalleryScene scene(m_folder, name);
        scene.load();
        if (!trace.isEmpty())
            playTrace(&scene, trace, steps);
        if (!errors.isEmpty())
            compareErrors(&scene, errors);
    }
    finish();
}

void tst_Gallery::playTrace(GalleryScene *scene, const QJsonArray &trace, const QJsonArray &steps)
{
    if (!scene->isReady()) {
        differs(QStringLiteral("errors"), QJsonArray(), scene->errors());
        return;
    }
    compareRecord(scene, trace.first().toObject(), QJsonValue::Undefined);
    for (const QJsonValue &value : steps) {
        const QJsonObject step = value.toObject();
        if (step.contains(QLatin1String("grab"))) {
            comparePicture(scene, step.value(QLatin1String("grab")).toString());
            continue;
        }
        const QJsonValue result = scene->play(step);
        if (step.value(QLatin1String("quiet")).toBool())
            continue;
        GalleryScene::wait(20);
        ++m_record;
        const QJsonObject record = trace.at(m_record).toObject();
        if (record.value(QLatin1String("step")) != step)
            qFatal("%s: record %d is not of this step", qPrintable(m_scene), m_record);
        compareRecord(scene, record, result);
    }
    // Where the values tell as much there is no picture.
    const QString picture = m_scene + QLatin1String(".png");
    if (m_folder.exists(picture))
        comparePicture(scene, picture);
}

void tst_Gallery::compareRecord(GalleryScene *scene, const QJsonObject &record, const QJsonValue &result)
{
    updateExpected(record);
    compareObjects(scene);
    const QJsonValue recorded = record.value(QLatin1String("result"));
    const QJsonValue seen = recorded.isUndefined() && result.isNull() ? recorded : result;
    if (!GalleryValue::same(recorded, seen, 0.0201))
        differs(QStringLiteral("result"), recorded, seen);
    const QJsonArray log = scene->takeLog();
    if (log != record.value(QLatin1String("log")).toArray())
        differs(QStringLiteral("log"), record.value(QLatin1String("log")).toArray(), log);
    const QJsonArray warnings = scene->takeWarnings();
    for (const QJsonValue &warning : warnings)
        m_allWarnings.append(warning);
    // Messages of scenes made to show messages are compared for the whole run.
    if (!m_scene.startsWith(QLatin1String("err_")))
        compareMessages(QStringLiteral("warnings"), record.value(QLatin1String("warnings")).toArray(),
                        warnings);
}

void tst_Gallery::updateExpected(const QJsonObject &record)
{
    const auto removed = record.value(QLatin1String("removed")).toArray();
    for (const QJsonValue &name : removed)
        m_expected.remove(name.toString());
    for (const char *part : {"objects", "changed"}) {
        const QJsonObject objects = record.value(QLatin1String(part)).toObject();
        for (auto object = objects.begin(); object != objects.end(); ++object) {
            const QJsonObject entry = object.value().toObject();
            if (entry.contains(QLatin1String("type"))) {
                m_types[object.key()] = entry.value(QLatin1String("type")).toString();
                m_expected.remove(object.key());
            }
            QJsonObject &expected = m_expected[object.key()];
            const QJsonObject properties = entry.value(QLatin1String("props")).toObject();
            for (auto property = properties.begin(); property != properties.end(); ++property)
                expected.insert(property.key(), property.value());
        }
    }
}

void tst_Gallery::compareObjects(GalleryScene *scene)
{
    const QHash<QString, QObject *> objects = scene->objects();
    QStringList names = m_types.keys();
    names.sort();
    QHash<QString, QJsonValue> reported;
    std::swap(reported, m_reported);
    const auto presence = [&](const QString &name, bool recorded, bool seen) {
        m_reported.insert(name, seen);
        if (!reported.contains(name))
            differs(name, recorded, seen);
    };
    for (const QString &name : qAsConst(names)) {
        QObject *object = objects.value(name);
        const bool recorded = m_expected.contains(name);
        if (recorded != bool(object)) {
            presence(name, recorded, bool(object));
            continue;
        }
        if (!object)
            continue;
        if (GalleryScene::typeName(object) != m_types.value(name) && m_record == 0)
            differs(name + QLatin1String(".type"), m_types.value(name), GalleryScene::typeName(object));
        compareProperties(scene, object, name);
    }
    // A difference that stays is reported once, and again when either side changes.
    for (auto it = m_reported.begin(); it != m_reported.end(); ++it) {
        if (it.key().contains(QLatin1Char('.'))
            && reported.value(it.key(), QJsonValue::Undefined) != it.value()) {
            const QJsonArray both = it.value().toArray();
            differs(it.key(), both.at(0), both.at(1));
        }
    }
}

void tst_Gallery::compareProperties(GalleryScene *scene, QObject *object, const QString &name)
{
    const QJsonObject recorded = m_expected.value(name);
    // Read as the recording was, in the order in which the types declare them: to ask a text for its implicit
    // width lays it out anew.
    const auto place = [object](const QString &property) {
        const QByteArray first = property.section(QLatin1Char('.'), 0, 0).toLatin1();
        return object->metaObject()->indexOfProperty(first);
    };
    QStringList properties = recorded.keys();
    std::stable_sort(properties.begin(), properties.end(),
                     [&](const QString &a, const QString &b) { return place(a) < place(b); });
    for (const QString &property : qAsConst(properties)) {
        QJsonValue seen = scene->property(object, property);
        if (seen.isUndefined())
            seen = QJsonValue::Null;
        if (!GalleryValue::same(recorded.value(property), seen, 0.0201))
            m_reported.insert(name + QLatin1Char('.') + property, QJsonArray{recorded.value(property), seen});
    }
}

void tst_Gallery::compareErrors(GalleryScene *scene, const QJsonObject &recorded)
{
    const bool isReady = recorded.value(QLatin1String("status")) == QLatin1String("ready");
    if (isReady != scene->isReady())
        differs(QStringLiteral("status"), isReady, scene->isReady());
    compareMessages(QStringLiteral("errors"), recorded.value(QLatin1String("errors")).toArray(),
                    scene->errors());
    const QJsonArray late = scene->takeWarnings();
    for (const QJsonValue &warning : late)
        m_allWarnings.append(warning);
    compareMessages(QStringLiteral("allWarnings"), recorded.value(QLatin1String("warnings")).toArray(),
                    m_allWarnings);
}

void tst_Gallery::compareMessages(const QString &what, const QJsonArray &recorded, const QJsonArray &seen)
{
    // What matches is left out of the difference: its words may hold addresses.
    QJsonArray missing, extra = seen;
    for (const QJsonValue &message : recorded) {
        const auto it = std::find_if(extra.begin(), extra.end(), [&](const QJsonValue &candidate) {
            return sameMessage(message.toObject(), candidate.toObject());
        });
        if (it == extra.end())
            missing.append(message);
        else
            extra.erase(it);
    }
    if (!missing.isEmpty() || !extra.isEmpty())
        differs(what, missing, extra);
}

void tst_Gallery::comparePicture(GalleryScene *scene, const QString &file)
{
    const QImage recorded = QImage(m_folder.filePath(file)).convertToFormat(QImage::Format_ARGB32);
    QVERIFY2(!recorded.isNull(), qPrintable(file));
    const QImage seen = scene->picture();
    QString how;
    if (recorded.size() != seen.size()) {
        how = QStringLiteral("%1x%2").arg(seen.width()).arg(seen.height());
    } else if (m_hasText) {
        const double apart = shareApart(recorded, seen, 32);
        if (apart > 0.02)
            how = QStringLiteral("%1 % apart by 32").arg(apart * 100, 0, 'f', 2);
    } else {
        const double apart = shareApart(recorded, seen, 8), far = shareApart(recorded, seen, 64);
        if (apart > 0.005 || far > 0.001)
            how = QStringLiteral("%1 % apart by 8, %2 % by 64")
                      .arg(apart * 100, 0, 'f', 2)
                      .arg(far * 100, 0, 'f', 2);
    }
    if (how.isEmpty())
        return;
    seen.save(TestPaths::built("Tests/Declarative/seen_") + file);
    differs(file, QStringLiteral("%1x%2").arg(recorded.width()).arg(recorded.height()), how);
}

void tst_Gallery::differs(const QString &what, const QJsonValue &recorded, const QJsonValue &seen)
{
    const auto written = [](const QJsonValue &value) { return value.isUndefined() ? QJsonValue() : value; };
    const auto it = std::find_if(m_allowed.begin(), m_allowed.end(), [&](const QJsonObject &entry) {
        return entry.value(QLatin1String("record")).toInt() == m_record
            && entry.value(QLatin1String("what")) == what
            && GalleryValue::same(entry.value(QLatin1String("recorded")), written(recorded), 0.0201)
            && GalleryValue::same(entry.value(QLatin1String("seen")), written(seen), 0.0201);
    });
    if (it != m_allowed.end()) {
        m_allowed.erase(it);
        return;
    }
    // Written as an entry of gallerydifferences.json would be.
    const QJsonObject entry{{QStringLiteral("scene"), m_scene},
                            {QStringLiteral("record"), m_record},
                            {QStringLiteral("what"), what},
                            {QStringLiteral("recorded"), written(recorded)},
                            {QStringLiteral("seen"), written(seen)}};
    m_unexpected.append(GalleryValue::text(entry));
}

void tst_Gallery::finish()
{
    for (const QJsonObject &entry : qAsConst(m_allowed))
        m_unexpected.append(QStringLiteral("no longer differs: ") + GalleryValue::text(entry));
    for (const QString &line : qAsConst(m_unexpected))
        qWarning().noquote() << line;
    QVERIFY2(m_unexpected.isEmpty(), qPrintable(QStringLiteral("%1 differences").arg(m_unexpected.count())));
}

/** The value of the option @p name, which is taken out of @p arguments. */
static QString takeOption(QStringList *arguments, const QString &name)
{
    const int at = arguments->indexOf(name);
    if (at < 1 || at + 1 >= arguments->count())
        return {};
    arguments->removeAt(at);
    return arguments->takeAt(at);
}

int main(int argc, char **argv)
{
    qputenv("FONTCONFIG_FILE", QFile::encodeName(sets.filePath(QStringLiteral("gallery/fonts.conf"))));
    qputenv("QT_FONT_DPI", "96");
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "UTC");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setCursorFlashTime(0);
    QApplication::setStartDragDistance(10);
    QApplication::setDoubleClickInterval(400);
    QStringList arguments = app.arguments();
    tst_Gallery::family = takeOption(&arguments, QStringLiteral("--family"));
    tst_Gallery::scene = takeOption(&arguments, QStringLiteral("--scene"));
    tst_Gallery test;
    return QTest::qExec(&test,
                        QStringList{arguments.at(0), QStringLiteral("-maxwarnings"), QStringLiteral("0")}
                            + arguments.mid(1));
}
#include "tst_gallery.moc"
