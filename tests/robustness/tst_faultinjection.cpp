// A host that fails at its N-th operation, for every N a scripted session performs. Every run
// must end without a crash; an error the library traps must reach the host's error report naming
// a procedure of the component it happened in; and the screen must still take the user's next
// edit.
//
// The list and the main panel have no error trap: a host error there travels to the host. Like a
// real host, this program catches it at the top of its event dispatch (QApplication::notify) and
// around its own calls (SetApplication, Validation), notes it, and carries on.

#include "faultyhost.h"
#include "hostapplication.h"
#include "pensmain.h"
#include "randomuser.h"
#include "textbox.h"
#include "usersim.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDirIterator>
#include <QFile>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>
#include <QTreeWidget>

#include <map>

using namespace VandrelApplication;
using namespace VandrelPensioen;
using namespace Robustness;
using namespace TestSupport;

namespace {

QList<HostError> &escaped()
{
    static QList<HostError> errors;
    return errors;
}

class HostLikeApplication : public QApplication
{
public:
    using QApplication::QApplication;
    bool notify(QObject *receiver, QEvent *event) override
    {
        try {
            return QApplication::notify(receiver, event);
        } catch (const HostError &error) {
            escaped().append(error);
            return false;
        }
    }
};

// The host's own calls into the screen, with the same catch.
template <typename F>
void asHost(F &&f)
{
    try {
        f();
    } catch (const HostError &error) {
        escaped().append(error);
    }
}

// A couple with two schemes each, built through the host's own operations.
std::shared_ptr<Zarnoveld::HostApplication> coupleCase()
{
    auto app = Zarnoveld::HostApplication::createInMemory();
    auto dossier = app->Get_Dossier();
    const qint16 partner = dossier->AddAanvrager();
    const QDate births[] = {QDate(1968, 6, 30), QDate(1971, 2, 1)};
    for (qint16 anv = 1; anv <= partner; ++anv) {
        auto person = dossier->Get_Aanvrager(anv);
        person->setNaam(anv == 1 ? QStringLiteral("Kees Jansen") : QStringLiteral("Els Jansen"));
        person->setGeboorteDatum(births[anv - 1]);
        auto job = person->Get_Dienstverband(person->AddDienstverband());
        job->setWerkgever(QStringLiteral("Werkgever %1").arg(anv));
        job->setDt_Begin(QDate(2005, 1, 1));
        job->setSalaris(52000);
        for (int i = 0; i < 2; ++i) {
            auto scheme = person->Get_Pensioen(person->AddPension());
            scheme->setUitvoerder(QStringLiteral("Fonds %1%2").arg(anv).arg(i + 1));
            scheme->setDienstverbandKey(job->Key());
        }
    }
    return app;
}

// Procedure names each component runs under its error trap, read from its source: a reported
// name must be one of them.
std::map<QString, QSet<QString>> trappedProcedures()
{
    std::map<QString, QSet<QString>> out;
    static const QRegularExpression run(QStringLiteral("\\.run\\(\"([A-Za-z_0-9]+)\""));
    QDirIterator it(QStringLiteral(VANDREL_SOURCE_DIR "/src/pensioen"), {QStringLiteral("*.cpp")},
                    QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromUtf8(file.readAll());
        auto &names = out[it.fileInfo().completeBaseName()];
        for (auto m = run.globalMatch(text); m.hasNext();)
            names.insert(m.next().captured(1));
    }
    return out;
}

void clickRow(QTreeWidget *list, int index)
{
    if (index >= list->topLevelItemCount())
        return;
    QTreeWidgetItem *row = list->topLevelItem(index);
    list->scrollToItem(row);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualItemRect(row).center());
}

template <typename T>
T *child(QWidget *root, const char *name)
{
    return root->findChild<T *>(QString::fromLatin1(name));
}

void enterText(QWidget *field, const QString &text)
{
    if (!field || !field->isVisible() || !field->isEnabled())
        return;
    RandomUser::typeText(field, text);
    RandomUser::tab();
}

void clickIfUsable(QWidget *w)
{
    if (w && w->isVisible() && w->isEnabled())
        click(w);
}

// The scripted session: what a user does in a minute on the pension screen.
void session(PensMain &main, const ApplicationPtr &host)
{
    asHost([&] { main.SetApplication(host); });
    auto *list = child<QTreeWidget>(&main, "LstPensioenen");
    clickRow(list, 1);
    enterText(child<QWidget>(&main, "txtUitvoerder"), QStringLiteral("Robuust Fonds"));
    enterText(child<QWidget>(&main, "txtSalaris"), QStringLiteral("45.000"));
    clickIfUsable(child<QCheckBox>(&main, "chkTOP"));
    enterText(child<QWidget>(&main, "txtTOP"), QStringLiteral("1.200"));
    clickIfUsable(child<QRadioButton>(&main, "optMiddelloon"));
    enterText(child<QWidget>(&main, "txtOpgebouwd"), QStringLiteral("8.000"));
    clickIfUsable(child<QCheckBox>(&main, "chkSynced_0"));
    if (auto *op = child<QCheckBox>(&main, "chkOP"); op && !op->isChecked())
        clickIfUsable(op);
    enterText(child<QWidget>(&main, "txtOP"), QStringLiteral("12.000"));
    clickIfUsable(child<QPushButton>(&main, "cmdPensioenSpecificatie"));
    clickIfUsable(child<QCheckBox>(&main, "chkIP"));
    clickIfUsable(child<QPushButton>(&main, "cmdUitkeringSoort"));
    clickRow(list, 3);
    enterText(child<QWidget>(&main, "txtBranche"), QStringLiteral("Zorg"));
    asHost([&] {
        bool cancel = false;
        main.Validation(cancel, 0);
    });
}

} // namespace

