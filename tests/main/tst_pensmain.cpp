// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The pension screen with its real list and data panels, driven through the host's calls and
// the panels' own events; the host's data is read back after each step.

#include "hostapplication.h"
#include "hostcheck.h"
#include "listviewroutines.h"
#include "pensgeg.h"
#include "penslist.h"
#include "pensmain.h"
#include "penstoez.h"
#include "textbox.h"
#include "usersim.h"

#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTreeWidget>

using namespace VandrelApplication;
using namespace VandrelPensioen;
using namespace TestSupport;

namespace {

std::shared_ptr<Zarnoveld::HostApplication> newCase(int applicantSchemes, int partnerSchemes = -1)
{
    auto app = Zarnoveld::HostApplication::createInMemory();
    auto dossier = app->Get_Dossier();
    dossier->Get_Aanvrager(1)->setGeboorteDatum(QDate(1970, 3, 15));
    for (int i = 0; i < applicantSchemes; ++i)
        dossier->Get_Aanvrager(1)->AddPension();
    if (partnerSchemes >= 0) {
        const qint16 partner = dossier->AddAanvrager();
        dossier->Get_Aanvrager(partner)->setGeboorteDatum(QDate(1972, 8, 1));
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

// A defined-contribution scheme without target capital: the data panel refuses it.
void makeInvalid(const PensioenPtr &pensioen)
{
    pensioen->setRegelingBekend(true);
    pensioen->setSoortRegeling(SoortRegeling::BeschikbarePremie);
    pensioen->setDoelvermogen(0);
    pensioen->setRekenrenteOpbouw(4);
    pensioen->setRekenrenteUitkering(3);
}

void clickRow(QTreeWidget *list, QTreeWidgetItem *item)
{
    list->scrollToItem(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                      list->visualItemRect(item).center());
}

QString selectedKey(QTreeWidget *list)
{
    const auto rows = list->selectedItems();
    return rows.isEmpty() ? QString() : ListView::key(rows.first());
}

} // namespace

class TestPensMain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_messages = std::make_unique<MessageRecorder>();
        m_main = std::make_unique<PensMain>();
        QVERIFY(showActive(m_main.get()));
        m_list = find<PensList>(m_main.get(), QStringLiteral("PensioenList"));
        m_view = find<QTreeWidget>(m_list, QStringLiteral("LstPensioenen"));
        m_gegevens = find<PensGeg>(m_main.get(), QStringLiteral("PensioenGegevens"));
        m_toezegging = find<PensToez>(m_main.get(), QStringLiteral("PensioenToezegging"));
    }
    void cleanup()
    {
        m_main.reset();
        m_messages.reset();
    }

    void setApplicationShowsTheFirstScheme()
    {
        auto app = newCase(2, 1);
        m_main->SetApplication(app);
        QCOMPARE(m_view->topLevelItemCount(), 3);
        QCOMPARE(selectedKey(m_view), QStringLiteral("@101"));
        QCOMPARE(m_main->shownAanvrager(), qint16(1));
        QCOMPARE(m_main->shownPensioen(), qint16(1));
        QVERIFY(m_gegevens->isVisible());
        QVERIFY(m_toezegging->isVisible());
    }

    void hostCallsMembersByName()
    {
        auto app = newCase(1);
        QVERIFY(QMetaObject::invokeMethod(m_main.get(), "SetApplication", Qt::DirectConnection,
                                          Q_ARG(VandrelApplication::ApplicationPtr, app)));
        QCOMPARE(m_main->shownPensioen(), qint16(1));
        const QMetaObject *meta = m_main->metaObject();
        const int set = meta->indexOfMethod("SetApplication(VandrelApplication::ApplicationPtr)");
        const int validation = meta->indexOfMethod("Validation(bool&,qint32)");
        QVERIFY(set >= 0);
        QVERIFY(validation > set);   // dispatch order as documented
    }

    void clickingAnotherRowLoadsThatScheme()
    {
        auto app = newCase(2, 1);
        m_main->SetApplication(app);
        clickRow(m_view, m_view->topLevelItem(2));
        QCOMPARE(m_main->shownAanvrager(), qint16(2));
        QCOMPARE(m_main->shownPensioen(), qint16(1));
        QCOMPARE(m_messages->count(), 0);
    }

