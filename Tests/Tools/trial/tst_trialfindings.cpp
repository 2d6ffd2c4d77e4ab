#include "trial/TrialFindings.h"

#include <QtCore/QJsonObject>
#include <QtTest/QTest>

namespace {

const Finding cut{"VT902", "/ui/Tip.qml", {3, 5}, "the text is cut"};

QStringList messages(const TrialFindings &found, Findings findings = {})
{
    QStringList messages;
    found.addTo(findings);
    const QVector<Finding> sorted = findings.sorted();
    for (const Finding &finding : sorted)
        messages << finding.code + ' ' + finding.message;
    return messages;
}

} // namespace

/** What is said of mistakes that many tips have. */
class tst_TrialFindings : public QObject
{
    Q_OBJECT

private slots:
    void namesTheFirstTipAndCountsOthers();
    void keepsPlacesApart();
    void leavesOutWhatIsKnown_data();
    void leavesOutWhatIsKnown();
    void travelsAsJson();
};

void tst_TrialFindings::namesTheFirstTipAndCountsOthers()
{
    TrialFindings found;
    found.add(cut, {"b", "de_DE", true, true, {}}, 7);
    QCOMPARE(messages(found), QStringList("VT902 the text is cut (\"b\", de_DE, simple, dark)"));
    found.add(cut, {"b", "de_DE", false, true, {}}, 4);
    QCOMPARE(messages(found), QStringList("VT902 the text is cut (\"b\", de_DE, dark)"));
    found.add(cut, {"a", "en_US", false, false, {}}, 2);
    found.add(cut, {"a", "de_DE", false, false, {}}, 5);
    QCOMPARE(messages(found), QStringList("VT902 the text is cut (\"a\", en_US, and another tip)"));
    found.add(cut, {"c", "en_US", false, false, {}}, 3);
    QCOMPARE(messages(found), QStringList("VT902 the text is cut (\"a\", en_US, and 2 other tips)"));
}

void tst_TrialFindings::keepsPlacesApart()
{
    TrialFindings found;
    const TrialTip tip{"a", "en_US", false, false, {}};
    found.add(cut, tip, 0);
    found.add({"VT903", cut.file, cut.position, "other code"}, tip, 0);
    found.add({cut.code, "/ui/Other.qml", cut.position, "other file"}, tip, 0);
    found.add({cut.code, cut.file, {4, 5}, "other line"}, tip, 0);
    found.add({cut.code, cut.file, {3, 6}, "other column"}, tip, 0);
    QCOMPARE(messages(found).size(), 5);
}

void tst_TrialFindings::leavesOutWhatIsKnown_data()
{
    QTest::addColumn<QString>("known");
    QTest::addColumn<QString>("found");
    QTest::addColumn<int>("line");
    QTest::addColumn<bool>("isLeftOut");
    QTest::newRow("complaint") << "VT607"
                               << "VT607" << 3 << true;
    QTest::newRow("complaint elsewhere") << "VT607"
                                         << "VT607" << 4 << false;
    QTest::newRow("complaint of a file that is missing") << "VT605"
                                                         << "VT607" << 3 << true;
    QTest::newRow("file that is missing") << "VT605"
                                          << "VT901" << 3 << true;
    QTest::newRow("picture that is missing") << "VT404"
                                             << "VT901" << 3 << true;
    QTest::newRow("picture missing elsewhere") << "VT404"
                                               << "VT901" << 4 << false;
    QTest::newRow("file with errors") << "VT601"
                                      << "VT900" << 9 << true;
    QTest::newRow("file with warnings") << "VT607"
                                        << "VT900" << 9 << false;
    QTest::newRow("another kind") << "VT604"
                                  << "VT909" << 3 << false;
}

void tst_TrialFindings::leavesOutWhatIsKnown()
{
    QFETCH(QString, known);
    QFETCH(QString, found);
    QFETCH(int, line);
    QFETCH(bool, isLeftOut);
    Findings findings;
    findings.add(known, cut.file, cut.position, "known");
    TrialFindings trial;
    trial.add({found, cut.file, {line, 1}, "found"}, {"a", "en_US", false, false, {}}, 0);
    QCOMPARE(messages(trial, findings).size(), isLeftOut ? 1 : 2);
}

void tst_TrialFindings::travelsAsJson()
{
    QCOMPARE(TrialFindings::fromJson(TrialFindings::toJson(cut)), cut);
}

QTEST_APPLESS_MAIN(tst_TrialFindings)
#include "tst_trialfindings.moc"