class TestFaultInjection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyHostOperationMayFail()
    {
        const auto procedures = trappedProcedures();
        QVERIFY(procedures.count(QStringLiteral("pensgeg")) && !procedures.at(QStringLiteral("pensgeg")).isEmpty());
        MessageRecorder messages;

        // Inside a dialog: three seeded actions, then its close box.
        std::unique_ptr<RandomUser> dialogUser;
        DialogDriver driver([&](QDialog *dialog) { dialogUser->act(dialog); }, 3);

        auto runOnce = [&](qint64 failAt, FaultPlan *&planOut, std::shared_ptr<FaultyHost> &hostOut,
                           std::unique_ptr<PensMain> &mainOut) {
            auto inner = coupleCase();
            auto host = std::make_shared<FaultyHost>(inner);
            dialogUser = std::make_unique<RandomUser>(7u, messages);
            escaped().clear();
            messages.clear();
            auto main = std::make_unique<PensMain>();
            main->resize(main->sizeHint());
            showActive(main.get());
            host->plan().arm(failAt);
            session(*main, host);
            host->plan().arm(0);
            planOut = &host->plan();
            hostOut = host;
            mainOut = std::move(main);
        };

        // The session once without faults: how many host operations it performs.
        FaultPlan *plan = nullptr;
        std::shared_ptr<FaultyHost> host;
        std::unique_ptr<PensMain> main;
        runOnce(0, plan, host, main);
        const qint64 count = plan->count();
        const QSet<QString> seen = plan->seen();
        QCOMPARE(escaped().size(), 0);
        QCOMPARE(host->reports().size(), 0);
        QVERIFY2(count > 100, qPrintable(QString::number(count)));
        QVERIFY(seen.contains(QStringLiteral("Pensioen::setUitvoerder")));
        qInfo().noquote() << "dialogs served:" << driver.dialogNames().join(QLatin1Char(','));
        main.reset();

        bool ok = false;
        qint64 stride = qEnvironmentVariableIntValue("VANDREL_FAULT_STRIDE", &ok);
        if (!ok || stride < 1)
            stride = 1;

        QSet<QString> failed;
        int trapped = 0, propagated = 0, swallowed = 0;
        for (qint64 n = 1; n <= count; n += stride) {
            runOnce(n, plan, host, main);
            const QString where = QStringLiteral("fault at operation %1 (%2)").arg(n).arg(plan->firedOperation());
            if (!plan->fired()) {
                main.reset();
                continue;   // this run took another path and did fewer operations
            }
            failed.insert(plan->firedOperation());
            for (const ErrorRecord &r : host->reports()) {
                const QString detail = where + QStringLiteral(": ") + r.toText();
                const auto source = procedures.find(r.Component.toLower());
                QVERIFY2(source != procedures.end(), qPrintable(detail));
                QVERIFY2(source->second.contains(r.Procedure), qPrintable(detail));
                QCOMPARE(r.Product, QStringLiteral("Zarnoveld"));
                QCOMPARE(r.Message, QStringLiteral("Er is een fout opgetreden."));
                QVERIFY2(!r.Subject.isEmpty(), qPrintable(detail));
                QCOMPARE(r.Number, QString::number(FaultPlan::InjectedNumber));
                QVERIFY2(r.Description.contains(plan->firedOperation()), qPrintable(detail));
            }
            if (!host->reports().isEmpty())
                ++trapped;
            else if (!escaped().isEmpty())
                ++propagated;
            else
                ++swallowed;

            // The user carries on: the host reloads when nothing is shown, then a plain edit must
            // reach the case.
            host->clearReports();
            if (main->shownPensioen() == 0)
                asHost([&] { main->SetApplication(host); });
            QVERIFY2(main->shownPensioen() > 0, qPrintable(where));
            auto *provider = child<VandrelControl::TextBox>(main.get(), "txtUitvoerder");
            QVERIFY2(provider && provider->isVisible(), qPrintable(where));
            messages.clear();
            enterText(provider, QStringLiteral("Na de fout"));
            const auto record = host->inner()->Get_Dossier()->Get_Aanvrager(main->shownAanvrager())
                                    ->Get_Pensioen(main->shownPensioen());
            QVERIFY2(record, qPrintable(where));
            QVERIFY2(record->Uitvoerder() == QStringLiteral("Na de fout"),
                     qPrintable(where + QStringLiteral(": provider is \"%1\"; messages: %2")
                                    .arg(record->Uitvoerder()).arg(messages.count())));
            QVERIFY2(host->reports().isEmpty(), qPrintable(where + host->reports().first().toText()));
            main.reset();
        }

        QStringList covered(failed.begin(), failed.end());
        covered.sort();
        qInfo().noquote() << QStringLiteral("%1 host operations per session, %2 kinds; failed in turn: %3 kinds "
                                            "(%4 trapped and reported, %5 passed to the host, %6 absorbed)")
                                 .arg(count).arg(seen.size()).arg(covered.size()).arg(trapped).arg(propagated).arg(swallowed);
        qInfo().noquote() << "covered:" << covered.join(QStringLiteral(", "));
        QVERIFY(trapped > 0);
        QVERIFY(covered.contains(QStringLiteral("Pensioen::setUitvoerder")));
    }
};

int main(int argc, char **argv)
{
    HostLikeApplication app(argc, argv);
    TestFaultInjection test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_faultinjection.moc"