    // A host that opens another case hands the screen a new Application; the panels then show
    // that case's first scheme with its own values, and the check runs on those values.
    void anotherCaseShowsItsOwnFirstScheme()
    {
        auto first = newCase(2);
        auto eerste = scheme(first, 1, 1);
        eerste->setUitvoerder(QStringLiteral("Eerste Fonds"));
        eerste->setRegelingBekend(true);
        eerste->setSoortRegeling(SoortRegeling::Middelloon);
        eerste->setOpbouwPercentage(1.75f);
        m_main->SetApplication(first);
        QCOMPARE(find<VandrelControl::TextBox>(m_gegevens, QStringLiteral("txtUitvoerder"))->text(),
                 QStringLiteral("Eerste Fonds"));

        auto second = newCase(2);
        makeInvalid(scheme(second, 1, 1));
        scheme(second, 1, 1)->setUitvoerder(QStringLiteral("Tweede Fonds"));
        m_main->SetApplication(second);
        QCOMPARE(m_main->shownPensioen(), qint16(1));
        QCOMPARE(find<VandrelControl::TextBox>(m_gegevens, QStringLiteral("txtUitvoerder"))->text(),
                 QStringLiteral("Tweede Fonds"));
        QVERIFY(find<QRadioButton>(m_gegevens, QStringLiteral("optBeschikbarePremie"))->isChecked());
        bool cancel = false;
        m_main->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(m_messages->count(), 1);
        QCOMPARE(m_messages->last().text, QStringLiteral("Doelvermogen niet ingevuld."));
    }

    void refusedSelectionKeepsTheShownScheme()
    {
        auto app = newCase(2);
        makeInvalid(scheme(app, 1, 1));
        m_main->SetApplication(app);
        QCOMPARE(m_main->shownPensioen(), qint16(1));
        QCOMPARE(m_messages->count(), 0);   // nothing was shown before: nothing checked

        const int checks = HostCheck::instance().RunCount();
        clickRow(m_view, m_view->topLevelItem(1));
        // One message only: restoring the list's selection does not validate a second time.
        QCOMPARE(m_messages->count(), 1);
        QCOMPARE(m_messages->lastText(), QStringLiteral("Doelvermogen niet ingevuld."));
        QCOMPARE(m_messages->lastTitle(), QStringLiteral("Invoer verplicht"));
        QCOMPARE(m_main->shownAanvrager(), qint16(1));
        QCOMPARE(m_main->shownPensioen(), qint16(1));
        QCOMPARE(selectedKey(m_view), QStringLiteral("@101"));
        QCOMPARE(HostCheck::instance().RunCount(), checks);

        // Once the error is repaired the same click goes through.
        scheme(app, 1, 1)->setDoelvermogen(100000);
        m_gegevens->SetApplication(app, 1, 1);
        m_messages->clear();
        clickRow(m_view, m_view->topLevelItem(1));
        QCOMPARE(m_messages->count(), 0);
        QCOMPARE(m_main->shownPensioen(), qint16(2));
        QCOMPARE(selectedKey(m_view), QStringLiteral("@102"));
    }

    void validationWithNothingShownDoesNothing()
    {
        const int checks = HostCheck::instance().RunCount();
        bool cancel = false;
        m_main->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(HostCheck::instance().RunCount(), checks);

        auto app = newCase(0);   // a case without schemes shows nothing either
        m_main->SetApplication(app);
        m_main->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(HostCheck::instance().RunCount(), checks);
        cancel = true;
        m_main->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(m_messages->count(), 0);
    }

    void fullValidationRunsTheHostCheck()
    {
        m_main->SetApplication(newCase(1));
        const int checks = HostCheck::instance().RunCount();
        bool cancel = false;
        m_main->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(HostCheck::instance().RunCount(), checks + 1);
    }

    void singleCheckAsksTheChildrenButNotTheHost()
    {
        auto app = newCase(1);
        makeInvalid(scheme(app, 1, 1));
        m_main->SetApplication(app);
        const int checks = HostCheck::instance().RunCount();

        bool cancel = false;
        m_main->Validation(cancel, 5);   // a check that this scheme passes
        QVERIFY(!cancel);
        QCOMPARE(HostCheck::instance().RunCount(), checks);

        m_main->Validation(cancel, 7);   // the target-capital check of the data panel
        QVERIFY(cancel);
        QCOMPARE(m_messages->lastText(), QStringLiteral("Doelvermogen niet ingevuld."));
        QCOMPARE(HostCheck::instance().RunCount(), checks);
    }

