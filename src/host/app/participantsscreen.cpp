// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "participantsscreen.h"

#include "errorlog.h"

#include "formats.h"
#include "messagebox.h"
#include "textbox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using VandrelControl::FieldKind;
using VandrelControl::MessageBox;
using VandrelControl::TextBox;
namespace Format = VandrelControl::Format;

namespace Zarnoveld {

namespace {

// The host's category codes. Which franchise group a code falls in is the pension library's
// business; the host only names them.
const QList<QPair<int, QString>> kCategorieen = {
    {0, QStringLiteral("0 - Onbekend")},
    {1, QStringLiteral("1 - Werknemer")},
    {2, QStringLiteral("2 - Ambtenaar")},
    {3, QStringLiteral("3 - Zelfstandige")},
    {4, QStringLiteral("4 - Directeur-grootaandeelhouder")},
    {5, QStringLiteral("5 - Uitkeringsgerechtigde")},
    {6, QStringLiteral("6 - Werknemer met eigen regeling")},
    {7, QStringLiteral("7 - Oproepkracht")},
    {8, QStringLiteral("8 - Niet werkzaam")},
};

TextBox *textBox(FieldKind kind, const QString &name, QWidget *parent)
{
    auto *box = new TextBox(parent);
    box->setKind(kind);
    box->setObjectName(name);
    return box;
}

// One employment edited in a small dialog; OK writes all of it.
class EmploymentDialog : public QDialog
{
public:
    explicit EmploymentDialog(const VandrelApplication::DienstverbandPtr &employment, QWidget *parent)
        : QDialog(parent)
        , m_employment(employment)
    {
        setWindowTitle(QStringLiteral("Dienstverband"));
        setObjectName(QStringLiteral("dlgDienstverband"));
        auto *form = new QFormLayout(this);
        m_werkgever = textBox(FieldKind::Text, QStringLiteral("txtWerkgever"), this);
        m_begin = textBox(FieldKind::Date, QStringLiteral("txtBegin"), this);
        m_einde = textBox(FieldKind::Date, QStringLiteral("txtEinde"), this);
        m_salaris = textBox(FieldKind::Amount, QStringLiteral("txtSalaris"), this);
        m_meetellen = textBox(FieldKind::Date, QStringLiteral("txtMeetellenTot"), this);
        form->addRow(QStringLiteral("Werkgever"), m_werkgever);
        form->addRow(QStringLiteral("Begindatum"), m_begin);
        form->addRow(QStringLiteral("Einddatum"), m_einde);
        form->addRow(QStringLiteral("Salaris per jaar"), m_salaris);
        form->addRow(QStringLiteral("Datum inkomen meetellen tot"), m_meetellen);
        auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
        buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("OK"));
        buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Annuleren"));
        form->addRow(buttons);
        connect(buttons, &QDialogButtonBox::accepted, this, &EmploymentDialog::save);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

        m_werkgever->setText(employment->Werkgever());
        m_begin->setDate(employment->Dt_Begin());
        m_einde->setDate(employment->Dt_Einde());
        m_salaris->setValue(employment->Salaris());
        m_meetellen->setDate(employment->Dt_InkomenMeetellenTot());
    }

private:
    void save()
    {
        for (TextBox *box : {m_begin, m_einde, m_salaris, m_meetellen}) {
            if (!box->isReadable()) {
                MessageBox::ok(this, VandrelControl::Parse::expectation(box->kind()),
                               QStringLiteral("Ongeldige invoer"));
                box->setFocus();
                return;
            }
        }
        const QDate begin = m_begin->date();
        const QDate einde = m_einde->date();
        if (VandrelApplication::isFilled(begin) && VandrelApplication::isFilled(einde) && einde < begin) {
            MessageBox::ok(this, QStringLiteral("De einddatum moet na de begindatum liggen."),
                           QStringLiteral("Ongeldige invoer"));
            m_einde->setFocus();
            return;
        }
        m_employment->setWerkgever(m_werkgever->text().trimmed());
        m_employment->setDt_Begin(begin);
        m_employment->setDt_Einde(einde);
        m_employment->setSalaris(m_salaris->value());
        m_employment->setDt_InkomenMeetellenTot(m_meetellen->date());
        accept();
    }

    VandrelApplication::DienstverbandPtr m_employment;
    TextBox *m_werkgever;
    TextBox *m_begin;
    TextBox *m_einde;
    TextBox *m_salaris;
    TextBox *m_meetellen;
};

} // namespace

ParticipantsScreen::ParticipantsScreen(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("participantsScreen"));
    auto *layout = new QHBoxLayout(this);
    m_sides[0].anvId = 1;
    m_sides[1].anvId = 2;
    buildSide(m_sides[0], QStringLiteral("Aanvrager"));
    buildSide(m_sides[1], QStringLiteral("Partner"));
    layout->addWidget(m_sides[0].box);
    layout->addWidget(m_sides[1].box);
    // The applicant has no partner tick box; an equal gap keeps the two forms row by row level.
    if (auto *column = qobject_cast<QVBoxLayout *>(m_sides[0].box->layout()))
        column->insertSpacing(0, m_sides[1].present->sizeHint().height() + column->spacing());
}

