// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "errortrap.h"

#include "hostmodel.h"
#include "textbox.h"
#include "usersim.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QTest>
#include <QVBoxLayout>

#include <stdexcept>

using namespace VandrelPensioen;
using VandrelApplication::ErrorRecord;
using VandrelApplication::HostError;

namespace {

// The smallest host: no case open, every error report kept for the test to read.
class FakeApplication : public VandrelApplication::Application
{
public:
    VandrelApplication::DossierPtr Get_Dossier() override { return nullptr; }
    VandrelApplication::ParametersPtr Get_Parameters() override { return nullptr; }
    void ReportError(ErrorRecord &record) override
    {
        reports.append(record);
        addresses.append(&record);
        cursorWhenReported.append(QGuiApplication::overrideCursor() != nullptr);
    }
    QString Title() const override { return QStringLiteral("Zarnoveld Advies"); }
    QIcon Icon() const override { return {}; }

    QList<ErrorRecord> reports;
    QList<const ErrorRecord *> addresses;
    QList<bool> cursorWhenReported;
};

} // namespace

class TestErrorTrap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostErrorFillsRecordAndReportsToHost();
    void callerGoesOnAfterError();
    void bodyWithoutErrorReportsNothing();
    void recordReusedAcrossErrors();
    void overrideCursorRestored();
    void nestedProcedureNameDoesNotLinger();
    void otherExceptionsReportedToo();
    void withoutHostTheRecordIsShown();
    void reporterReplacesHost();
    void errorInFieldCheckReportedWithoutCancel();
};

void TestErrorTrap::hostErrorFillsRecordAndReportsToHost()
{
    auto host = std::make_shared<FakeApplication>();
    ErrorTrap trap(QStringLiteral("PensUitv"), QStringLiteral("Pensioenuitvoerder"));
    trap.setApplication(host);

    const bool ok = trap.run("TxtUitvoerder_Validation", [] {
        throw HostError(1003, QStringLiteral("Schrijven mislukt"), QStringLiteral("CaseStore"));
    });
    QVERIFY(!ok);
    QCOMPARE(host->reports.size(), 1);
    const ErrorRecord &r = host->reports.first();
    QCOMPARE(r.Procedure, QStringLiteral("TxtUitvoerder_Validation"));
    const QStringList fields{r.Title, r.Component, r.Product, r.Subject,
                             r.Message, r.Number, r.Description, r.Source};
    QCOMPARE(fields, (QStringList{QStringLiteral("Zarnoveld Advies"), QStringLiteral("PensUitv"),
                                  QStringLiteral("Zarnoveld"), QStringLiteral("Pensioenuitvoerder"),
                                  QStringLiteral("Er is een fout opgetreden."), QStringLiteral("1003"),
                                  QStringLiteral("Schrijven mislukt"), QStringLiteral("CaseStore")}));
}

void TestErrorTrap::callerGoesOnAfterError()
{
    auto host = std::make_shared<FakeApplication>();
    ErrorTrap trap(QStringLiteral("PensGeg"), QStringLiteral("Pensioen"));
    trap.setApplication(host);
    QStringList steps;
    trap.run("Fill_Controls", [&] {
        steps << QStringLiteral("voor");
        throw HostError(1001, QStringLiteral("weg"));
        steps << QStringLiteral("na");   // never reached: the procedure ends at the error
    });
    steps << QStringLiteral("aanroeper");
    QCOMPARE(steps, (QStringList{QStringLiteral("voor"), QStringLiteral("aanroeper")}));
    QCOMPARE(host->reports.size(), 1);
}

void TestErrorTrap::bodyWithoutErrorReportsNothing()
{
    auto host = std::make_shared<FakeApplication>();
    ErrorTrap trap(QStringLiteral("PensGeg"), QStringLiteral("Pensioen"));
    trap.setApplication(host);
    int runs = 0;
    QVERIFY(trap.run("SetApplication", [&] { ++runs; }));
    QCOMPARE(runs, 1);
    QVERIFY(host->reports.isEmpty());
    QCOMPARE(trap.record().Procedure, QStringLiteral("SetApplication"));
}

void TestErrorTrap::recordReusedAcrossErrors()
{
    auto host = std::make_shared<FakeApplication>();
    ErrorTrap trap(QStringLiteral("PensToez"), QStringLiteral("Toezeggingen"));
    trap.setApplication(host);
    trap.run("TxtOP_Validation", [] { throw HostError(1002, QStringLiteral("eerste")); });
    trap.run("Fill_Controls", [] { throw HostError(1004, QStringLiteral("tweede"), QStringLiteral("Bron2")); });
    QCOMPARE(host->reports.size(), 2);
    QCOMPARE(host->addresses.at(0), host->addresses.at(1));
    QCOMPARE(host->addresses.at(0), &trap.record());
    QCOMPARE(host->reports.at(1).Procedure, QStringLiteral("Fill_Controls"));
    QCOMPARE(host->reports.at(1).Number, QStringLiteral("1004"));
    QCOMPARE(host->reports.at(1).Description, QStringLiteral("tweede"));
    QCOMPARE(host->reports.at(1).Source, QStringLiteral("Bron2"));
}

void TestErrorTrap::overrideCursorRestored()
{
    auto host = std::make_shared<FakeApplication>();
    ErrorTrap trap(QStringLiteral("PensGeg"), QStringLiteral("Pensioen"));
    trap.setApplication(host);
    trap.run("Fill_DienstverbandCombo", [] {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        QGuiApplication::setOverrideCursor(Qt::BusyCursor);
        throw HostError(1001, QStringLiteral("weg"));
    });
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
    // The pointer is back before the host shows its report.
    QCOMPARE(host->cursorWhenReported, QList<bool>{false});
}