    void validationNeverClearsCancel()
    {
        auto app = newCase(1);
        makeInvalid(scheme(app, 1, 1));
        m_main->SetApplication(app);
        const int checks = HostCheck::instance().RunCount();
        bool cancel = true;
        m_main->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(m_messages->count(), 0);   // a set Cancel stops the chain before any child
        QCOMPARE(HostCheck::instance().RunCount(), checks);
    }

    void deletingTheLastSchemeHidesBothPanels()
    {
        auto app = newCase(1);
        m_main->SetApplication(app);
        QVERIFY(m_gegevens->isVisible());
        click(find<QPushButton>(m_list, QStringLiteral("cmdVerwijder")));
        QCOMPARE(schemeCount(app, 1), 0);
        QVERIFY(!m_gegevens->isVisible());
        QVERIFY(!m_toezegging->isVisible());
        QCOMPARE(m_main->shownAanvrager(), qint16(0));
        QCOMPARE(m_main->shownPensioen(), qint16(0));
    }

    void deletingShowsTheFirstRemainingScheme()
    {
        auto app = newCase(2, 1);
        m_main->SetApplication(app);
        clickRow(m_view, m_view->topLevelItem(2));
        click(find<QPushButton>(m_list, QStringLiteral("cmdVerwijder")));
        QCOMPARE(schemeCount(app, 2), 0);
        QCOMPARE(m_main->shownAanvrager(), qint16(1));
        QCOMPARE(m_main->shownPensioen(), qint16(1));
        QVERIFY(m_gegevens->isVisible());
    }

    void movingFromApplicantToPartner()
    {
        auto app = newCase(2, 1);
        auto old = scheme(app, 1, 2);
        old->setUitvoerder(QStringLiteral("Zilveren Pensioen"));
        old->setSoortRegeling(SoortRegeling::Middelloon);
        old->setBedragTOP(3100);
        old->setSalaris(52000);
        old->setDienstjaren(12);
        old->setDienstverbandKey(QStringLiteral("{11111111-2222-3333-4444-555555555555}"));
        old->setDt_65(QDate(2035, 3, 1));
        old->setDt_PensioenIngang(QDate(2037, 3, 1));
        m_main->SetApplication(app);
        clickRow(m_view, m_view->topLevelItem(1));
        QCOMPARE(m_main->shownPensioen(), qint16(2));

        bool cancel = false;
        Q_EMIT m_gegevens->ChangeAanvrager(cancel);
        QVERIFY(!cancel);

        QCOMPARE(schemeCount(app, 1), 1);
        QCOMPARE(schemeCount(app, 2), 2);
        auto moved = scheme(app, 2, 2);
        QCOMPARE(moved->Uitvoerder(), QStringLiteral("Zilveren Pensioen"));
        QCOMPARE(moved->SoortRegeling(), SoortRegeling::Middelloon);
        QCOMPARE(moved->BedragTOP(), 3100.0);
        // What belonged to the old participant is not taken along.
        QCOMPARE(moved->Dienstjaren(), qint16(0));
        QCOMPARE(moved->Salaris(), 0.0);
        // Loading the moved scheme may derive the date again, from the new participant.
        QVERIFY(moved->Dt_65() != QDate(2035, 3, 1));
        QVERIFY(moved->DienstverbandKey().isEmpty());
        QVERIFY(!isFilled(moved->Dt_PensioenIngang()));

        QCOMPARE(m_main->shownAanvrager(), qint16(2));
        QCOMPARE(m_main->shownPensioen(), qint16(2));
        QCOMPARE(selectedKey(m_view), QStringLiteral("@202"));
        QCOMPARE(m_view->selectedItems().first()->text(3), QStringLiteral("Partner"));
    }

