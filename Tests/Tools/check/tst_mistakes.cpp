#include "Mistakes.h"
#include "ToolCall.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtTest/QtTest>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

/** Makes an author's mistakes one by one, and reads what check, preview and a host say of each. */
class tst_Mistakes : public QObject
{
    Q_OBJECT

private slots:
    void saysNothingOfWhatIsRight();
    void check_data();
    void check();
    void preview_data();
    void preview();
    void host_data();
    void host();
};

namespace {

const QStringList screenshot{"preview", "--delay", "0", "--screenshot", "tip.png", "tree", "."};

QString withoutSummary(const QString &output)
{
    return output.left(output.lastIndexOf('\n', output.size() - 2)).trimmed();
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
    const ToolCall preview(screenshot, packages.path());
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
    const ToolCall call({"check", "."}, packages.path());
    QCOMPARE(withoutSummary(call.output), mistake.check);
    QCOMPARE(call.errors, QString());
    QCOMPARE(call.exitCode, 1);
}

void tst_Mistakes::preview_data()
{
    check_data();
}

void tst_Mistakes::preview()
{
    QFETCH(Mistake, mistake);
    const CheckPackages packages(Garden::with(mistake.files));
    const ToolCall call(screenshot, packages.path());
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
    context.set(ContentLocale, "en_US");
    VTIndex index(&context, {});
    GardenHost host(context, &index, packages.path());
    // What is wrong with a clip comes from its thread.
    QTRY_COMPARE_WITH_TIMEOUT(host.heard(), mistake.host, 30000);
}

QTEST_MAIN(tst_Mistakes)

#include "tst_mistakes.moc"
