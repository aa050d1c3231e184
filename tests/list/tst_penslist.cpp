// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The pension list driven as a user drives it: click rows, click Nieuw and pick a menu entry,
// click Verwijderen, answer the question; then read the host's data back.

#include "hostapplication.h"
#include "listviewroutines.h"
#include "nullmodel.h"
#include "penslist.h"
#include "platformroutines.h"
#include "usersim.h"

#include <QAction>
#include <QAbstractItemModel>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include <climits>

using namespace VandrelApplication;
using VandrelPensioen::PensList;
using namespace TestSupport;

namespace {

// A host whose dossier has no participants at all.
class EmptyDossier : public Dossier
{
public:
    AanvragerPtr Get_Aanvrager(qint16) override { return nullptr; }
    qint16 AddAanvrager() override { return 0; }
    void RemoveAanvrager(qint16) override {}
    qint32 SyncVlaggen() const override { return 0; }
    void setSyncVlaggen(qint32) override {}
};

class EmptyApplication : public Application
{
public:
    DossierPtr Get_Dossier() override { return dossier; }
    ParametersPtr Get_Parameters() override { return nullptr; }
    void ReportError(ErrorRecord &) override {}
    QString Title() const override { return QStringLiteral("Test"); }
    QIcon Icon() const override { return {}; }
    DossierPtr dossier = std::make_shared<EmptyDossier>();
};

// One participant with one scheme that has no old-age row.
class RowlessPensioen : public TestModel::NullPensioen
{
public:
    bool HuidigeWerkgever() const override { return true; }
    double BedragTOP() const override { return 987654.4; }
};

class OneSchemeAanvrager : public TestModel::NullAanvrager
{
public:
    qint16 Anv_Id() const override { return 1; }
    PensioenPtr Get_Pensioen(qint16 Pen_Id) override { return Pen_Id == 1 ? scheme : nullptr; }
    PensioenPtr scheme = std::make_shared<RowlessPensioen>();
};

class OneSchemeDossier : public EmptyDossier
{
public:
    AanvragerPtr Get_Aanvrager(qint16 Anv_Id) override { return Anv_Id == 1 ? aanvrager : nullptr; }
    AanvragerPtr aanvrager = std::make_shared<OneSchemeAanvrager>();
};

struct Event
{
    QString name;
    qint16 anv = 0;
    qint16 pen = 0;
    bool operator==(const Event &o) const { return name == o.name && anv == o.anv && pen == o.pen; }
};

// Records the list's events in the order they come.
struct Listener
{
    explicit Listener(PensList *list)
    {
        QObject::connect(list, &PensList::PensioenChanged, list,
                         [this](qint16 &a, qint16 &p) { events.append({QStringLiteral("changed"), a, p}); },
                         Qt::DirectConnection);
        QObject::connect(list, &PensList::PensioenDeleted, list,
                         [this] { events.append({QStringLiteral("deleted"), 0, 0}); },
                         Qt::DirectConnection);
    }
    QList<Event> events;
};

std::shared_ptr<Zarnoveld::HostApplication> newCase(int applicantSchemes, int partnerSchemes = -1)
{
    auto app = Zarnoveld::HostApplication::createInMemory();
    auto dossier = app->Get_Dossier();
    for (int i = 0; i < applicantSchemes; ++i)
        dossier->Get_Aanvrager(1)->AddPension();
    if (partnerSchemes >= 0) {
        const qint16 partner = dossier->AddAanvrager();
        for (int i = 0; i < partnerSchemes; ++i)
            dossier->Get_Aanvrager(partner)->AddPension();
    }
    return app;
}

PensioenPtr scheme(const ApplicationPtr &app, qint16 anv, qint16 pen)
{
    return app->Get_Dossier()->Get_Aanvrager(anv)->Get_Pensioen(pen);
}

int schemeCount(const ApplicationPtr &app, qint16 anv)
{
    int n = 0;
    while (app->Get_Dossier()->Get_Aanvrager(anv)->Get_Pensioen(qint16(n + 1)))
        ++n;
    return n;
}

void clickRow(QTreeWidget *list, QTreeWidgetItem *item)
{
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                      list->visualItemRect(item).center());
}