    void movingFromPartnerGoesToTheApplicant()
    {
        auto app = newCase(1, 2);
        scheme(app, 2, 1)->setUitvoerder(QStringLiteral("Van de partner"));
        m_main->SetApplication(app);
        clickRow(m_view, m_view->topLevelItem(1));
        QCOMPARE(m_main->shownAanvrager(), qint16(2));
        QCOMPARE(m_main->shownPensioen(), qint16(1));

        bool cancel = false;
        Q_EMIT m_gegevens->ChangeAanvrager(cancel);
        QCOMPARE(schemeCount(app, 1), 2);
        QCOMPARE(schemeCount(app, 2), 1);
        QCOMPARE(scheme(app, 1, 2)->Uitvoerder(), QStringLiteral("Van de partner"));
        QCOMPARE(m_main->shownAanvrager(), qint16(1));
        QCOMPARE(m_main->shownPensioen(), qint16(2));
        QCOMPARE(selectedKey(m_view), QStringLiteral("@102"));
    }

    void infoChangedRewritesTheListRow()
    {
        auto app = newCase(1);
        m_main->SetApplication(app);
        scheme(app, 1, 1)->setUitvoerder(QStringLiteral("Nieuw fonds"));
        Q_EMIT m_toezegging->InfoChanged();
        QCOMPARE(m_view->topLevelItem(0)->text(1), QStringLiteral("Nieuw fonds"));
        scheme(app, 1, 1)->setUitvoerder(QStringLiteral("Ander fonds"));
        Q_EMIT m_gegevens->InfoChanged();
        QCOMPARE(m_view->topLevelItem(0)->text(1), QStringLiteral("Ander fonds"));
    }

    void aanvragerChangedReselectsInTheList()
    {
        auto app = newCase(1, 1);
        m_main->SetApplication(app);
        qint16 anv = 2, pen = 1;
        Q_EMIT m_gegevens->AanvragerChanged(anv, pen);
        QCOMPARE(selectedKey(m_view), QStringLiteral("@201"));
        QCOMPARE(m_main->shownAanvrager(), qint16(2));
        QCOMPARE(m_main->shownPensioen(), qint16(1));
    }

    void terminationRemovesMarkedSchemes()
    {
        auto app = newCase(4, 2);
        for (qint16 k = 1; k <= 4; ++k)
            scheme(app, 1, k)->setUitvoerder(QStringLiteral("A%1").arg(k));
        scheme(app, 1, 2)->setRemoveOnClose(true);
        scheme(app, 1, 3)->setRemoveOnClose(true);   // adjacent to the one before
        scheme(app, 2, 2)->setRemoveOnClose(true);   // the last one of the partner
        m_main->SetApplication(app);
        m_main.reset();
        QCOMPARE(schemeCount(app, 1), 2);
        QCOMPARE(scheme(app, 1, 1)->Uitvoerder(), QStringLiteral("A1"));
        QCOMPARE(scheme(app, 1, 2)->Uitvoerder(), QStringLiteral("A4"));
        QCOMPARE(schemeCount(app, 2), 1);
    }

    void layoutFollowsTheList()
    {
        m_main->resize(1400, 900);
        QCOMPARE(m_list->pos(), QPoint(4, 4));
        QCOMPARE(m_gegevens->pos(), QPoint(4, 4 + m_list->height() + 4));
        QCOMPARE(m_toezegging->pos(),
                 QPoint(m_gegevens->x() + m_gegevens->width() + 8, m_gegevens->y()));
        // The commitments panel takes the width the scheme panel leaves; the screen's preferred
        // width holds both panels at theirs.
        QCOMPARE(m_toezegging->geometry().right(), m_main->width() - 1 - 4);
        QVERIFY(m_main->sizeHint().width()
                >= 4 + m_gegevens->sizeHint().width() + 8 + m_toezegging->sizeHint().width() + 4);
    }

    void backColorKeepsExplicitlyColouredChildren()
    {
        const QColor red(200, 0, 0);
        m_toezegging->setBackColor(red);
        const QColor blue(10, 20, 200);
        m_main->setBackColor(blue);
        QCOMPARE(m_main->BackColor(), blue);
        QCOMPARE(m_list->BackColor(), blue);
        QCOMPARE(m_gegevens->BackColor(), blue);
        QCOMPARE(m_toezegging->BackColor(), red);
    }

private:
    std::unique_ptr<MessageRecorder> m_messages;
    std::unique_ptr<PensMain> m_main;
    PensList *m_list = nullptr;
    QTreeWidget *m_view = nullptr;
    PensGeg *m_gegevens = nullptr;
    PensToez *m_toezegging = nullptr;
};

QTEST_MAIN(TestPensMain)
#include "tst_pensmain.moc"
