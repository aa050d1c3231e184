// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The disability benefit schedule dialog, driven as a user does against the reference host's three
// kinds of schedule owner: a capital cover, an insured person and a pension record of a case.

#include "frmaouitkering.h"
#include "hostapplication.h"
#include "textbox.h"
#include "usersim.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QJsonDocument>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTreeWidget>

using namespace VandrelPensioen;
using namespace VandrelApplication;
using AoStaffel::Row;
using TestSupport::MessageRecorder;
using TestSupport::showActive;
using VandrelControl::TextBox;

Q_DECLARE_METATYPE(VandrelPensioen::AoStaffel::Row)

namespace {

QString render(const QList<Row> &rows)
{
    QStringList parts;
    for (const Row &r : rows)
        parts << QStringLiteral("%1-%2:%3").arg(r.vanaf).arg(r.tot).arg(r.uitkering);
    return parts.join(QStringLiteral(" | "));
}

// One schedule owner with the case it belongs to (a capital cover or insured person stands alone,
// but the dialog still gets the host's Application for its error reports).
struct Owner
{
    QString kind;
    std::shared_ptr<Zarnoveld::HostApplication> app;
    KapitaalPtr kapitaal;
    VerzekerdePtr verzekerde;
    PensioenPtr pensioen;

    AoUitkeringOwner *get() const
    {
        if (kapitaal)
            return kapitaal.get();
        if (verzekerde)
            return verzekerde.get();
        return pensioen.get();
    }
    bool hasRvc() const { return !verzekerde; }

    void bind(frmAoUitkering &dialog) const
    {
        dialog.setApplication(app);
        if (kapitaal)
            dialog.setKapitaal(kapitaal);
        else if (verzekerde)
            dialog.setVerzekerde(verzekerde);
        else
            dialog.setPensioen(pensioen);
    }

    void setRows(const QList<Row> &rows) const
    {
        AoUitkeringOwner *o = get();
        while (o->AoUitkeringItem(1))
            o->AoUitkeringDelete(1);
        for (const Row &r : rows) {
            const AoUitkeringPtr row = o->AoUitkeringItem(o->AoUitkeringAdd());
            row->setPc_AoVanaf(r.vanaf);
            row->setPc_AoTot(r.tot);
            row->setPc_Uitkering(r.uitkering);
        }
    }

    QList<Row> rows() const
    {
        QList<Row> result;
        for (qint16 i = 1;; ++i) {
            const AoUitkeringPtr row = get()->AoUitkeringItem(i);
            if (!row)
                break;
            result.append({row->Pc_AoVanaf(), row->Pc_AoTot(), row->Pc_Uitkering()});
        }
        return result;
    }

    void setRvc(int code, float limit, float benefit) const
    {
        get()->SetProperty(QStringLiteral("Cd_RvcAfwijking"), QVariant::fromValue(qint32(code)));
        get()->SetProperty(QStringLiteral("Pc_RvcAfwijking"), QVariant::fromValue(limit));
        get()->SetProperty(QStringLiteral("Pc_RvcUitkering"), QVariant::fromValue(benefit));
    }
    QString rvc() const
    {
        return QStringLiteral("%1/%2/%3")
            .arg(get()->Property(QStringLiteral("Cd_RvcAfwijking")).toInt())
            .arg(get()->Property(QStringLiteral("Pc_RvcAfwijking")).toDouble())
            .arg(get()->Property(QStringLiteral("Pc_RvcUitkering")).toDouble());
    }
};

// uitkeringObv 2 allows a staffel; aoDekking 16 makes the benefit end at the upper threshold.
Owner makeOwner(const QString &kind, int uitkeringObv = 2, int aoDekking = 0)
{
    Owner o;
    o.kind = kind;
    o.app = Zarnoveld::HostApplication::createInMemory();
    if (kind == QLatin1String("Kapitaal")) {
        o.kapitaal = Zarnoveld::HostApplication::createKapitaal();
        o.kapitaal->setCd_UitkeringObv(uitkeringObv);
        o.kapitaal->setCd_AoDekking(aoDekking);
    } else if (kind == QLatin1String("Verzekerde")) {
        o.verzekerde = Zarnoveld::HostApplication::createVerzekerde();
    } else {
        const AanvragerPtr aanvrager = o.app->Get_Dossier()->Get_Aanvrager(1);
        o.pensioen = aanvrager->Get_Pensioen(aanvrager->AddPension());
        o.pensioen->setCd_UitkeringObv(uitkeringObv);
    }
    return o;
}

const QList<Row> kJoining = {{0, 35, 0}, {35, 80, 50}, {80, 100, 100}};

} // namespace