int px(double twipsValue)
{
    return VandrelPensioen::twips(qRound(twipsValue));
}

} // namespace

class TestPensList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_list = std::make_unique<PensList>();
        QVERIFY(showActive(m_list.get()));
        m_view = find<QTreeWidget>(m_list.get(), QStringLiteral("LstPensioenen"));
        m_nieuw = find<QPushButton>(m_list.get(), QStringLiteral("cmdNieuw"));
        m_verwijder = find<QPushButton>(m_list.get(), QStringLiteral("cmdVerwijder"));
    }
    void cleanup() { m_list.reset(); }

    void noParticipantsGivesEmptyList()
    {
        Listener listener(m_list.get());
        m_list->SetApplication(std::make_shared<EmptyApplication>());
        QCOMPARE(m_view->topLevelItemCount(), 0);
        QVERIFY(!m_verwijder->isEnabled());
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 0, 0}}));
        QCOMPARE(m_view->columnCount(), 10);
    }

    void participantsWithoutSchemesGiveEmptyList()
    {
        auto app = newCase(0, 0);
        Listener listener(m_list.get());
        m_list->SetApplication(app, 1, 1);
        QCOMPARE(m_view->topLevelItemCount(), 0);
        QVERIFY(!m_verwijder->isEnabled());
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 0, 0}}));
    }

    void rowsShowTheHostData()
    {
        auto app = newCase(2, 1);
        auto first = scheme(app, 1, 1);
        first->setHuidigeWerkgever(true);
        first->setUitvoerder(QStringLiteral("ABP"));
        first->setSoortRegeling(SoortRegeling::Middelloon);
        first->setBedragTOP(1234.4);
        first->setBedragPP(23456);
        first->setBedragIP(7890.6);
        if (first->OuderdomRegelCount() == 0)
            first->AddOuderdomRegel();
        first->Get_OuderdomRegel(1)->setBedragOP(12345);
        first->Get_OuderdomRegel(1)->setBedragPreP(500);
        auto second = scheme(app, 1, 2);
        second->setHuidigeWerkgever(false);
        second->setSoortRegeling(SoortRegeling::BeschikbarePremie);
        scheme(app, 2, 1)->setSoortRegeling(SoortRegeling::Eindloon);

        m_list->SetApplication(app);
        QCOMPARE(m_view->topLevelItemCount(), 3);
        const QStringList headers{"Werkgever", "Pensioenuitvoerder", "Pensioenregeling", "Deelnemer",
                                  "PP", "OP", "TOP", "NP", "NOP", "IP"};
        for (int c = 0; c < 10; ++c)
            QCOMPARE(m_view->headerItem()->text(c), headers.at(c));

        QTreeWidgetItem *a = m_view->topLevelItem(0);
        QCOMPARE(VandrelPensioen::ListView::key(a), QStringLiteral("@101"));
        const QStringList expectedA{"Huidige", "ABP", "Middelloon", "Aanvrager", "500",
                                    "12.345", "1.234", "23.456", " ", "7.891"};
        for (int c = 0; c < 10; ++c)
            QCOMPARE(a->text(c), expectedA.at(c));

        QTreeWidgetItem *b = m_view->topLevelItem(1);
        QCOMPARE(VandrelPensioen::ListView::key(b), QStringLiteral("@102"));
        QCOMPARE(b->text(0), QStringLiteral("Vorige"));
        QCOMPARE(b->text(2), QStringLiteral("Beschikbare premie"));
        QCOMPARE(b->text(8), QStringLiteral(" "));

        QTreeWidgetItem *c = m_view->topLevelItem(2);
        QCOMPARE(VandrelPensioen::ListView::key(c), QStringLiteral("@201"));
        QCOMPARE(c->text(2), QStringLiteral("Eindloon"));
        QCOMPARE(c->text(3), QStringLiteral("Partner"));
    }

    void schemeWithoutOldAgeRowShowsSpaces()
    {
        auto app = std::make_shared<EmptyApplication>();
        app->dossier = std::make_shared<OneSchemeDossier>();
        m_list->SetApplication(app);
        QCOMPARE(m_view->topLevelItemCount(), 1);
        QTreeWidgetItem *row = m_view->topLevelItem(0);
        QCOMPARE(row->text(0), QStringLiteral("Huidige"));
        QCOMPARE(row->text(2), QString());   // no scheme type chosen yet
        QCOMPARE(row->text(4), QStringLiteral(" "));
        QCOMPARE(row->text(5), QStringLiteral(" "));
        QCOMPARE(row->text(6), QStringLiteral("987.654"));
        QCOMPARE(row->text(8), QStringLiteral(" "));
    }

    void unknownIdentifiersSelectTheFirstRow()
    {
        auto app = newCase(2, 1);
        Listener listener(m_list.get());
        m_list->SetApplication(app, 2, 7);
        QCOMPARE(m_view->selectedItems().size(), 1);
        QCOMPARE(m_view->selectedItems().first(), m_view->topLevelItem(0));
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 1, 1}}));
        QVERIFY(m_verwijder->isEnabled());
    }

    void knownIdentifiersSelectTheirRow()
    {
        auto app = newCase(2, 1);
        Listener listener(m_list.get());
        m_list->SetApplication(app, 2, 1);
        QCOMPARE(m_view->selectedItems().first(), m_view->topLevelItem(2));
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 2, 1}}));
    }

    void secondSetApplicationKeepsTheSelection()
    {
        auto app = newCase(3);
        m_list->SetApplication(app, 1, 2);
        scheme(app, 1, 2)->setUitvoerder(QStringLiteral("PFZW"));
        Listener listener(m_list.get());
        m_list->SetApplication(app, 1, 2);
        QCOMPARE(m_view->selectedItems().first(), m_view->topLevelItem(1));
        QCOMPARE(m_view->topLevelItem(1)->text(1), QStringLiteral("PFZW"));
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 1, 2}}));
    }

    void clickingARowReportsItsScheme()
    {
        auto app = newCase(2, 1);
        m_list->SetApplication(app);
        Listener listener(m_list.get());
        clickRow(m_view, m_view->topLevelItem(2));
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 2, 1}}));
        clickRow(m_view, m_view->topLevelItem(1));
        QCOMPARE(listener.events.last(), (Event{QStringLiteral("changed"), 1, 2}));
    }

    void partnerSchemeTwelveHasKey212()
    {
        qint16 anv = -1, pen = -1;
        QCOMPARE(PensList::rowKey(2, 12), QStringLiteral("@212"));
        QVERIFY(PensList::decodeKey(QStringLiteral("@212"), anv, pen));
        QCOMPARE(anv, qint16(2));
        QCOMPARE(pen, qint16(12));

        auto app = newCase(1, 12);
        scheme(app, 2, 12)->setUitvoerder(QStringLiteral("Twaalfde"));
        m_list->SetApplication(app);
        QTreeWidgetItem *row = VandrelPensioen::ListView::findByKey(m_view, QStringLiteral("@212"));
        QVERIFY(row);
        QCOMPARE(row->text(1), QStringLiteral("Twaalfde"));
        m_view->scrollToItem(row);
        Listener listener(m_list.get());
        clickRow(m_view, row);
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 2, 12}}));
    }

    void deletingTheOnlySchemeEmptiesTheList()
    {
        auto app = newCase(1);
        m_list->SetApplication(app);
        MessageRecorder messages;
        Listener listener(m_list.get());
        click(m_verwijder);
        QCOMPARE(messages.count(), 0);   // no confirmation question
        QCOMPARE(schemeCount(app, 1), 0);
        QCOMPARE(m_view->topLevelItemCount(), 0);
        QVERIFY(!m_verwijder->isEnabled());
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("deleted"), 0, 0},
                                                {QStringLiteral("changed"), 0, 0}}));
    }

    void deletingSelectsTheFirstRemainingRow()
    {
        auto app = newCase(3);
        scheme(app, 1, 1)->setUitvoerder(QStringLiteral("Een"));
        scheme(app, 1, 2)->setUitvoerder(QStringLiteral("Twee"));
        scheme(app, 1, 3)->setUitvoerder(QStringLiteral("Drie"));
        m_list->SetApplication(app, 1, 2);
        Listener listener(m_list.get());
        click(m_verwijder);
        QCOMPARE(schemeCount(app, 1), 2);
        QCOMPARE(scheme(app, 1, 2)->Uitvoerder(), QStringLiteral("Drie"));
        QCOMPARE(m_view->selectedItems().first(), m_view->topLevelItem(0));
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("deleted"), 0, 0},
                                                {QStringLiteral("changed"), 1, 1}}));
    }

    void fourRowsKeepFullWidthsFiveNarrow()
    {
        const double W = m_view->width() * 15.0;
        m_list->SetApplication(newCase(4));
        QCOMPARE(m_view->columnWidth(0), px(W * 0.1));
        QCOMPARE(m_view->columnWidth(1), px(W * 0.2));
        QCOMPARE(m_view->columnWidth(2), px(W * 0.15 - 15));
        QCOMPARE(m_view->columnWidth(3), px(W * 0.1));
        for (int c = 4; c < 10; ++c)
            QCOMPARE(m_view->columnWidth(c), px(W * 0.075 - 15));

        m_list->SetApplication(newCase(3, 2));
        QCOMPARE(m_view->topLevelItemCount(), 5);
        QCOMPARE(m_view->columnWidth(0), px(W * 0.1 - 100));
        QCOMPARE(m_view->columnWidth(1), px(W * 0.2 - 75));
        QCOMPARE(m_view->columnWidth(2), px(W * 0.15 - 15));
        QCOMPARE(m_view->columnWidth(3), px(W * 0.1 - 75));
        for (int c = 4; c < 10; ++c)
            QCOMPARE(m_view->columnWidth(c), px(W * 0.075 - 15));

        // Back to four rows: a new fill starts from the full widths.
        m_list->SetApplication(newCase(4));
        QCOMPARE(m_view->columnWidth(0), px(W * 0.1));
    }

    void newCurrentEmployerWithoutOneAsksNothing()
    {
        auto app = newCase(1, 0);
        scheme(app, 1, 1)->setHuidigeWerkgever(false);
        m_list->SetApplication(app);
        MessageRecorder messages;
        Listener listener(m_list.get());
        chooseFromMenu(QStringLiteral("Huidige_Werkgever"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(schemeCount(app, 1), 2);
        QVERIFY(scheme(app, 1, 2)->HuidigeWerkgever());
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 1, 2}}));
        QCOMPARE(m_view->selectedItems().first()->text(0), QStringLiteral("Huidige"));
    }

    void secondCurrentEmployerAnsweredNoAddsNothing()
    {
        auto app = newCase(0, 1);
        scheme(app, 2, 1)->setHuidigeWerkgever(true);   // the partner's counts as well
        m_list->SetApplication(app);
        MessageRecorder messages;
        messages.answerNext(MessageBox::Answer::No);
        Listener listener(m_list.get());
        chooseFromMenu(QStringLiteral("Huidige_Werkgever"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Huidige werkgever"));
        QCOMPARE(messages.lastText(),
                 QStringLiteral("U heeft al een huidige werkgever geselecteerd.\n"
                                "Wilt u toch een extra huidige werkgever toevoegen?"));
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::YesNo);
        QCOMPARE(schemeCount(app, 1), 0);
        QCOMPARE(m_view->topLevelItemCount(), 1);
        QVERIFY(listener.events.isEmpty());
    }

    void secondCurrentEmployerAnsweredYesAddsUnderTheApplicant()
    {
        auto app = newCase(1, 1);
        scheme(app, 1, 1)->setHuidigeWerkgever(true);
        m_list->SetApplication(app, 2, 1);
        MessageRecorder messages;
        messages.answerNext(MessageBox::Answer::Yes);
        Listener listener(m_list.get());
        chooseFromMenu(QStringLiteral("Huidige_Werkgever"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(schemeCount(app, 1), 2);
        QCOMPARE(schemeCount(app, 2), 1);
        QVERIFY(scheme(app, 1, 2)->HuidigeWerkgever());
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 1, 2}}));
        QCOMPARE(VandrelPensioen::ListView::key(m_view->selectedItems().first()), QStringLiteral("@102"));
    }

    void previousEmployerIsAddedWithoutEmployment()
    {
        auto app = newCase(1, 1);
        scheme(app, 1, 1)->setHuidigeWerkgever(true);
        m_list->SetApplication(app, 2, 1);
        MessageRecorder messages;
        Listener listener(m_list.get());
        chooseFromMenu(QStringLiteral("Vorige_Werkgever"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(schemeCount(app, 1), 2);
        auto added = scheme(app, 1, 2);
        QVERIFY(!added->HuidigeWerkgever());
        QVERIFY(added->DienstverbandKey().isEmpty());
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 1, 2}}));
        QCOMPARE(m_view->selectedItems().first()->text(0), QStringLiteral("Vorige"));
    }

    void validationNeverSetsOrClearsCancel()
    {
        m_list->SetApplication(newCase(1));
        bool cancel = false;
        m_list->Validation(cancel, 0);
        QVERIFY(!cancel);
        m_list->Validation(cancel, 5);
        QVERIFY(!cancel);
        cancel = true;
        m_list->Validation(cancel, 0);
        QVERIFY(cancel);
    }

    void validationLetsPendingEventsRunOnlyForTheFullCheck()
    {
        m_list->SetApplication(newCase(1));
        bool ran = false;
        QMetaObject::invokeMethod(m_list.get(), [&] { ran = true; }, Qt::QueuedConnection);
        bool cancel = false;
        m_list->Validation(cancel, 3);
        QVERIFY(!ran);
        m_list->Validation(cancel, 0);
        QVERIFY(ran);
    }

    // Another screen deleted, changed and added schemes while this list showed the case; the list
    // filled again shows exactly what a new list shows, and the view hears of the changed rows.
    void refillAfterOthersChangedTheCaseShowsExactlyTheCase()
    {
        auto app = newCase(4, 1);
        for (qint16 k = 1; k <= 4; ++k)
            scheme(app, 1, k)->setUitvoerder(QStringLiteral("Uitvoerder %1").arg(k));
        m_list->SetApplication(app, 1, 3);
        app->Get_Dossier()->Get_Aanvrager(1)->RemovePension(2);
        scheme(app, 2, 1)->setBedragTOP(4321);
        const qint16 added = app->Get_Dossier()->Get_Aanvrager(2)->AddPension();
        scheme(app, 2, added)->setUitvoerder(QStringLiteral("Nieuw"));
        QSignalSpy changed(m_view->model(), &QAbstractItemModel::dataChanged);

        m_list->SetApplication(app, 2, added);

        PensList fresh;
        fresh.SetApplication(app, 2, added);
        auto *freshView = find<QTreeWidget>(&fresh, QStringLiteral("LstPensioenen"));
        QCOMPARE(m_view->topLevelItemCount(), 5);
        QCOMPARE(m_view->topLevelItemCount(), freshView->topLevelItemCount());
        for (int row = 0; row < freshView->topLevelItemCount(); ++row) {
            QCOMPARE(VandrelPensioen::ListView::key(m_view->topLevelItem(row)),
                     VandrelPensioen::ListView::key(freshView->topLevelItem(row)));
            for (int c = 0; c < 10; ++c)
                QCOMPARE(m_view->model()->index(row, c).data().toString(), freshView->topLevelItem(row)->text(c));
        }
        QCOMPARE(m_view->topLevelItem(1)->text(1), QStringLiteral("Uitvoerder 3"));
        QCOMPARE(m_view->topLevelItem(3)->text(6), QStringLiteral("4.321"));
        QCOMPARE(m_view->topLevelItem(4)->text(1), QStringLiteral("Nieuw"));
        QCOMPARE(m_view->selectedItems(), QList<QTreeWidgetItem *>{m_view->topLevelItem(4)});
        // Rows 1 to 3 changed (a scheme moved up, the partner's row moved up and changed).
        QVERIFY(!changed.isEmpty());
        int first = INT_MAX;
        int last = -1;
        for (const QList<QVariant> &signal : std::as_const(changed)) {
            first = qMin(first, signal.at(0).toModelIndex().row());
            last = qMax(last, signal.at(1).toModelIndex().row());
        }
        QVERIFY2(first <= 1 && last >= 3, qPrintable(QStringLiteral("rows %1-%2").arg(first).arg(last)));
    }

    // A refused click fills the list again from an unchanged case: the rows stay as they are.
    void refillOfAnUnchangedCaseKeepsEveryRow()
    {
        auto app = newCase(3);
        m_list->SetApplication(app, 1, 2);
        QList<QTreeWidgetItem *> before;
        for (int row = 0; row < m_view->topLevelItemCount(); ++row)
            before.append(m_view->topLevelItem(row));
        QSignalSpy changed(m_view->model(), &QAbstractItemModel::dataChanged);
        QSignalSpy removed(m_view->model(), &QAbstractItemModel::rowsRemoved);
        QSignalSpy reset(m_view->model(), &QAbstractItemModel::modelReset);
        Listener listener(m_list.get());
        m_list->SetApplication(app, 1, 2);
        for (int row = 0; row < m_view->topLevelItemCount(); ++row)
            QCOMPARE(m_view->topLevelItem(row), before.at(row));
        QCOMPARE(changed.count(), 0);
        QCOMPARE(removed.count(), 0);
        QCOMPARE(reset.count(), 0);
        QCOMPARE(m_view->selectedItems(), QList<QTreeWidgetItem *>{m_view->topLevelItem(1)});
        QCOMPARE(listener.events, (QList<Event>{{QStringLiteral("changed"), 1, 2}}));
    }

    void infoChangedRewritesOnlyTheSelectedRow()
    {
        auto app = newCase(2);
        m_list->SetApplication(app, 1, 2);
        scheme(app, 1, 1)->setUitvoerder(QStringLiteral("Niet deze"));
        scheme(app, 1, 2)->setUitvoerder(QStringLiteral("Nieuwe naam"));
        scheme(app, 1, 2)->setBedragTOP(2500);
        m_list->InfoChanged();
        QCOMPARE(m_view->topLevelItem(1)->text(1), QStringLiteral("Nieuwe naam"));
        QCOMPARE(m_view->topLevelItem(1)->text(6), QStringLiteral("2.500"));
        QCOMPARE(m_view->topLevelItem(1)->text(3), QStringLiteral("Aanvrager"));
        QVERIFY(m_view->topLevelItem(0)->text(1) != QStringLiteral("Niet deze"));
    }

    void backColorKeepsExplicitlyColouredChildren()
    {
        const QColor red(Qt::red);
        QPalette palette = m_verwijder->palette();
        palette.setColor(m_verwijder->backgroundRole(), red);
        m_verwijder->setPalette(palette);

        const QColor blue(10, 20, 200);
        m_list->setBackColor(blue);
        QCOMPARE(m_list->BackColor(), blue);
        QCOMPARE(m_list->property("BackColor").value<QColor>(), blue);
        QCOMPARE(m_nieuw->palette().color(m_nieuw->backgroundRole()), blue);
        QCOMPARE(m_verwijder->palette().color(m_verwijder->backgroundRole()), red);
    }

private:
    void chooseFromMenu(const QString &entry)
    {
        click(m_nieuw);
        auto *menu = find<QMenu>(m_list.get(), QStringLiteral("Popup_Oud_Huidig"));
        QTRY_VERIFY(menu->isVisible());
        auto *action = find<QAction>(menu, entry);
        action->trigger();
        QVERIFY(!menu->isVisible());
    }

    std::unique_ptr<PensList> m_list;
    QTreeWidget *m_view = nullptr;
    QPushButton *m_nieuw = nullptr;
    QPushButton *m_verwijder = nullptr;
};

QTEST_MAIN(TestPensList)
#include "tst_penslist.moc"