void ParticipantsScreen::guarded(const std::function<void()> &action)
{
    try {
        action();
    } catch (const VandrelApplication::HostError &e) {
        VandrelApplication::ErrorRecord record =
            ErrorLog::recordFor(e, QStringLiteral("Deelnemers"), QStringLiteral("Deelnemers"));
        if (m_application)
            record.Title = m_application->Title();
        if (m_application)
            m_application->ReportError(record);
        reload();
    }
}

void ParticipantsScreen::buildSide(Side &side, const QString &title)
{
    const QString suffix = QString::number(side.anvId);
    side.box = new QGroupBox(title, this);
    side.box->setObjectName(QStringLiteral("fraDeelnemer_") + suffix);
    auto *column = new QVBoxLayout(side.box);
    if (side.anvId == 2) {
        side.present = new QCheckBox(QStringLiteral("Dit dossier heeft een partner"), side.box);
        side.present->setObjectName(QStringLiteral("chkPartner"));
        column->addWidget(side.present);
        connect(side.present, &QCheckBox::toggled, this, [this](bool on) {
            if (m_loading || !m_application)
                return;
            guarded([&] {
                auto dossier = m_application->Get_Dossier();
                if (on && !dossier->Get_Aanvrager(2)) {
                    dossier->AddAanvrager();
                } else if (!on && dossier->Get_Aanvrager(2)) {
                    auto partner = dossier->Get_Aanvrager(2);
                    const bool hasSchemes = partner->Get_Pensioen(1) != nullptr;
                    const QString question = hasSchemes
                        ? QStringLiteral("De partner heeft pensioenregelingen. Wilt u de partner met alle gegevens verwijderen?")
                        : QStringLiteral("Wilt u de partner verwijderen?");
                    if (MessageBox::yesNo(this, question, QStringLiteral("Partner verwijderen")))
                        dossier->RemoveAanvrager(2);
                }
                reload();
            });
        });
    }
    auto *form = new QFormLayout;
    side.naam = textBox(FieldKind::Text, QStringLiteral("txtNaam_") + suffix, side.box);
    side.geboorte = textBox(FieldKind::Date, QStringLiteral("txtGeboortedatum_") + suffix, side.box);
    side.categorie = new QComboBox(side.box);
    side.categorie->setObjectName(QStringLiteral("cboCategorie_") + suffix);
    for (const auto &[code, text] : kCategorieen)
        side.categorie->addItem(text, code);
    form->addRow(QStringLiteral("Naam"), side.naam);
    form->addRow(QStringLiteral("Geboortedatum"), side.geboorte);
    form->addRow(QStringLiteral("Categorie"), side.categorie);
    column->addLayout(form);

    connect(side.naam, &TextBox::Validate, this, [this, &side](bool &) {
        if (auto p = participant(side))
            guarded([&] { p->setNaam(side.naam->text().trimmed()); });
    });
    connect(side.geboorte, &TextBox::Validate, this, [this, &side](bool &cancel) {
        auto p = participant(side);
        if (!p)
            return;
        const QDate date = side.geboorte->date();
        if (!VandrelApplication::isFilled(date) || date > QDate::currentDate()) {
            MessageBox::ok(this, QStringLiteral("Vul een geboortedatum in het verleden in."),
                           QStringLiteral("Ongeldige invoer"));
            cancel = true;
            return;
        }
        guarded([&] { p->setGeboorteDatum(date); });
    });
    connect(side.categorie, &QComboBox::activated, this, [this, &side](int) {
        if (auto p = participant(side))
            guarded([&] { p->setCategorie(quint8(side.categorie->currentData().toInt())); });
    });

    column->addWidget(new QLabel(QStringLiteral("Dienstverbanden"), side.box));
    side.dienstverbanden = new QTreeWidget(side.box);
    side.dienstverbanden->setObjectName(QStringLiteral("lvwDienstverband_") + suffix);
    side.dienstverbanden->setRootIsDecorated(false);
    side.dienstverbanden->setHeaderLabels({QStringLiteral("Werkgever"), QStringLiteral("Begindatum"),
                                           QStringLiteral("Einddatum"), QStringLiteral("Salaris"),
                                           QStringLiteral("Meetellen tot")});
    side.dienstverbanden->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    side.dienstverbanden->headerItem()->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
    column->addWidget(side.dienstverbanden);

    auto *buttons = new QHBoxLayout;
    side.add = new QPushButton(QStringLiteral("Toevoegen..."), side.box);
    side.edit = new QPushButton(QStringLiteral("Wijzigen..."), side.box);
    side.remove = new QPushButton(QStringLiteral("Verwijderen"), side.box);
    side.add->setObjectName(QStringLiteral("cmdDienstverbandToevoegen_") + suffix);
    side.edit->setObjectName(QStringLiteral("cmdDienstverbandWijzigen_") + suffix);
    side.remove->setObjectName(QStringLiteral("cmdDienstverbandVerwijderen_") + suffix);
    buttons->addWidget(side.add);
    buttons->addWidget(side.edit);
    buttons->addWidget(side.remove);
    buttons->addStretch();
    column->addLayout(buttons);

    auto selectedIndex = [&side]() -> qint16 {
        const auto *item = side.dienstverbanden->currentItem();
        return item ? qint16(side.dienstverbanden->indexOfTopLevelItem(const_cast<QTreeWidgetItem *>(item)) + 1) : 0;
    };
    connect(side.add, &QPushButton::clicked, this, [this, &side] {
        auto p = participant(side);
        if (!p)
            return;
        guarded([&] {
            const qint16 index = p->AddDienstverband();
            // The record exists before the dialog so the dialog edits the real thing; a user who
            // cancels expects no empty employment left behind.
            if (!editEmployment(side, index))
                if (p->Get_Dienstverband(index))
                    p->RemoveDienstverband(index);
            loadSide(side);
        });
    });
    connect(side.edit, &QPushButton::clicked, this, [this, &side, selectedIndex] {
        if (const qint16 index = selectedIndex())
            guarded([&] { editEmployment(side, index); });
    });
    connect(side.dienstverbanden, &QTreeWidget::itemDoubleClicked, this, [this, &side, selectedIndex] {
        if (const qint16 index = selectedIndex())
            guarded([&] { editEmployment(side, index); });
    });
    connect(side.remove, &QPushButton::clicked, this, [this, &side, selectedIndex] {
        auto p = participant(side);
        const qint16 index = selectedIndex();
        if (!p || !index)
            return;
        // A scheme that names this employment would silently lose it; say so before asking.
        bool inUse = false;
        if (auto employment = p->Get_Dienstverband(index))
            for (qint16 k = 1; auto scheme = p->Get_Pensioen(k); ++k)
                inUse = inUse || scheme->DienstverbandKey() == employment->Key();
        const QString question = inUse
            ? QStringLiteral("Dit dienstverband is gekozen bij een pensioenregeling. Wilt u het toch verwijderen?")
            : QStringLiteral("Wilt u dit dienstverband verwijderen?");
        if (!MessageBox::yesNo(this, question, QStringLiteral("Dienstverband verwijderen")))
            return;
        guarded([&] {
            p->RemoveDienstverband(index);
            loadSide(side);
        });
    });
}

