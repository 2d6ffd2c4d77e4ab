#include "Mistakes.h"
#include "ToolCall.h"
#include "findings/FindingReport.h"
#include "shared/Content.h"
#include "trial/Trial.h"
#include "trial/TrialFindings.h"
#include "trial/TrialPlan.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

/** Makes an author's mistakes one by one, and reads what check, check --run, preview and a host say of each.
 */
class tst_Mistakes : public QObject
{
    Q_OBJECT

private slots:
    void saysNothingOfWhatIsRight();
    void check_data();
    void check();
    void run_data();
    void run();
    void preview_data();
    void preview();
    void host_data();
    void host();

private:
    QMap<QString, QString> m_reports; ///< What a check says of each mistake.
};

namespace {

QStringList screenshotIn(const QString &locale)
{
    const QStringList asked = locale.isEmpty() ? QStringList() : QStringList{"--locale", locale};
    return QStringList{"preview", "--delay", "0", "--screenshot", "tip.png", "tree", "."} + asked;
}

QString linesOf(const QVector<Finding> &findings, const QString &folder)
{
    QStringList lines;
    for (const Finding &finding : findings)
        lines << FindingReport::line(finding).remove(folder + '/');
    return lines.join('\n');
}

const char folder[] = "/folder/of/the/packages"; // in what is remembered
const QStringList checkAll{"check", "--json", "."};

QVector<Finding> findingsIn(const QString &report)
{
    QVector<Finding> findings;
    const QJsonObject object = QJsonDocument::fromJson(report.toUtf8()).object();
    for (const QJsonValue value : object.value("findings").toArray())
        findings << TrialFindings::fromJson(value.toObject());
    return findings;
}

/** What the processes of a run find, by one after the other in this one. */
TrialFindings seenIn(const QString &folder)
{
    TrialFindings seen;
    Content content;
    content.load({folder});
    const QVector<TrialTip> plan = TrialPlan::of(content, "en_US");
    int number = 0;
    Trial trial(content, {}, [&](const Finding &finding) { seen.add(finding, plan.at(number), number); });
    for (; number < plan.size(); ++number)
        trial.show(plan.at(number));
    return seen;
}

/** A host that hears everything, and shows the tip of the tree. */
class GardenHost : public VTInterface
{
public:
    explicit GardenHost(VTContext &context, VTIndex *index, const QString &folder)
        : VTInterface(context, {folder}, index)
        , m_folder(folder)
    {
        Diagnostics::capture();
        Diagnostics::take();
        m_isShown = show("tree", {}, nullptr);
        if (m_isShown)
            expand();
    }

    void handleMessage(VTMessageType type, const QString &message) override
    {
        // Of every file that is read, there is a message that it is.
        if (type != VTMessageInformation)
            m_messages << message;
    }

    /** What has been said so far, each once. */
    QString heard()
    {
        m_messages += Diagnostics::take();
        QStringList lines;
        for (const QString &message : qAsConst(m_messages)) {
            if (!isSaidOtherwise(message))
                lines << QString(message)
                             .remove("file://")
                             .remove(m_folder + '/')
                             .section('\n', 0, 0)
                             .trimmed();
        }
        if (!m_isShown)
            lines << "no tip";
        lines.removeDuplicates();
        return lines.join('\n');
    }

private:
    // As under a pointer that rests: pictures and clips are shown from then on.
    void expand()
    {
        QObject *const root = manager()->widget()->view()->rootObject();
        if (root && root->property("hasMore").toBool())
            QMetaObject::invokeMethod(root, "expand");
    }

    // The same comes once more with the name of the file; and what a window cannot do without a display.
    static bool isSaidOtherwise(const QString &message)
    {
        static const QRegularExpression other("^(Fatal error at|QML Warning|Error \\d|This plugin)");
        return other.match(message).hasMatch();
    }

    QString m_folder;
    QStringList m_messages;
    bool m_isShown = false;
};

} // namespace

void tst_Mistakes::saysNothingOfWhatIsRight()
{
    const CheckPackages packages(Garden::with({}));
    QCOMPARE(ToolCall({"check", "."}, packages.path()).output,
             QString("2 packages, 2 control files: nothing found\n"));
    const ToolCall preview(screenshotIn("en_US"), packages.path());
    QCOMPARE(preview.errors, QString());
    QCOMPARE(preview.exitCode, 0);
}

void tst_Mistakes::check_data()
{
    QTest::addColumn<Mistake>("mistake");
    for (const Mistake &mistake : Mistakes::all())
        QTest::newRow(mistake.name) << mistake;
}

void tst_Mistakes::check()
{
    QFETCH(Mistake, mistake);
    const CheckPackages packages(Garden::with(mistake.files));
    const ToolCall call(checkAll, packages.path());
    QCOMPARE(linesOf(findingsIn(call.output), packages.path()), mistake.check);
    QCOMPARE(call.errors, QString());
    QCOMPARE(call.exitCode, mistake.check.isEmpty() ? 0 : 1);
    m_reports.insert(mistake.name, QString(call.output).replace(packages.path(), folder));
}

void tst_Mistakes::run_data()
{
    check_data();
}

void tst_Mistakes::run()
{
    QFETCH(Mistake, mistake);
    const CheckPackages packages(Garden::with(mistake.files));
    Findings findings;
    // A check takes longer than all else, and its report has been read already, unless this runs alone.
    QString report = m_reports.value(mistake.name);
    report.replace(folder, packages.path());
    if (report.isEmpty())
        report = ToolCall(checkAll, packages.path()).output;
    const QVector<Finding> known = findingsIn(report);
    for (const Finding &finding : known)
        findings.add(finding.code, finding.file, finding.position, finding.message);
    seenIn(packages.path()).addTo(findings);
    QVector<Finding> others;
    for (const Finding &finding : findings.sorted()) {
        if (!known.contains(finding))
            others << finding;
    }
    QCOMPARE(linesOf(others, packages.path()), mistake.run);
}

void tst_Mistakes::preview_data()
{
    check_data();
}

void tst_Mistakes::preview()
{
    QFETCH(Mistake, mistake);
    const CheckPackages packages(Garden::with(mistake.files));
    const ToolCall call(screenshotIn(mistake.locale), packages.path());
    QCOMPARE(call.errors.trimmed(), mistake.preview);
    const int code = mistake.preview.contains("vidtips: ") ? 2 : mistake.preview.isEmpty() ? 0 : 1;
    QCOMPARE(call.exitCode, code);
}

void tst_Mistakes::host_data()
{
    check_data();
}

void tst_Mistakes::host()
{
    QFETCH(Mistake, mistake);
    const CheckPackages packages(Garden::with(mistake.files));
    VTContext context;
    context.set(MessageThreshold, int(VTMessageDebug));
    context.set(ContentLocale, mistake.locale);
    VTIndex index(&context, {});
    GardenHost host(context, &index, packages.path());
    // What is wrong with a clip comes from its thread.
    QTRY_COMPARE_WITH_TIMEOUT(host.heard(), mistake.host, 30000);
}

QTEST_MAIN(tst_Mistakes)

#include "tst_mistakes.moc"