class TstAoUitkering : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<frmAoUitkering> open(const Owner &owner)
    {
        auto dialog = std::make_unique<frmAoUitkering>();
        owner.bind(*dialog);
        dialog->Fill_Form();
        return dialog;
    }

    template <typename T>
    static T *w(QWidget *dialog, const char *name)
    {
        return TestSupport::find<T>(dialog, QString::fromLatin1(name));
    }
    static TextBox *tb(QWidget *dialog, const char *name) { return w<TextBox>(dialog, name); }
    static QTreeWidget *list(QWidget *dialog) { return w<QTreeWidget>(dialog, "lvwStaffel"); }

    // The list as the user sees it: "from | to | benefit" per row.
    static QStringList shown(QWidget *dialog)
    {
        QStringList rows;
        QTreeWidget *l = list(dialog);
        for (int i = 0; i < l->topLevelItemCount(); ++i) {
            const QTreeWidgetItem *item = l->topLevelItem(i);
            rows << item->text(1) + QLatin1Char(' ') + item->text(2) + QLatin1Char(' ') + item->text(3);
        }
        return rows;
    }

    static void chooseMode(QWidget *dialog, int index)
    {
        QComboBox *combo = w<QComboBox>(dialog, "cboUitkeringObv");
        combo->setFocus(Qt::MouseFocusReason);
        QApplication::processEvents();
        QTest::keyClick(combo, index < combo->currentIndex() ? Qt::Key_Up : Qt::Key_Down);
        QCOMPARE(combo->currentIndex(), index);
    }

    static void clickRow(QWidget *dialog, int row)
    {
        QTreeWidget *l = list(dialog);
        QTreeWidgetItem *item = l->topLevelItem(row);
        QVERIFY(item);
        QTest::mouseClick(l->viewport(), Qt::LeftButton, Qt::NoModifier,
                          l->visualItemRect(item).center());
        QCOMPARE(l->currentItem(), item);
    }

    static void addOwners()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("Kapitaal") << QStringLiteral("Kapitaal");
        QTest::newRow("Verzekerde") << QStringLiteral("Verzekerde");
        QTest::newRow("Pensioen") << QStringLiteral("Pensioen");
    }

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale(QLocale::Dutch, QLocale::Netherlands));
    }

    // ----------------------------------------------------------------- rules without a form

    void defaultScheduleRules()
    {
        using AoStaffel::OwnerKind;
        const auto staffel = AoStaffel::ModeStaffel;
        QCOMPARE(render(AoStaffel::defaultSchedule(staffel, OwnerKind::Kapitaal, false, 25, 80)),
                 render({{0, 25, 0}, {35, 45, 40}, {45, 55, 50}, {55, 65, 60}, {65, 80, 75},
                         {80, 100, 100}}));
        QCOMPARE(render(AoStaffel::defaultSchedule(staffel, OwnerKind::Pensioen, false, 40, 60)),
                 render({{0, 40, 0}, {40, 45, 40}, {45, 55, 50}, {55, 60, 60}, {60, 100, 100}}));
        QCOMPARE(render(AoStaffel::defaultSchedule(staffel, OwnerKind::Verzekerde, false, 35, 90)),
                 render({{0, 35, 0}, {45, 80, 50}, {90, 100, 100}}));
        QCOMPARE(render(AoStaffel::defaultSchedule(staffel, OwnerKind::Kapitaal, true, 30, 70)),
                 render({{0, 30, 0}, {35, 70, 70}, {70, 100, 0}}));
        QCOMPARE(render(AoStaffel::defaultSchedule(AoStaffel::ModeWerkelijkAo, OwnerKind::Kapitaal,
                                                   false, 35, 80)),
                 render({{0, 35, 0}, {35, 80, -1}, {80, 100, 100}}));
        QCOMPARE(render(AoStaffel::defaultSchedule(AoStaffel::ModeWerkelijkAo, OwnerKind::Kapitaal,
                                                   true, 35, 80)),
                 render({{0, 35, 0}, {35, 80, -1}, {80, 100, 0}}));
    }

    void scheduleFaultRules_data()
    {
        QTest::addColumn<QList<Row>>("rows");
        QTest::addColumn<QString>("fault");
        QTest::newRow("joining") << kJoining << QString();
        QTest::newRow("gap") << QList<Row>{{0, 35, 0}, {40, 100, 100}}
                             << QStringLiteral("Regel 1 en regel 2 van de staffel sluiten niet op elkaar aan.");
        QTest::newRow("overlap") << QList<Row>{{0, 40, 0}, {35, 100, 100}}
                                 << QStringLiteral("Regel 1 en regel 2 van de staffel overlappen elkaar.");
        QTest::newRow("first from 5") << QList<Row>{{5, 35, 0}, {35, 80, 50}, {80, 100, 100}}
                                      << QStringLiteral("'AO% vanaf' moet 0% zijn in de 1e regel van de staffel.");
        QTest::newRow("ends 99.5") << QList<Row>{{0, 35, 0}, {35, 99.5f, 100}}
                                   << QStringLiteral("'AO% tot' moet 100% zijn in de laatste regel van de staffel.");
        QTest::newRow("empty") << QList<Row>{}
                               << QStringLiteral("'AO% tot' moet 100% zijn in de laatste regel van de staffel.");
        QTest::newRow("negative first") << QList<Row>{{-5, 35, 0}, {35, 100, 100}}
                                        << QStringLiteral("Regel 0 en regel 1 van de staffel overlappen elkaar.");
        QTest::newRow("only first fault") << QList<Row>{{0, 30, 0}, {40, 50, 0}, {45, 100, 0}}
                                          << QStringLiteral("Regel 1 en regel 2 van de staffel sluiten niet op elkaar aan.");
    }
    void scheduleFaultRules()
    {
        QFETCH(QList<Row>, rows);
        QFETCH(QString, fault);
        QCOMPARE(AoStaffel::scheduleFault(rows), fault);
    }

    void textRules()
    {
        QCOMPARE(AoStaffel::percentageRangeText(0, 100), QStringLiteral("Percentage van 0% t/m 100% invullen."));
        QCOMPARE(AoStaffel::percentageRangeText(12.5f, 80), QStringLiteral("Percentage van 12,5% t/m 80% invullen."));
        QCOMPARE(AoStaffel::percentageRangeText(12.3f, 99.9f), QStringLiteral("Percentage van 12,3% t/m 99,9% invullen."));
        QCOMPARE(AoStaffel::rowKey(35, 80), QStringLiteral("#00350080"));
        QCOMPARE(AoStaffel::rowKey(0, 100), QStringLiteral("#00000100"));
        // The zero-filled key puts the sign before the zeros, so negatives order oddly (kept).
        QCOMPARE(AoStaffel::rowKey(-5, 35), QStringLiteral("#-00050035"));
        QVERIFY(AoStaffel::rowKey(-5, 0) < AoStaffel::rowKey(-10, 0));
        QCOMPARE(AoStaffel::cellText(-1, true), QStringLiteral("AO%"));
        QCOMPARE(AoStaffel::cellText(-1, false), QStringLiteral("-1%"));
        QCOMPARE(AoStaffel::cellText(99.5f, false), QStringLiteral("99,5%"));
        QCOMPARE(AoStaffel::cellValue(QStringLiteral("AO%")), -1.f);
        QCOMPARE(AoStaffel::cellValue(QStringLiteral("99,5%")), 99.5f);
    }

    // ----------------------------------------------------------------- loading

    void emptyOwnerGivesEmptyStaffel_data() { addOwners(); }
    void emptyOwnerGivesEmptyStaffel()
    {
        QFETCH(QString, kind);
        const Owner owner = makeOwner(kind);
        owner.setRows(kJoining);
        auto dialog = open(owner);
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringGeen")->value(), 35.0);
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringVolledig")->value(), 80.0);

        // Loading again after the owner lost its rows: the list is empty, the thresholds stay.
        owner.setRows({});
        dialog->Fill_Form();
        QVERIFY(showActive(dialog.get()));
        QCOMPARE(list(dialog.get())->topLevelItemCount(), 0);
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringGeen")->value(), 35.0);
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringVolledig")->value(), 80.0);
        QComboBox *combo = w<QComboBox>(dialog.get(), "cboUitkeringObv");
        QCOMPARE(combo->currentText(), QStringLiteral("Staffel"));
        QCOMPARE(combo->currentData().toInt(), 2);
        QVERIFY(combo->isEnabled());
        QVERIFY(w<QPushButton>(dialog.get(), "cmdAdd")->isEnabled());
        QVERIFY(!w<QPushButton>(dialog.get(), "cmdDelete")->isEnabled());
        QCOMPARE(owner.rows().size(), 0);
    }

    void comboItems()
    {
        const Owner owner = makeOwner(QStringLiteral("Kapitaal"));
        auto dialog = open(owner);
        QComboBox *combo = w<QComboBox>(dialog.get(), "cboUitkeringObv");
        QCOMPARE(combo->count(), 2);
        QCOMPARE(combo->itemText(0), QStringLiteral("Werkelijk AO%"));
        QCOMPARE(combo->itemData(0).toInt(), 1);
        QCOMPARE(combo->itemText(1), QStringLiteral("Staffel"));
        QCOMPARE(combo->itemData(1).toInt(), 2);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Specificatie AO uitkering"));
        QCOMPARE(w<QGroupBox>(dialog.get(), "fraUitkeringsgrenzen")->title(), QStringLiteral("Uitkeringsgrenzen"));
        QCOMPARE(w<QLabel>(dialog.get(), "lblUitkeringObv")->text(), QStringLiteral("Gedeeltelijke uitkering o.b.v."));
        QCOMPARE(w<QLabel>(dialog.get(), "lblPcUitkeringGeen")->text(), QStringLiteral("Minimaal percentage arbeidsongeschikt"));
        QCOMPARE(w<QPushButton>(dialog.get(), "cmdAdd")->toolTip(), QStringLiteral("Toevoegen staffelregel"));
        QCOMPARE(w<QPushButton>(dialog.get(), "cmdDelete")->toolTip(), QStringLiteral("Verwijderen staffelregel"));
    }

    void applicationIconAndPresetCancel()
    {
        // A host with an icon of its own: the dialog shows it.
        class IconHost : public Application
        {
        public:
            DossierPtr Get_Dossier() override { return nullptr; }
            ParametersPtr Get_Parameters() override { return nullptr; }
            void ReportError(ErrorRecord &) override {}
            QString Title() const override { return QStringLiteral("Host"); }
            QIcon Icon() const override
            {
                QPixmap pixmap(16, 16);
                pixmap.fill(Qt::red);
                return QIcon(pixmap);
            }
        };
        auto host = std::make_shared<IconHost>();
        const Owner owner = makeOwner(QStringLiteral("Kapitaal"));
        auto dialog = open(owner);
        dialog->setApplication(host);
        QCOMPARE(dialog->windowIcon().pixmap(16).toImage().pixelColor(8, 8), QColor(Qt::red));
        // An empty schedule fails the full check, but a Cancel set by the caller stays set and
        // nothing more is checked or shown.
        MessageRecorder messages;
        bool Cancel = true;
        dialog->Validation(Cancel, 0);
        QVERIFY(Cancel);
        QCOMPARE(messages.count(), 0);
        Cancel = false;
        dialog->Validation(Cancel, 0);
        QVERIFY(Cancel);
        QCOMPARE(messages.lastText(), QStringLiteral("'AO% tot' moet 100% zijn in de laatste regel van de staffel."));
    }

    void listColumnsAndKeys()
    {
        const Owner owner = makeOwner(QStringLiteral("Pensioen"));
        // Stored out of order: the list shows them ascending on the hidden key.
        owner.setRows({{80, 100, 100}, {0, 35, 0}, {35, 80, 50}});
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        QTreeWidget *l = list(dialog.get());
        QCOMPARE(l->columnCount(), 4);
        QCOMPARE(l->headerItem()->text(1), QStringLiteral("%AO van"));
        QCOMPARE(l->headerItem()->text(2), QStringLiteral("%AO tot"));
        QCOMPARE(l->headerItem()->text(3), QStringLiteral("%uitkering"));
        QCOMPARE(l->columnWidth(0), 0);
        QVERIFY(l->columnWidth(1) > 20);
        QCOMPARE(l->columnWidth(1), l->columnWidth(3));
        QCOMPARE(l->headerItem()->textAlignment(2) & Qt::AlignHCenter, int(Qt::AlignHCenter));
        QCOMPARE(l->topLevelItem(0)->textAlignment(3) & Qt::AlignHCenter, int(Qt::AlignHCenter));
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 35% 0%", "35% 80% 50%", "80% 100% 100%"}));
        QCOMPARE(l->topLevelItem(1)->text(0), QStringLiteral("#00350080"));
        QVERIFY(l->isHeaderHidden() == false);
        // The first row is selected and shown in the row fields.
        QCOMPARE(l->currentItem(), l->topLevelItem(0));
        QCOMPARE(tb(dialog.get(), "txtPcTot")->value(), 35.0);
    }

    void minusOneSelectsWerkelijkAo_data() { addOwners(); }
    void minusOneSelectsWerkelijkAo()
    {
        QFETCH(QString, kind);
        const Owner owner = makeOwner(kind);
        owner.setRows({{0, 30, 0}, {30, 75, -1}, {75, 100, 100}});
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        QComboBox *combo = w<QComboBox>(dialog.get(), "cboUitkeringObv");
        QCOMPARE(combo->currentIndex(), 0);
        QCOMPARE(combo->currentText(), QStringLiteral("Werkelijk AO%"));
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringGeen")->value(), 30.0);
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringVolledig")->value(), 75.0);
        QCOMPARE(w<QLabel>(dialog.get(), "lblPcUitkeringVolledig")->text(), QStringLiteral("Volledige uitkering vanaf"));
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 30% 0%", "30% 75% AO%", "75% 100% 100%"}));

        // In this mode the row fields are empty and disabled; only the thresholds can be edited.
        for (const char *name : {"txtPcVanaf", "txtPcTot", "txtPcUitkering"}) {
            QVERIFY2(!tb(dialog.get(), name)->isEnabled(), name);
            QVERIFY2(tb(dialog.get(), name)->text().isEmpty(), name);
        }
        QVERIFY(!w<QPushButton>(dialog.get(), "cmdAdd")->isEnabled());
        QVERIFY(!w<QPushButton>(dialog.get(), "cmdDelete")->isEnabled());
        QVERIFY(tb(dialog.get(), "txtPcUitkeringGeen")->isEnabled());
        QVERIFY(tb(dialog.get(), "txtPcUitkeringVolledig")->isEnabled());
        // Clicking a row changes nothing there either.
        clickRow(dialog.get(), 1);
        QVERIFY(tb(dialog.get(), "txtPcTot")->text().isEmpty());
    }

    void rowWith100FillsVolledigLaterWins()
    {
        const Owner owner = makeOwner(QStringLiteral("Kapitaal"));
        owner.setRows({{0, 25, 0}, {25, 50, 100}, {50, 70, 60}, {70, 100, 100}});
        auto dialog = open(owner);
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringVolledig")->value(), 70.0);
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringGeen")->value(), 25.0);
        QCOMPARE(w<QComboBox>(dialog.get(), "cboUitkeringObv")->currentIndex(), 1);
    }

    void benefitEndsAtThreshold()
    {
        const Owner owner = makeOwner(QStringLiteral("Kapitaal"), 2, 16);
        owner.setRows({{0, 30, 0}, {30, 70, 70}, {70, 100, 0}});
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        QVERIFY(!tb(dialog.get(), "txtPcUitkeringGeen")->isEnabled());
        QVERIFY(!tb(dialog.get(), "txtPcUitkeringVolledig")->isEnabled());
        QCOMPARE(w<QLabel>(dialog.get(), "lblPcUitkeringVolledig")->text(), QStringLiteral("Geen uitkering vanaf"));
        // The 0 % rows supply the threshold; the last one wins.
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringVolledig")->value(), 70.0);
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringGeen")->value(), 30.0);

        // The default schedules end with a 0 % band.
        chooseMode(dialog.get(), 0);
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 30% 0%", "30% 70% AO%", "70% 100% 0%"}));
        chooseMode(dialog.get(), 1);
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 30% 0%", "35% 70% 70%", "70% 100% 0%"}));

        // The same capital cover without code 16 pays in full from the upper threshold.
        const Owner plain = makeOwner(QStringLiteral("Kapitaal"), 2, 0);
        plain.setRows({{0, 30, 0}, {30, 70, 70}, {70, 100, 0}});
        auto other = open(plain);
        QCOMPARE(w<QLabel>(other.get(), "lblPcUitkeringVolledig")->text(), QStringLiteral("Volledige uitkering vanaf"));
        QVERIFY(tb(other.get(), "txtPcUitkeringGeen")->isEnabled());
        QVERIFY(tb(other.get(), "txtPcUitkeringVolledig")->isEnabled());
        QCOMPARE(tb(other.get(), "txtPcUitkeringVolledig")->text(), QString());
    }

    void staffelNotAllowed_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("Kapitaal") << QStringLiteral("Kapitaal");
        QTest::newRow("Pensioen") << QStringLiteral("Pensioen");
    }
    void staffelNotAllowed()
    {
        QFETCH(QString, kind);
        const Owner owner = makeOwner(kind, 1);
        owner.setRows({{0, 30, 0}, {30, 75, -1}, {75, 100, 100}});
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        QComboBox *combo = w<QComboBox>(dialog.get(), "cboUitkeringObv");
        QCOMPARE(combo->currentIndex(), -1);
        QVERIFY(!combo->isEnabled());
        QVERIFY(!tb(dialog.get(), "txtPcUitkeringVolledig")->isEnabled());
        QVERIFY(tb(dialog.get(), "txtPcUitkeringGeen")->isEnabled());
        QVERIFY(!w<QPushButton>(dialog.get(), "cmdAdd")->isEnabled());
        QVERIFY(!tb(dialog.get(), "txtPcVanaf")->isEnabled());

        // With the upper threshold disabled, "Minimaal AO%" goes up to 100.
        MessageRecorder messages;
        TextBox *geen = tb(dialog.get(), "txtPcUitkeringGeen");
        TestSupport::enter(geen, QStringLiteral("100,5"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Minimaal AO%"));
        QCOMPARE(messages.lastText(), QStringLiteral("Percentage van 0% t/m 100% invullen."));
        QCOMPARE(QApplication::focusWidget(), geen);
        TestSupport::enter(geen, QStringLiteral("100"));
        QCOMPARE(messages.count(), 1);
        // Without a mode the schedule is not rebuilt: row 1's end and row 2's start follow.
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 100% 0%", "75% 100% 100%", "100% 75% AO%"}));
    }

    void geenWithTwoRowsMovesVolledig()
    {
        const Owner owner = makeOwner(QStringLiteral("Pensioen"), 1);
        owner.setRows({{0, 30, 0}, {30, 100, 100}});
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        TestSupport::enter(tb(dialog.get(), "txtPcUitkeringGeen"), QStringLiteral("40"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 40% 0%", "40% 100% 100%"}));
        QCOMPARE(tb(dialog.get(), "txtPcUitkeringVolledig")->value(), 40.0);
        // Nothing reaches the owner before OK.
        QCOMPARE(render(owner.rows()), render({{0, 30, 0}, {30, 100, 100}}));
        TestSupport::click(w<QPushButton>(dialog.get(), "cmdOK"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QCOMPARE(render(owner.rows()), render({{0, 40, 0}, {40, 100, 100}}));
    }

    // ----------------------------------------------------------------- default schedules

    void defaultStaffelKapitaal_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QStringList>("expected");
        const QStringList bands{"0% 25% 0%", "35% 45% 40%", "45% 55% 50%", "55% 65% 60%",
                                "65% 80% 75%", "80% 100% 100%"};
        QTest::newRow("Kapitaal") << QStringLiteral("Kapitaal") << bands;
        QTest::newRow("Pensioen") << QStringLiteral("Pensioen") << bands;
        QTest::newRow("Verzekerde") << QStringLiteral("Verzekerde")
                                    << QStringList{"0% 25% 0%", "45% 80% 50%", "80% 100% 100%"};
    }
    void defaultStaffelKapitaal()
    {
        QFETCH(QString, kind);
        QFETCH(QStringList, expected);
        const Owner owner = makeOwner(kind);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        TestSupport::enter(tb(dialog.get(), "txtPcUitkeringVolledig"), QStringLiteral("80"));
        TestSupport::enter(tb(dialog.get(), "txtPcUitkeringGeen"), QStringLiteral("25"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(shown(dialog.get()), expected);
        QCOMPARE(list(dialog.get())->currentItem(), list(dialog.get())->topLevelItem(0));

        // The gap 25-35 stays, and OK reports it without writing anything.
        TestSupport::click(w<QPushButton>(dialog.get(), "cmdOK"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Ongeldige invoer"));
        QCOMPARE(messages.lastText(), QStringLiteral("Regel 1 en regel 2 van de staffel sluiten niet op elkaar aan."));
        QVERIFY(dialog->isVisible());
        QCOMPARE(owner.rows().size(), 0);
    }

    void defaultWerkelijkAo_data() { addOwners(); }
    void defaultWerkelijkAo()
    {
        QFETCH(QString, kind);
        const Owner owner = makeOwner(kind);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        chooseMode(dialog.get(), 0);
        TestSupport::enter(tb(dialog.get(), "txtPcUitkeringVolledig"), QStringLiteral("80"));
        TestSupport::enter(tb(dialog.get(), "txtPcUitkeringGeen"), QStringLiteral("35"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 35% 0%", "35% 80% AO%", "80% 100% 100%"}));

        TestSupport::click(w<QPushButton>(dialog.get(), "cmdOK"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QVERIFY(!dialog->isVisible());
        QCOMPARE(render(owner.rows()), render({{0, 35, 0}, {35, 80, -1}, {80, 100, 100}}));

        // Opened again, the saved schedule comes back in the same mode.
        auto again = open(owner);
        QCOMPARE(w<QComboBox>(again.get(), "cboUitkeringObv")->currentIndex(), 0);
        QCOMPARE(shown(again.get()), (QStringList{"0% 35% 0%", "35% 80% AO%", "80% 100% 100%"}));
    }

    void changingModeReplacesEditedSchedule()
    {
        const Owner owner = makeOwner(QStringLiteral("Kapitaal"));
        owner.setRows(kJoining);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        TestSupport::enter(tb(dialog.get(), "txtPcUitkering"), QStringLiteral("10"));
        QCOMPARE(shown(dialog.get()).first(), QStringLiteral("0% 35% 10%"));
        chooseMode(dialog.get(), 0);
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 35% 0%", "35% 80% AO%", "80% 100% 100%"}));
        chooseMode(dialog.get(), 1);
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 35% 0%", "35% 45% 40%", "45% 55% 50%",
                                                   "55% 65% 60%", "65% 80% 75%", "80% 100% 100%"}));
        QCOMPARE(tb(dialog.get(), "txtPcTot")->value(), 35.0);
        QCOMPARE(messages.count(), 0);
        QCOMPARE(render(owner.rows()), render(kJoining));
    }

    // ----------------------------------------------------------------- the schedule check on OK

    void okChecksSchedule_data()
    {
        QTest::addColumn<int>("uitkeringObv");
        QTest::addColumn<QList<Row>>("rows");
        QTest::addColumn<QString>("fault");
        QTest::newRow("joining") << 2 << kJoining << QString();
        // Two-row schedules have their threshold from the 100 % row; with the staffel not allowed
        // the thresholds do not get in the way of the schedule check.
        QTest::newRow("gap") << 1 << QList<Row>{{0, 35, 0}, {40, 100, 100}}
                             << QStringLiteral("Regel 1 en regel 2 van de staffel sluiten niet op elkaar aan.");
        QTest::newRow("overlap") << 1 << QList<Row>{{0, 40, 0}, {35, 100, 100}}
                                 << QStringLiteral("Regel 1 en regel 2 van de staffel overlappen elkaar.");
        QTest::newRow("first from 5") << 2 << QList<Row>{{5, 35, 0}, {35, 80, 50}, {80, 100, 100}}
                                      << QStringLiteral("'AO% vanaf' moet 0% zijn in de 1e regel van de staffel.");
        QTest::newRow("ends 99.5") << 2 << QList<Row>{{0, 35, 0}, {35, 80, 50}, {80, 99.5f, 100}}
                                   << QStringLiteral("'AO% tot' moet 100% zijn in de laatste regel van de staffel.");
        QTest::newRow("empty") << 2 << QList<Row>{}
                               << QStringLiteral("'AO% tot' moet 100% zijn in de laatste regel van de staffel.");
    }
    void okChecksSchedule()
    {
        QFETCH(int, uitkeringObv);
        QFETCH(QList<Row>, rows);
        QFETCH(QString, fault);
        for (const QString &kind : {QStringLiteral("Kapitaal"), QStringLiteral("Pensioen")}) {
            const Owner owner = makeOwner(kind, uitkeringObv);
            owner.setRows(rows);
            auto dialog = open(owner);
            QVERIFY(showActive(dialog.get()));
            MessageRecorder messages;
            TestSupport::click(w<QPushButton>(dialog.get(), "cmdOK"));
            if (fault.isEmpty()) {
                QCOMPARE(messages.count(), 0);
                QCOMPARE(dialog->result(), int(QDialog::Accepted));
            } else {
                QCOMPARE(messages.count(), 1);
                QCOMPARE(messages.lastTitle(), QStringLiteral("Ongeldige invoer"));
                QCOMPARE(messages.lastText(), fault);
                QCOMPARE(messages.last().icon, VandrelControl::MessageBox::Icon::Exclamation);
                QVERIFY(dialog->isVisible());
                QCOMPARE(QApplication::focusWidget(), list(dialog.get()));
            }
            QCOMPARE(render(owner.rows()), render(rows));
        }
    }

    void negativeFirstRowGivesRegelZero()
    {
        const Owner owner = makeOwner(QStringLiteral("Verzekerde"));
        owner.setRows(kJoining);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        TestSupport::enter(tb(dialog.get(), "txtPcVanaf"), QStringLiteral("-5"));
        QCOMPARE(messages.count(), 0);   // no range check for the from percentage
        QCOMPARE(shown(dialog.get()).first(), QStringLiteral("-5% 35% 0%"));
        TestSupport::click(w<QPushButton>(dialog.get(), "cmdOK"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Ongeldige invoer"));
        QCOMPARE(messages.lastText(), QStringLiteral("Regel 0 en regel 1 van de staffel overlappen elkaar."));
        QCOMPARE(render(owner.rows()), render(kJoining));
    }

    // ----------------------------------------------------------------- field checks

    void minimaalAoBounds()
    {
        const Owner owner = makeOwner(QStringLiteral("Kapitaal"));
        owner.setRows(kJoining);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        TextBox *geen = tb(dialog.get(), "txtPcUitkeringGeen");
        TestSupport::enter(geen, QStringLiteral("0"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(shown(dialog.get()).first(), QStringLiteral("0% 0% 0%"));
        QCOMPARE(shown(dialog.get()).size(), 6);
        TestSupport::enter(geen, QStringLiteral("80,5"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Minimaal AO%"));
        QCOMPARE(messages.lastText(), QStringLiteral("Percentage van 0% t/m 80% invullen."));
        QCOMPARE(messages.last().icon, VandrelControl::MessageBox::Icon::Exclamation);
        QCOMPARE(QApplication::focusWidget(), geen);
        QCOMPARE(shown(dialog.get()).size(), 6);
        TestSupport::enter(geen, QStringLiteral("80"));   // equal to "Volledige uitkering vanaf"
        QCOMPARE(messages.count(), 1);
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 80% 0%", "80% 100% 100%"}));
        QCOMPARE(render(owner.rows()), render(kJoining));
    }

    void volledigBoundsAndRows()
    {
        const Owner owner = makeOwner(QStringLiteral("Pensioen"));
        owner.setRows(kJoining);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        TextBox *volledig = tb(dialog.get(), "txtPcUitkeringVolledig");
        TestSupport::enter(volledig, QStringLiteral("30"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Volledige uitkering vanaf"));
        QCOMPARE(messages.lastText(), QStringLiteral("Percentage van 35% t/m 100% invullen."));
        QCOMPARE(QApplication::focusWidget(), volledig);
        // Not rebuilt: only the row before the last and the last row follow.
        TestSupport::enter(volledig, QStringLiteral("70"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 35% 0%", "35% 70% 50%", "70% 100% 100%"}));
    }

    void rowFieldChecks()
    {
        const Owner owner = makeOwner(QStringLiteral("Kapitaal"));
        owner.setRows(kJoining);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        clickRow(dialog.get(), 2);
        QCOMPARE(tb(dialog.get(), "txtPcVanaf")->value(), 80.0);
        TextBox *uitkering = tb(dialog.get(), "txtPcUitkering");
        TestSupport::enter(uitkering, QStringLiteral("0"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(shown(dialog.get()).last(), QStringLiteral("80% 100% 0%"));
        TestSupport::enter(uitkering, QStringLiteral("100"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(shown(dialog.get()).last(), QStringLiteral("80% 100% 100%"));
        TestSupport::enter(uitkering, QStringLiteral("100,5"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Uikering%"));
        QCOMPARE(messages.lastText(), QStringLiteral("Percentage van 0% t/m 100% invullen."));
        QCOMPARE(QApplication::focusWidget(), uitkering);
        QCOMPARE(shown(dialog.get()).last(), QStringLiteral("80% 100% 100%"));
        TestSupport::enter(uitkering, QStringLiteral("100"));

        TextBox *tot = tb(dialog.get(), "txtPcTot");
        TestSupport::enter(tot, QStringLiteral("70"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastTitle(), QStringLiteral("AO% tot"));
        QCOMPARE(messages.lastText(), QStringLiteral("Percentage van 80% t/m 100% invullen."));
        QCOMPARE(QApplication::focusWidget(), tot);
        TestSupport::enter(tot, QStringLiteral("99,5"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(shown(dialog.get()).last(), QStringLiteral("80% 99,5% 100%"));
        QCOMPARE(render(owner.rows()), render(kJoining));
    }

    // A click on another row while a row field refuses its value leaves the entry where it is.
    void refusedFieldKeepsItsRow()
    {
        const Owner owner = makeOwner(QStringLiteral("Kapitaal"));
        owner.setRows(kJoining);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        TextBox *uitkering = tb(dialog.get(), "txtPcUitkering");
        TestSupport::typeInto(uitkering, QStringLiteral("120"));
        QTreeWidget *l = list(dialog.get());
        QTest::mouseClick(l->viewport(), Qt::LeftButton, Qt::NoModifier,
                          l->visualItemRect(l->topLevelItem(2)).center());
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Uikering%"));
        QCOMPARE(l->currentItem(), l->topLevelItem(0));
        QCOMPARE(uitkering->text(), QStringLiteral("120"));
        QCOMPARE(QApplication::focusWidget(), uitkering);
    }

    void editingKeepsOtherColumnsAndOrder()
    {
        const Owner owner = makeOwner(QStringLiteral("Verzekerde"));
        owner.setRows(kJoining);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        // Row 1 (0-35) gets to 90 and then from 50: each edit keeps the other two columns, and
        // the row sorts after 35-80.
        TestSupport::enter(tb(dialog.get(), "txtPcTot"), QStringLiteral("90"));
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 90% 0%", "35% 80% 50%", "80% 100% 100%"}));
        TestSupport::enter(tb(dialog.get(), "txtPcVanaf"), QStringLiteral("50"));
        QCOMPARE(shown(dialog.get()), (QStringList{"35% 80% 50%", "50% 90% 0%", "80% 100% 100%"}));
        QTreeWidget *l = list(dialog.get());
        QCOMPARE(l->currentItem(), l->topLevelItem(1));
        TestSupport::enter(tb(dialog.get(), "txtPcVanaf"), QStringLiteral("0"));
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 90% 0%", "35% 80% 50%", "80% 100% 100%"}));
        QCOMPARE(messages.count(), 0);
    }

    // ----------------------------------------------------------------- adding and deleting rows

    void addAndDeleteRows()
    {
        const Owner owner = makeOwner(QStringLiteral("Pensioen"));
        owner.setRows({{0, 100, 100}});
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        QPushButton *add = w<QPushButton>(dialog.get(), "cmdAdd");
        QPushButton *del = w<QPushButton>(dialog.get(), "cmdDelete");
        TestSupport::click(add);
        QTreeWidget *l = list(dialog.get());
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 0% 0%", "0% 100% 100%"}));
        QCOMPARE(l->currentItem(), l->topLevelItem(0));
        QCOMPARE(tb(dialog.get(), "txtPcTot")->text().isEmpty(), false);
        QCOMPARE(tb(dialog.get(), "txtPcTot")->value(), 0.0);

        // A new row is filled in through the row fields.
        TestSupport::enter(tb(dialog.get(), "txtPcTot"), QStringLiteral("40"));
        QCOMPARE(shown(dialog.get()), (QStringList{"0% 40% 0%", "0% 100% 100%"}));

        clickRow(dialog.get(), 1);
        TestSupport::click(del);
        QCOMPARE(shown(dialog.get()), QStringList{"0% 40% 0%"});
        QCOMPARE(l->currentItem(), l->topLevelItem(0));
        QCOMPARE(tb(dialog.get(), "txtPcTot")->value(), 40.0);
        QVERIFY(del->isEnabled());

        // After the last row: nothing selected, the row fields empty and disabled, only adding.
        TestSupport::click(del);
        QCOMPARE(l->topLevelItemCount(), 0);
        QVERIFY(!del->isEnabled());
        QVERIFY(add->isEnabled());
        for (const char *name : {"txtPcVanaf", "txtPcTot", "txtPcUitkering"}) {
            QVERIFY2(!tb(dialog.get(), name)->isEnabled(), name);
            QVERIFY2(tb(dialog.get(), name)->text().isEmpty(), name);
        }
        TestSupport::click(add);
        QCOMPARE(shown(dialog.get()), QStringList{"0% 0% 0%"});
        QVERIFY(del->isEnabled());
        QVERIFY(tb(dialog.get(), "txtPcVanaf")->isEnabled());
        QCOMPARE(messages.count(), 0);
        QCOMPARE(render(owner.rows()), render({{0, 100, 100}}));
    }

    // ----------------------------------------------------------------- the RVC part

    void verzekerdeHasNoRvc()
    {
        const Owner owner = makeOwner(QStringLiteral("Verzekerde"));
        owner.setRows(kJoining);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        QVERIFY(!w<QGroupBox>(dialog.get(), "fraRvcAfwijking")->isVisible());
        MessageRecorder messages;
        TestSupport::click(w<QPushButton>(dialog.get(), "cmdOK"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        // Any RVC property read or written on an insured person is an error the host reports.
        QCOMPARE(owner.app->reportedErrors().size(), 0);
        QCOMPARE(render(owner.rows()), render(kJoining));
    }

    void rvcLoads_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("code");
        QTest::newRow("Kapitaal vanaf") << QStringLiteral("Kapitaal") << 1;
        QTest::newRow("Kapitaal tot") << QStringLiteral("Kapitaal") << 2;
        QTest::newRow("Pensioen geen") << QStringLiteral("Pensioen") << 0;
        QTest::newRow("Pensioen tot") << QStringLiteral("Pensioen") << 2;
    }
    void rvcLoads()
    {
        QFETCH(QString, kind);
        QFETCH(int, code);
        const Owner owner = makeOwner(kind);
        owner.setRows(kJoining);
        owner.setRvc(code, 40, 30);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        QVERIFY(w<QGroupBox>(dialog.get(), "fraRvcAfwijking")->isVisible());
        QCOMPARE(w<QCheckBox>(dialog.get(), "chkRvcAfwijking")->text(), QStringLiteral("Afwijkend bij restverdiencapaciteit"));
        QCOMPARE(w<QCheckBox>(dialog.get(), "chkRvcAfwijking")->isChecked(), code != 0);
        QCOMPARE(w<QWidget>(dialog.get(), "fraRvcInhoud")->isVisible(), code != 0);
        QCOMPARE(w<QRadioButton>(dialog.get(), "optRvcAfwijkend_0")->isChecked(), code == 1);
        QCOMPARE(w<QRadioButton>(dialog.get(), "optRvcAfwijkend_1")->isChecked(), code == 2);
        QCOMPARE(tb(dialog.get(), "txtRvcAfwijkend_0")->isEnabled(), code == 1);
        QCOMPARE(w<QLabel>(dialog.get(), "lblPcRvc_0")->isEnabled(), code == 1);
        QCOMPARE(tb(dialog.get(), "txtRvcAfwijkend_1")->isEnabled(), code == 2);
        QCOMPARE(w<QLabel>(dialog.get(), "lblPcRvc_1")->isEnabled(), code == 2);
        if (code == 1) {
            QCOMPARE(tb(dialog.get(), "txtRvcAfwijkend_0")->value(), 40.0);
            QVERIFY(tb(dialog.get(), "txtRvcAfwijkend_1")->text().isEmpty());
        } else if (code == 2) {
            QCOMPARE(tb(dialog.get(), "txtRvcAfwijkend_1")->value(), 40.0);
            QVERIFY(tb(dialog.get(), "txtRvcAfwijkend_0")->text().isEmpty());
        }
        QCOMPARE(tb(dialog.get(), "txtRvcUitkering")->value(), 30.0);
        // Loading wrote nothing.
        QCOMPARE(owner.rvc(), QStringLiteral("%1/40/30").arg(code));

        // OK without changes stores what was loaded.
        MessageRecorder messages;
        TestSupport::click(w<QPushButton>(dialog.get(), "cmdOK"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(owner.rvc(), code == 0 ? QStringLiteral("0/0/0") : QStringLiteral("%1/40/30").arg(code));
        QCOMPARE(owner.app->reportedErrors().size(), 0);
    }

    void rvcRespondsAtOnce_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("Kapitaal") << QStringLiteral("Kapitaal");
        QTest::newRow("Pensioen") << QStringLiteral("Pensioen");
    }
    void rvcRespondsAtOnce()
    {
        QFETCH(QString, kind);
        const Owner owner = makeOwner(kind);
        owner.setRows(kJoining);
        owner.setRvc(1, 40, 30);
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        QCheckBox *chk = w<QCheckBox>(dialog.get(), "chkRvcAfwijking");
        QWidget *inhoud = w<QWidget>(dialog.get(), "fraRvcInhoud");
        TextBox *afw0 = tb(dialog.get(), "txtRvcAfwijkend_0");
        TextBox *afw1 = tb(dialog.get(), "txtRvcAfwijkend_1");
        TextBox *uitk = tb(dialog.get(), "txtRvcUitkering");
        QRadioButton *opt0 = w<QRadioButton>(dialog.get(), "optRvcAfwijkend_0");
        QRadioButton *opt1 = w<QRadioButton>(dialog.get(), "optRvcAfwijkend_1");

        const int tallWithRvc = dialog->height();
        TestSupport::click(chk);   // clear
        QVERIFY(!chk->isChecked());
        QVERIFY(!inhoud->isVisible());
        QVERIFY(!opt0->isChecked() && !opt1->isChecked());
        QCOMPARE(afw0->value(), 0.0);
        QCOMPARE(afw1->value(), 0.0);
        QCOMPARE(uitk->value(), 0.0);
        QVERIFY(dialog->height() < tallWithRvc);
        QCOMPARE(owner.rvc(), QStringLiteral("1/40/30"));

        TestSupport::click(chk);   // tick: "tot" with 50
        QVERIFY(chk->isChecked());
        QVERIFY(inhoud->isVisible());
        QVERIFY(opt1->isChecked());
        QCOMPARE(afw1->value(), 50.0);
        QVERIFY(afw1->isEnabled());
        QVERIFY(!afw0->isEnabled());
        QVERIFY(afw0->text().isEmpty());
        QCOMPARE(uitk->value(), 0.0);

        TestSupport::click(opt0);
        QVERIFY(opt0->isChecked());
        QVERIFY(afw0->isEnabled());
        QVERIFY(w<QLabel>(dialog.get(), "lblPcRvc_0")->isEnabled());
        QVERIFY(!afw1->isEnabled());
        QVERIFY(!w<QLabel>(dialog.get(), "lblPcRvc_1")->isEnabled());
        QVERIFY(afw1->text().isEmpty());
        TestSupport::enter(afw0, QStringLiteral("35"));
        TestSupport::enter(uitk, QStringLiteral("60"));
        QCOMPARE(owner.rvc(), QStringLiteral("1/40/30"));   // nothing before OK
        TestSupport::click(w<QPushButton>(dialog.get(), "cmdOK"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(owner.rvc(), QStringLiteral("1/35/60"));

        // Cleared and confirmed: all three become 0.
        auto again = open(owner);
        QVERIFY(showActive(again.get()));
        TestSupport::click(w<QCheckBox>(again.get(), "chkRvcAfwijking"));
        TestSupport::click(w<QPushButton>(again.get(), "cmdOK"));
        QCOMPARE(owner.rvc(), QStringLiteral("0/0/0"));
        QCOMPARE(owner.app->reportedErrors().size(), 0);
    }

    // ----------------------------------------------------------------- closing without OK

    void closingWritesNothing()
    {
        const Owner owner = makeOwner(QStringLiteral("Pensioen"));
        owner.setRows(kJoining);
        owner.setRvc(2, 45, 25);
        const QByteArray before = QJsonDocument(owner.app->exportJson()).toJson();
        auto dialog = open(owner);
        QVERIFY(showActive(dialog.get()));
        MessageRecorder messages;
        TestSupport::enter(tb(dialog.get(), "txtPcUitkeringGeen"), QStringLiteral("20"));
        TestSupport::click(w<QPushButton>(dialog.get(), "cmdAdd"));
        TestSupport::click(w<QCheckBox>(dialog.get(), "chkRvcAfwijking"));
        chooseMode(dialog.get(), 0);
        dialog->close();
        QVERIFY(!dialog->isVisible());
        QCOMPARE(dialog->result(), int(QDialog::Rejected));
        QCOMPARE(QJsonDocument(owner.app->exportJson()).toJson(), before);
        QCOMPARE(render(owner.rows()), render(kJoining));
        QCOMPARE(owner.rvc(), QStringLiteral("2/45/25"));

        // The same for a capital cover, closed with Escape.
        const Owner kapitaal = makeOwner(QStringLiteral("Kapitaal"));
        kapitaal.setRows(kJoining);
        kapitaal.setRvc(1, 10, 20);
        auto second = open(kapitaal);
        QVERIFY(showActive(second.get()));
        TestSupport::click(w<QPushButton>(second.get(), "cmdDelete"));
        TestSupport::click(w<QCheckBox>(second.get(), "chkRvcAfwijking"));
        QTest::keyClick(second.get(), Qt::Key_Escape);
        QVERIFY(!second->isVisible());
        QCOMPARE(render(kapitaal.rows()), render(kJoining));
        QCOMPARE(kapitaal.rvc(), QStringLiteral("1/10/20"));
    }

    // ----------------------------------------------------------------- errors and colours

    void errorReportNamesTheDialog()
    {
        // A capital cover whose store refuses the RVC properties.
        class RefusingKapitaal : public Kapitaal
        {
        public:
            KapitaalPtr inner = Zarnoveld::HostApplication::createKapitaal();
            AoUitkeringPtr AoUitkeringItem(qint16 i) override { return inner->AoUitkeringItem(i); }
            qint16 AoUitkeringAdd() override { return inner->AoUitkeringAdd(); }
            void AoUitkeringDelete(qint16 i) override { inner->AoUitkeringDelete(i); }
            QVariant Property(const QString &name) const override { return inner->Property(name); }
            void SetProperty(const QString &, const QVariant &) override
            {
                throw HostError(HostErrorCode::StoreFailed, QStringLiteral("Schijf vol"),
                                QStringLiteral("TestHost"));
            }
            qint32 Cd_UitkeringObv() const override { return 2; }
            void setCd_UitkeringObv(qint32) override {}
            qint32 Cd_AoDekking() const override { return 0; }
            void setCd_AoDekking(qint32) override {}
        };
        auto refusing = std::make_shared<RefusingKapitaal>();
        auto app = Zarnoveld::HostApplication::createInMemory();
        app->setTitle(QStringLiteral("Zarnoveld test"));

        frmAoUitkering dialog;
        dialog.setApplication(app);
        dialog.setKapitaal(refusing);
        dialog.Fill_Form();
        QVERIFY(showActive(&dialog));
        MessageRecorder messages;
        TestSupport::enter(tb(&dialog, "txtPcUitkeringVolledig"), QStringLiteral("100"));
        chooseMode(&dialog, 0);
        TestSupport::click(w<QPushButton>(&dialog, "cmdOK"));
        QCOMPARE(messages.count(), 0);
        const auto errors = app->reportedErrors();
        QCOMPARE(errors.size(), 1);
        const ErrorRecord &e = errors.first();
        QCOMPARE(e.Procedure, QStringLiteral("Save_RvcAfwijking"));
        QCOMPARE(e.Title, QStringLiteral("Specificatie AO uitkering"));
        QCOMPARE(e.Component, QStringLiteral("frmAoUitkering"));
        QCOMPARE(e.Subject, QStringLiteral("Onafhankelijk"));
        QCOMPARE(e.Product, QStringLiteral("Zarnoveld"));
        QCOMPARE(e.Message, QStringLiteral("Er is een fout opgetreden."));
        QCOMPARE(e.Number, QString::number(HostErrorCode::StoreFailed));
        QCOMPARE(e.Description, QStringLiteral("Schijf vol"));
        QCOMPARE(e.Source, QStringLiteral("TestHost"));
        // The schedule itself was stored; the dialog stays open with what it shows.
        QCOMPARE(dialog.isVisible(), true);
        QCOMPARE(render([&] {
                     QList<Row> rows;
                     for (qint16 i = 1; refusing->AoUitkeringItem(i); ++i) {
                         const auto r = refusing->AoUitkeringItem(i);
                         rows.append({r->Pc_AoVanaf(), r->Pc_AoTot(), r->Pc_Uitkering()});
                     }
                     return rows;
                 }()),
                 render({{0, 0, 0}, {0, 100, -1}, {100, 100, 100}}));

        // Without an Application the dialog shows the report itself under its own title.
        frmAoUitkering unbound;
        unbound.Fill_Form();   // no owner set: an error, not a crash
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Specificatie AO uitkering"));
        QVERIFY(messages.lastText().startsWith(QStringLiteral("Er is een fout opgetreden.")));
        QCOMPARE(messages.last().icon, VandrelControl::MessageBox::Icon::Critical);
    }

    void recoloursOnActivation()
    {
        const Owner owner = makeOwner(QStringLiteral("Kapitaal"));
        owner.setRows(kJoining);
        auto dialog = open(owner);
        const QColor face = QApplication::palette().color(QPalette::Button);
        const QColor mine(255, 250, 205);
        QPalette palette = dialog->palette();
        palette.setColor(dialog->backgroundRole(), mine);
        dialog->setPalette(palette);
        QPushButton *ok = w<QPushButton>(dialog.get(), "cmdOK");
        QCOMPARE(ok->palette().color(ok->backgroundRole()), face);
        QVERIFY(showActive(dialog.get()));
        QCOMPARE(ok->palette().color(ok->backgroundRole()), mine);
        QCOMPARE(w<QCheckBox>(dialog.get(), "chkRvcAfwijking")->palette().color(QPalette::Button), mine);
        // The list keeps its own colours: nothing in it got a palette of its own.
        QTreeWidget *l = list(dialog.get());
        QVERIFY(!l->testAttribute(Qt::WA_SetPalette));
        QVERIFY(!l->header()->testAttribute(Qt::WA_SetPalette));
        QCOMPARE(l->palette().color(QPalette::Button), face);
        // A disabled text box shows the face colour but is a field, not a face: it is left alone.
        TextBox *disabled = tb(dialog.get(), "txtRvcAfwijkend_0");
        QVERIFY(!disabled->isEnabled());
        QVERIFY(!disabled->testAttribute(Qt::WA_SetPalette));
    }

    // ----------------------------------------------------------------- pictures

    void screenshots()
    {
        const QString dir = QStringLiteral(VANDREL_BINARY_DIR);
        {
            const Owner owner = makeOwner(QStringLiteral("Pensioen"));
            owner.setRows({{0, 25, 0}, {35, 45, 40}, {45, 55, 50}, {55, 65, 60}, {65, 80, 75}, {80, 100, 100}});
            owner.setRvc(2, 50, 30);
            auto dialog = open(owner);
            QVERIFY(showActive(dialog.get()));
            QVERIFY(dialog->grab().save(dir + QStringLiteral("/aouitkering_staffel_rvc.png")));
        }
        {
            const Owner owner = makeOwner(QStringLiteral("Verzekerde"));
            owner.setRows({{0, 35, 0}, {35, 80, -1}, {80, 100, 100}});
            auto dialog = open(owner);
            QVERIFY(showActive(dialog.get()));
            QVERIFY(dialog->grab().save(dir + QStringLiteral("/aouitkering_werkelijk.png")));
        }
        {
            const Owner owner = makeOwner(QStringLiteral("Kapitaal"), 2, 16);
            owner.setRows({{0, 30, 0}, {30, 70, 70}, {70, 100, 0}});
            auto dialog = open(owner);
            QVERIFY(showActive(dialog.get()));
            QVERIFY(dialog->grab().save(dir + QStringLiteral("/aouitkering_geen_rvc_uit.png")));
        }
    }
};

QTEST_MAIN(TstAoUitkering)
#include "tst_aouitkering.moc"