bool ParticipantsScreen::editEmployment(Side &side, qint16 index)
{
    auto p = participant(side);
    if (!p)
        return false;
    auto employment = p->Get_Dienstverband(index);
    if (!employment)
        return false;
    EmploymentDialog dialog(employment, this);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    loadSide(side);
    return accepted;
}

VandrelApplication::AanvragerPtr ParticipantsScreen::participant(const Side &side) const
{
    if (m_loading || !m_application)
        return nullptr;
    auto dossier = m_application->Get_Dossier();
    return dossier ? dossier->Get_Aanvrager(side.anvId) : nullptr;
}

void ParticipantsScreen::setApplication(const VandrelApplication::ApplicationPtr &application)
{
    m_application = application;
    reload();
}

void ParticipantsScreen::reload()
{
    for (Side &side : m_sides)
        loadSide(side);
}

void ParticipantsScreen::loadSide(Side &side)
{
    m_loading = true;
    VandrelApplication::AanvragerPtr p;
    if (m_application)
        if (auto dossier = m_application->Get_Dossier())
            p = dossier->Get_Aanvrager(side.anvId);
    if (side.present)
        side.present->setChecked(p != nullptr);
    for (QWidget *w : std::initializer_list<QWidget *>{side.naam, side.geboorte, side.categorie,
                                                       side.dienstverbanden, side.add, side.edit, side.remove})
        w->setEnabled(p != nullptr);
    side.dienstverbanden->clear();
    if (p) {
        side.naam->setText(p->Naam());
        side.geboorte->setDate(p->GeboorteDatum());
        side.categorie->setCurrentIndex(side.categorie->findData(int(p->Categorie())));
        for (qint16 i = 1;; ++i) {
            auto d = p->Get_Dienstverband(i);
            if (!d)
                break;
            auto *item = new QTreeWidgetItem(side.dienstverbanden);
            item->setText(0, d->Werkgever());
            item->setText(1, Format::date(d->Dt_Begin()));
            item->setText(2, Format::date(d->Dt_Einde()));
            item->setText(3, Format::amount(d->Salaris()));
            item->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
            item->setText(4, Format::date(d->Dt_InkomenMeetellenTot()));
        }
    } else {
        side.naam->clear();
        side.geboorte->clear();
        side.categorie->setCurrentIndex(-1);
    }
    m_loading = false;
}

} // namespace Zarnoveld