void TestErrorTrap::nestedProcedureNameDoesNotLinger()
{
    auto host = std::make_shared<FakeApplication>();
    ErrorTrap trap(QStringLiteral("PensGeg"), QStringLiteral("Pensioen"));
    trap.setApplication(host);
    trap.run("Fill_Controls", [&] {
        trap.run("Fill_DienstverbandCombo", [] {});
        throw HostError(1001, QStringLiteral("weg"));
    });
    QCOMPARE(host->reports.size(), 1);
    QCOMPARE(host->reports.first().Procedure, QStringLiteral("Fill_Controls"));

    // An inner failure is reported under the inner name; the outer procedure goes on.
    bool outerFinished = false;
    trap.run("SetApplication", [&] {
        trap.run("Fill_DienstverbandCombo", [] { throw HostError(1002, QStringLiteral("binnen")); });
        outerFinished = true;
    });
    QVERIFY(outerFinished);
    QCOMPARE(host->reports.size(), 2);
    QCOMPARE(host->reports.at(1).Procedure, QStringLiteral("Fill_DienstverbandCombo"));
}

void TestErrorTrap::otherExceptionsReportedToo()
{
    auto host = std::make_shared<FakeApplication>();
    ErrorTrap trap(QStringLiteral("PensGeg"), QStringLiteral("Pensioen"));
    trap.setApplication(host);
    QVERIFY(!trap.run("Bereken", [] { throw std::runtime_error("kapot"); }));
    QVERIFY(!trap.run("Bereken", [] { throw 42; }));
    QCOMPARE(host->reports.size(), 2);
    QCOMPARE(host->reports.at(0).Description, QStringLiteral("kapot"));
    QCOMPARE(host->reports.at(0).Message, QStringLiteral("Er is een fout opgetreden."));
    QCOMPARE(host->reports.at(0).Source, QStringLiteral("PensGeg"));
    QCOMPARE(host->reports.at(1).Product, QStringLiteral("Zarnoveld"));
    QVERIFY(!host->reports.at(1).Description.isEmpty());
}

void TestErrorTrap::withoutHostTheRecordIsShown()
{
    TestSupport::MessageRecorder messages;
    ErrorTrap trap(QStringLiteral("frmAoUitkering"), QStringLiteral("AO-uitkering"));
    QVERIFY(!trap.run("Fill_Form", [] { throw HostError(1001, QStringLiteral("weg")); }));
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.lastTitle(), QStringLiteral("Zarnoveld"));
    QCOMPARE(messages.last().icon, VandrelControl::MessageBox::Icon::Critical);
    QVERIFY(messages.lastText().contains(QStringLiteral("Er is een fout opgetreden.")));
    QVERIFY(messages.lastText().contains(QStringLiteral("Fill_Form")));
    QVERIFY(messages.lastText().contains(QStringLiteral("weg")));
}

void TestErrorTrap::reporterReplacesHost()
{
    auto host = std::make_shared<FakeApplication>();
    ErrorTrap trap(QStringLiteral("frmPensioenSpec"), QStringLiteral("Pensioenspecificatie"));
    trap.setApplication(host);
    QList<QString> seen;
    trap.setReporter([&](ErrorRecord &record) { seen.append(record.Procedure); });
    trap.run("cmdOk_Click", [] { throw HostError(1003, QStringLiteral("vol")); });
    QCOMPARE(seen, QList<QString>{QStringLiteral("cmdOk_Click")});
    QVERIFY(host->reports.isEmpty());
}

void TestErrorTrap::errorInFieldCheckReportedWithoutCancel()
{
    auto host = std::make_shared<FakeApplication>();
    ErrorTrap trap(QStringLiteral("PensUitv"), QStringLiteral("Pensioenuitvoerder"));
    trap.setApplication(host);
    TestSupport::MessageRecorder messages;

    QWidget form;
    auto *layout = new QVBoxLayout(&form);
    auto *field = new VandrelControl::TextBox(&form);
    field->setObjectName(QStringLiteral("txtUitvoerder"));
    auto *next = new VandrelControl::TextBox(&form);
    next->setObjectName(QStringLiteral("txtBranche"));
    layout->addWidget(field);
    layout->addWidget(next);
    bool cancelSeen = false;
    QObject::connect(field, &VandrelControl::TextBox::Validate, &form, [&](bool &Cancel) {
        trap.run("TxtUitvoerder_Validation", [&] {
            throw HostError(1003, QStringLiteral("Schrijven mislukt"));
            Cancel = true;   // never reached
        });
        cancelSeen = Cancel;
    }, Qt::DirectConnection);
    QVERIFY(TestSupport::showActive(&form));

    TestSupport::enter(TestSupport::find<VandrelControl::TextBox>(&form, QStringLiteral("txtUitvoerder")),
                       QStringLiteral("ABP"));
    QCOMPARE(host->reports.size(), 1);
    QCOMPARE(host->reports.first().Procedure, QStringLiteral("TxtUitvoerder_Validation"));
    QVERIFY(!cancelSeen);
    QTRY_COMPARE(QApplication::focusWidget(), next);
    QCOMPARE(messages.count(), 0);
}

QTEST_MAIN(TestErrorTrap)
#include "tst_errortrap.moc"
