// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file hostmodel.h
/// \brief The host object model: the interfaces a host implements for the pension screen.
///
/// The host object model as the pension library sees it. A host implements these interfaces;
/// the library only consumes them. Objects are handed out as shared pointers so that a control may keep
/// one for its lifetime even when the host renumbers its collections: an object whose data is gone
/// throws HostError(HostErrorCode::NotFound) on use instead of dangling.
///
/// Conventions:
/// - collections are numbered from 1; a getter past the end returns nullptr;
/// - a date is "not filled" when it is null or its year is 1900 or earlier (isFilled());
/// - every setter either stores the value durably before it returns or throws HostError;
/// - ages are whole months (years * 12 + months).
///
/// The page \ref writing_a_host walks through the whole contract with the reference host's
/// choices as the example.

#include "errorrecord.h"
#include "hosterror.h"
#include "vandrelapplication_export.h"

#include <QDate>
#include <QIcon>
#include <QString>
#include <QVariant>

#include <memory>

/// The host object model, the error record and the suite's check service.
namespace VandrelApplication {

class Application;
class Dossier;
class Aanvrager;
class Dienstverband;
class Pensioen;
class OuderdomRegel;
class Scenario;
class ScenarioRegel;
class AoUitkering;
class AoUitkeringOwner;
class Kapitaal;
class Verzekerde;
class Parameters;

using ApplicationPtr = std::shared_ptr<Application>;  ///< Shared handle on the running application.
using DossierPtr = std::shared_ptr<Dossier>;  ///< Shared handle on the open case.
using AanvragerPtr = std::shared_ptr<Aanvrager>;  ///< Shared handle on a participant.
using DienstverbandPtr = std::shared_ptr<Dienstverband>;  ///< Shared handle on an employment.
using PensioenPtr = std::shared_ptr<Pensioen>;  ///< Shared handle on a pension scheme.
using OuderdomRegelPtr = std::shared_ptr<OuderdomRegel>;  ///< Shared handle on an old-age row.
using ScenarioPtr = std::shared_ptr<Scenario>;  ///< Shared handle on a benefit scenario.
using ScenarioRegelPtr = std::shared_ptr<ScenarioRegel>;  ///< Shared handle on a scenario row.
using AoUitkeringPtr = std::shared_ptr<AoUitkering>;  ///< Shared handle on a disability band.
using KapitaalPtr = std::shared_ptr<Kapitaal>;  ///< Shared handle on a capital cover.
using VerzekerdePtr = std::shared_ptr<Verzekerde>;  ///< Shared handle on an insured person.
using ParametersPtr = std::shared_ptr<Parameters>;  ///< Shared handle on the suite's figures.

/// A date with year 1900 or earlier, or a null date, is "not filled".
VANDRELAPPLICATION_EXPORT bool isFilled(const QDate &date);

// Numbers that the host attaches a meaning to.
/// Kinds of scheme, the values of Pensioen::SoortRegeling().
namespace SoortRegeling {
inline constexpr qint16 Eindloon = 1;           ///< final pay
inline constexpr qint16 Middelloon = 2;         ///< career average
inline constexpr qint16 BeschikbarePremie = 3;  ///< defined contribution
}
/// How a disability pension pays, the values of Pensioen::Cd_UitkeringSoort().
namespace UitkeringSoort {
inline constexpr qint16 Geen = 0;      ///< not chosen
inline constexpr qint16 Volledig = 1;  ///< "Volledig"
inline constexpr qint16 ProRata = 2;   ///< "Pro-rata"
}
/// Flags of Dossier::SyncVlaggen(): which scheme fields follow the employment data.
namespace SyncVlag {
inline constexpr qint32 Salaris = 8;     ///< the scheme's salary follows its employment
inline constexpr qint32 Franchise = 16;  ///< the franchise is computed from the parameters
inline constexpr qint32 Grondslag = 32;  ///< the base is salary minus franchise
inline constexpr qint32 Aangroei = 64;   ///< factor A is computed from accrual percentage and base
}

/// The running host application: the entry point the pension screen is given with PensMain::SetApplication().
class VANDRELAPPLICATION_EXPORT Application
{
public:
    virtual ~Application();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual DossierPtr Get_Dossier() = 0;          ///< nullptr when no case is open
    virtual ParametersPtr Get_Parameters() = 0;  ///< The figures of the suite (default accrual, franchises, ANW maximum); never nullptr.
    /// Shows or logs the record; must not throw.
    virtual void ReportError(ErrorRecord &record) = 0;
    virtual QString Title() const = 0;             ///< title of the running application
    virtual QIcon Icon() const = 0;                ///< window icon for the library's dialogs
};

/// The figures of the suite that the screen's rules need (accrual defaults, franchises, ANW maximum).
class VANDRELAPPLICATION_EXPORT Parameters
{
public:
    virtual ~Parameters();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual float DefaultOpbouwEindloon() const = 0;    ///< percentage, 1.875 means 1.875 %
    virtual float DefaultOpbouwMiddelloon() const = 0;  ///< Default accrual percentage of a career-average scheme, as DefaultOpbouwEindloon().
    virtual double FranchiseEindloonA() const = 0;      ///< final pay, first category group
    virtual double FranchiseEindloonB() const = 0;      ///< final pay, second category group
    virtual double FranchiseA() const = 0;              ///< other types, first group
    virtual double FranchiseB() const = 0;              ///< other types, second group
    virtual double MaxAnwCompensation() const = 0;      ///< already 75 % of the maximum ANW benefit
};

/// The open advice case: the applicant, the optional partner and the sync flags.
class VANDRELAPPLICATION_EXPORT Dossier
{
public:
    virtual ~Dossier();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual AanvragerPtr Get_Aanvrager(qint16 Anv_Id) = 0;  ///< 1 applicant, 2 partner
    virtual qint16 AddAanvrager() = 0;                      ///< adds the partner; returns its number
    virtual void RemoveAanvrager(qint16 Anv_Id) = 0;        ///< only the partner can be removed
    virtual qint32 SyncVlaggen() const = 0;  ///< Which scheme fields follow the employment data: a sum of the SyncVlag values.
    virtual void setSyncVlaggen(qint32 value) = 0;  ///< Stores SyncVlaggen(); see there. Durable when it returns, HostError when the host cannot store it.
};

/// A participant of the case (applicant or partner) with the employments and pension schemes; ages and dates derived from the birth date come from the host.
class VANDRELAPPLICATION_EXPORT Aanvrager
{
public:
    virtual ~Aanvrager();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual qint16 Anv_Id() const = 0;  ///< The participant's number: 1 the applicant, 2 the partner.
    virtual QString Naam() const = 0;  ///< The participant's name.
    virtual void setNaam(const QString &value) = 0;  ///< Stores Naam(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QDate GeboorteDatum() const = 0;  ///< Date of birth; every age and derived date of the participant follows from it.
    virtual void setGeboorteDatum(const QDate &value) = 0;  ///< Stores GeboorteDatum(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual quint8 Categorie() const = 0;  ///< Franchise category of the participant (chooses the A or B franchise of Parameters).
    virtual void setCategorie(quint8 value) = 0;  ///< Stores Categorie(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual qint16 AowLeeftijd() const = 0;              ///< whole years, derived by the host
    virtual QDate Dt_EindeInkomen() const = 0;           ///< own end date of income, derived by the host
    virtual qint32 AgeOnDate(const QDate &date) const = 0;  ///< whole months on that date

    virtual DienstverbandPtr Get_Dienstverband(qint16 index) = 0;  ///< Employment number index (from 1); nullptr past the end.
    virtual qint16 AddDienstverband() = 0;  ///< Appends an empty employment with a new Key; returns its number.
    virtual void RemoveDienstverband(qint16 index) = 0;  ///< Removes employment number index; later employments move up one number.

    virtual PensioenPtr Get_Pensioen(qint16 Pen_Id) = 0;  ///< Scheme number Pen_Id (from 1); nullptr past the end.
    virtual qint16 AddPension() = 0;                     ///< appends an empty scheme
    virtual void RemovePension(qint16 Pen_Id) = 0;       ///< later schemes move up one number
};

/// One employment of a participant; a scheme names it by Key().
class VANDRELAPPLICATION_EXPORT Dienstverband
{
public:
    virtual ~Dienstverband();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual QString Key() const = 0;                     ///< "{8-4-4-4-12}", 38 characters
    virtual QString Werkgever() const = 0;  ///< Employer name.
    virtual void setWerkgever(const QString &value) = 0;  ///< Stores Werkgever(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QDate Dt_Begin() const = 0;  ///< Start date of the employment.
    virtual void setDt_Begin(const QDate &value) = 0;  ///< Stores Dt_Begin(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QDate Dt_Einde() const = 0;  ///< End date of the employment; not filled while it lasts.
    virtual void setDt_Einde(const QDate &value) = 0;  ///< Stores Dt_Einde(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double Salaris() const = 0;  ///< Salary of the employment in euros a year.
    virtual void setSalaris(double value) = 0;  ///< Stores Salaris(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QDate Dt_InkomenMeetellenTot() const = 0;    ///< "datum inkomen meetellen tot"
    virtual void setDt_InkomenMeetellenTot(const QDate &value) = 0;  ///< Stores Dt_InkomenMeetellenTot(); see there. Durable when it returns, HostError when the host cannot store it.
};

/// One row of a Scenario: from month Maand() on the amount is Bedrag().
class VANDRELAPPLICATION_EXPORT ScenarioRegel
{
public:
    virtual ~ScenarioRegel();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual qint16 Maand() const = 0;                    ///< 1 is the scenario's starting month
    virtual void setMaand(qint16 value) = 0;  ///< Stores Maand(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double Bedrag() const = 0;  ///< Amount from that month on, euros a month.
    virtual void setBedrag(double value) = 0;  ///< Stores Bedrag(); see there. Durable when it returns, HostError when the host cannot store it.
};

/// How an old-age benefit develops month by month: the first month's amount and later changes.
class VANDRELAPPLICATION_EXPORT Scenario
{
public:
    virtual ~Scenario();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual double Bedrag() const = 0;                   ///< amount of the first month
    virtual void setBedrag(double value) = 0;  ///< Stores Bedrag(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual qint16 RegelCount() const = 0;  ///< Number of rows.
    virtual ScenarioRegelPtr Regel(qint16 index) = 0;  ///< Row number index (from 1); nullptr past the end.
    virtual void RemoveRegel(qint16 index) = 0;  ///< Removes row number index; later rows move up one number.
    virtual void Clear_Regels() = 0;  ///< Removes every row; Bedrag() stays.
    virtual ScenarioRegelPtr Add_Regel() = 0;            ///< appended, Maand 0 and Bedrag 0
};

/// One old-age row of a scheme: a target age with its OP and PreP. Row 1 is what the commitments
/// panel edits; all rows together are the scheme's specificatie.
class VANDRELAPPLICATION_EXPORT OuderdomRegel
{
public:
    virtual ~OuderdomRegel();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual QString Key() const = 0;                     ///< stable while the row exists
    virtual qint32 Leeftijd() const = 0;                 ///< target age in months, 0 = not filled
    virtual void setLeeftijd(qint32 months) = 0;  ///< Stores Leeftijd(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual bool OP() const = 0;  ///< Whether the row has an old-age pension (OP).
    virtual void setOP(bool value) = 0;  ///< Stores OP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragOP() const = 0;  ///< Yearly old-age pension amount in euros.
    virtual void setBedragOP(double value) = 0;  ///< Stores BedragOP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QDate Dt_IngangOP() const = 0;  ///< Start date of the old-age pension; a first of a month.
    virtual void setDt_IngangOP(const QDate &value) = 0;   ///< also keeps LeeftijdOP in step
    virtual qint32 LeeftijdOP() const = 0;  ///< Start age of the old-age pension in months, kept in step with Dt_IngangOP().
    virtual void setLeeftijdOP(qint32 months) = 0;        ///< the host derives Dt_IngangOP from it

    virtual bool PreP() const = 0;  ///< Whether the row has an early-retirement pension (PreP).
    virtual void setPreP(bool value) = 0;  ///< Stores PreP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragPreP() const = 0;  ///< Yearly early-retirement pension amount in euros.
    virtual void setBedragPreP(double value) = 0;  ///< Stores BedragPreP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QDate Dt_IngangPreP() const = 0;  ///< Start date of the early-retirement pension; a first of a month.
    virtual void setDt_IngangPreP(const QDate &value) = 0;  ///< Stores Dt_IngangPreP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual qint32 LeeftijdPreP() const = 0;  ///< Start age of the early-retirement pension in months, kept in step with Dt_IngangPreP().
    virtual void setLeeftijdPreP(qint32 months) = 0;  ///< Stores LeeftijdPreP(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual ScenarioPtr ScenarioOP() = 0;                ///< never nullptr
};

/// One band of a disability benefit schedule: from Pc_AoVanaf() to Pc_AoTot() percent disability the benefit is Pc_Uitkering() percent.
class VANDRELAPPLICATION_EXPORT AoUitkering
{
public:
    virtual ~AoUitkering();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual float Pc_AoVanaf() const = 0;  ///< Lower bound of the disability band, percent.
    virtual void setPc_AoVanaf(float value) = 0;  ///< Stores Pc_AoVanaf(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float Pc_AoTot() const = 0;  ///< Upper bound of the disability band, percent.
    virtual void setPc_AoTot(float value) = 0;  ///< Stores Pc_AoTot(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float Pc_Uitkering() const = 0;              ///< -1 means the actual AO percentage
    virtual void setPc_Uitkering(float value) = 0;  ///< Stores Pc_Uitkering(); see there. Durable when it returns, HostError when the host cannot store it.
};

/// Anything that owns a disability benefit schedule.
class VANDRELAPPLICATION_EXPORT AoUitkeringOwner
{
public:
    virtual ~AoUitkeringOwner();  ///< Hosts own their objects; the library only holds shared pointers.

    virtual AoUitkeringPtr AoUitkeringItem(qint16 index) = 0;  ///< Band number index (from 1) of the disability schedule; nullptr past the end.
    virtual qint16 AoUitkeringAdd() = 0;  ///< Appends an empty band; returns its number.
    virtual void AoUitkeringDelete(qint16 index) = 0;  ///< Removes band number index; later bands move up one number.
    /// Late-bound properties, read and written by name ("Cd_RvcAfwijking", "Pc_RvcAfwijking",
    /// "Pc_RvcUitkering"). An owner without such a property throws HostError. The values are a
    /// qint32 for "Cd_RvcAfwijking" (0 none, 1 or 2 the deviation chosen) and a float (percent)
    /// for the other two.
    virtual QVariant Property(const QString &name) const = 0;
    virtual void SetProperty(const QString &name, const QVariant &value) = 0;  ///< Writes the late-bound property name with a value of the type Property() returns for it; throws HostError for an unknown name or a value it cannot store.
};

/// A capital cover with a disability schedule (the reference host makes one outside a case with Zarnoveld::HostApplication::createKapitaal()).
class VANDRELAPPLICATION_EXPORT Kapitaal : public AoUitkeringOwner
{
public:
    virtual qint32 Cd_UitkeringObv() const = 0;  ///< Disability schedule mode code of the capital; 2 allows a staffel.
    virtual void setCd_UitkeringObv(qint32 value) = 0;  ///< Stores Cd_UitkeringObv(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual qint32 Cd_AoDekking() const = 0;  ///< Code of the disability cover of the capital.
    virtual void setCd_AoDekking(qint32 value) = 0;  ///< Stores Cd_AoDekking(); see there. Durable when it returns, HostError when the host cannot store it.
};

/// An insured person with a disability schedule.
class VANDRELAPPLICATION_EXPORT Verzekerde : public AoUitkeringOwner
{
};

/// One pension scheme of a participant: what the list, the provider, the scheme and the commitments panels show and edit.
class VANDRELAPPLICATION_EXPORT Pensioen : public AoUitkeringOwner
{
public:
    /// --- what the pension list shows and the provider control edits
    virtual bool HuidigeWerkgever() const = 0;
    virtual void setHuidigeWerkgever(bool value) = 0;  ///< Stores HuidigeWerkgever(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QString Uitvoerder() const = 0;              ///< provider name
    virtual void setUitvoerder(const QString &value) = 0;  ///< Stores Uitvoerder(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QString Branche() const = 0;                 ///< sector
    virtual void setBranche(const QString &value) = 0;  ///< Stores Branche(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QString DienstverbandKey() const = 0;        ///< empty when the scheme names no employment
    virtual void setDienstverbandKey(const QString &value) = 0;  ///< Stores DienstverbandKey(); see there. Durable when it returns, HostError when the host cannot store it.
    /// Whole years of service with the scheme's employer: a fact of the participant's employment.
    virtual qint16 Dienstjaren() const = 0;
    virtual void setDienstjaren(qint16 value) = 0;  ///< Stores Dienstjaren(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual bool RemoveOnClose() const = 0;  ///< Whether the scheme is removed when the pension screen closes (a scheme added but never filled in).
    virtual void setRemoveOnClose(bool value) = 0;  ///< Stores RemoveOnClose(); see there. Durable when it returns, HostError when the host cannot store it.
    /// Mode switch of the record: while deferred, setters collect their changes and the host writes
    /// them at once when the switch is turned off again. Every screen turns it off so that each
    /// accepted edit is durable when the setter returns.
    virtual bool UitgesteldSchrijven() const = 0;
    virtual void setUitgesteldSchrijven(bool value) = 0;  ///< Stores UitgesteldSchrijven(); see there. Durable when it returns, HostError when the host cannot store it.

    /// --- scheme data
    virtual qint16 SoortRegeling() const = 0;
    virtual void setSoortRegeling(qint16 value) = 0;  ///< Stores SoortRegeling(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual bool RegelingBekend() const = 0;  ///< Whether the scheme's rules are known (otherwise only its amounts are).
    virtual void setRegelingBekend(bool value) = 0;  ///< Stores RegelingBekend(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double Salaris() const = 0;  ///< Pensionable salary the scheme itself records, euros a year; 0 when it follows the employment.
    virtual void setSalaris(double value) = 0;  ///< Stores Salaris(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double Franchise() const = 0;  ///< Franchise in euros a year: the part of the salary that accrues nothing.
    virtual void setFranchise(double value) = 0;  ///< Stores Franchise(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double Grondslag() const = 0;  ///< Pension base in euros a year: salary minus franchise.
    virtual void setGrondslag(double value) = 0;  ///< Stores Grondslag(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float OpbouwPercentage() const = 0;  ///< Accrual percentage a year; 1.875 means 1.875 %.
    virtual void setOpbouwPercentage(float value) = 0;  ///< Stores OpbouwPercentage(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double Aangroei() const = 0;                 ///< factor A
    virtual void setAangroei(double value) = 0;  ///< Stores Aangroei(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double Premie() const = 0;                   ///< defined-contribution contribution
    virtual void setPremie(double value) = 0;  ///< Stores Premie(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double Doelvermogen() const = 0;  ///< Target capital in euros.
    virtual void setDoelvermogen(double value) = 0;  ///< Stores Doelvermogen(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float RekenrenteOpbouw() const = 0;  ///< Interest rate during accrual, percent.
    virtual void setRekenrenteOpbouw(float value) = 0;  ///< Stores RekenrenteOpbouw(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float RekenrenteUitkering() const = 0;  ///< Interest rate during payment, percent.
    virtual void setRekenrenteUitkering(float value) = 0;  ///< Stores RekenrenteUitkering(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double Opgebouwd() const = 0;  ///< Pension accrued so far in euros a year, as on Dt_Overzicht().
    virtual void setOpgebouwd(double value) = 0;  ///< Stores Opgebouwd(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QDate Dt_Overzicht() const = 0;  ///< Date of the provider's statement the accrued amounts come from.
    virtual void setDt_Overzicht(const QDate &value) = 0;  ///< Stores Dt_Overzicht(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BijdrageOP() const = 0;  ///< Participant's own contribution to the old-age pension, euros a year.
    virtual void setBijdrageOP(double value) = 0;  ///< Stores BijdrageOP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BijdragePreP() const = 0;  ///< Participant's own contribution to the early-retirement pension, euros a year.
    virtual void setBijdragePreP(double value) = 0;  ///< Stores BijdragePreP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BijdrageVrijwillig() const = 0;  ///< Voluntary contribution, euros a year.
    virtual void setBijdrageVrijwillig(double value) = 0;  ///< Stores BijdrageVrijwillig(); see there. Durable when it returns, HostError when the host cannot store it.

    /// --- commitments at scheme level
    virtual bool TOP() const = 0;
    virtual void setTOP(bool value) = 0;  ///< Stores TOP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragTOP() const = 0;  ///< Yearly TOP amount in euros.
    virtual void setBedragTOP(double value) = 0;  ///< Stores BedragTOP(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual bool PP() const = 0;                         ///< partner pension until AOW, death before AOW
    virtual void setPP(bool value) = 0;  ///< Stores PP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragPP() const = 0;  ///< Yearly amount of the partner pension until AOW (death before AOW).
    virtual void setBedragPP(double value) = 0;  ///< Stores BedragPP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float Pc_PP() const = 0;  ///< Percentage of that partner pension.
    virtual void setPc_PP(float value) = 0;  ///< Stores Pc_PP(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual bool PPNaAow() const = 0;                    ///< after AOW, death before AOW
    virtual void setPPNaAow(bool value) = 0;  ///< Stores PPNaAow(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragPPNaAow() const = 0;  ///< Yearly amount of the partner pension after AOW (death before AOW).
    virtual void setBedragPPNaAow(double value) = 0;  ///< Stores BedragPPNaAow(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float Pc_PPNaAow() const = 0;  ///< Percentage of that partner pension.
    virtual void setPc_PPNaAow(float value) = 0;  ///< Stores Pc_PPNaAow(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual bool PPna65() const = 0;                     ///< after AOW, death after AOW
    virtual void setPPna65(bool value) = 0;  ///< Stores PPna65(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragPPna65() const = 0;  ///< Yearly amount of the partner pension after AOW (death after AOW).
    virtual void setBedragPPna65(double value) = 0;  ///< Stores BedragPPna65(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float Pc_PPna65() const = 0;  ///< Percentage of that partner pension.
    virtual void setPc_PPna65(float value) = 0;  ///< Stores Pc_PPna65(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual bool PpNa65TotAow() const = 0;               ///< until AOW, death after AOW
    virtual void setPpNa65TotAow(bool value) = 0;  ///< Stores PpNa65TotAow(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragPpNa65TotAow() const = 0;  ///< Yearly amount of the partner pension until AOW (death after AOW).
    virtual void setBedragPpNa65TotAow(double value) = 0;  ///< Stores BedragPpNa65TotAow(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float Pc_PpNa65TotAow() const = 0;  ///< Percentage of that partner pension.
    virtual void setPc_PpNa65TotAow(float value) = 0;  ///< Stores Pc_PpNa65TotAow(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual bool WzP() const = 0;  ///< Whether the scheme has an orphans' pension (WzP).
    virtual void setWzP(bool value) = 0;  ///< Stores WzP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragWzP() const = 0;  ///< Yearly orphans' pension amount in euros.
    virtual void setBedragWzP(double value) = 0;  ///< Stores BedragWzP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float Pc_WzP() const = 0;  ///< Percentage of the orphans' pension.
    virtual void setPc_WzP(float value) = 0;  ///< Stores Pc_WzP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual qint16 EindLeeftijdWzP() const = 0;          ///< whole years
    virtual void setEindLeeftijdWzP(qint16 value) = 0;  ///< Stores EindLeeftijdWzP(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual bool IP() const = 0;  ///< Whether the scheme has a disability pension (IP).
    virtual void setIP(bool value) = 0;  ///< Stores IP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragIP() const = 0;  ///< Yearly disability pension amount in euros.
    virtual void setBedragIP(double value) = 0;  ///< Stores BedragIP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual float Pc_IP() const = 0;  ///< Percentage of the disability pension.
    virtual void setPc_IP(float value) = 0;  ///< Stores Pc_IP(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual qint16 Cd_UitkeringSoort() const = 0;        ///< 0 none, 1 "Volledig", 2 "Pro-rata"
    virtual void setCd_UitkeringSoort(qint16 value) = 0;  ///< Stores Cd_UitkeringSoort(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual qint32 Cd_UitkeringObv() const = 0;          ///< disability schedule mode code, 2 allows a staffel
    virtual void setCd_UitkeringObv(qint32 value) = 0;  ///< Stores Cd_UitkeringObv(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual bool AnwCompensatie() const = 0;  ///< Whether the scheme compensates a missing ANW benefit.
    virtual void setAnwCompensatie(bool value) = 0;  ///< Stores AnwCompensatie(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual double BedragAnwCompensatie() const = 0;  ///< Yearly ANW compensation in euros; at most Parameters::MaxAnwCompensation().
    virtual void setBedragAnwCompensatie(double value) = 0;  ///< Stores BedragAnwCompensatie(); see there. Durable when it returns, HostError when the host cannot store it.

    virtual QDate Dt_65() const = 0;                     ///< first day of the month of the 65th birthday
    virtual void setDt_65(const QDate &value) = 0;  ///< Stores Dt_65(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual QDate Dt_PensioenIngang() const = 0;         ///< the scheme's own start date, kept equal to the OP start
    virtual void setDt_PensioenIngang(const QDate &value) = 0;  ///< Stores Dt_PensioenIngang(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual bool Regel85Procent() const = 0;             ///< whether the 85 % rule applies to the PreP
    virtual double PensioengevendInkomen() const = 0;    ///< derived by the host

    /// --- old-age rows (row 1 is the commitments panel's) and the specificatie
    virtual bool HeeftSpecificatie() const = 0;
    virtual void setHeeftSpecificatie(bool value) = 0;  ///< Stores HeeftSpecificatie(); see there. Durable when it returns, HostError when the host cannot store it.
    virtual qint16 OuderdomRegelCount() const = 0;  ///< Number of old-age rows.
    virtual OuderdomRegelPtr Get_OuderdomRegel(qint16 index) = 0;  ///< Old-age row number index (from 1); nullptr past the end.
    virtual OuderdomRegelPtr Get_OuderdomRegelByKey(const QString &key) = 0;  ///< The old-age row with that Key(); nullptr when there is none.
    virtual qint16 AddOuderdomRegel() = 0;               ///< appends an empty row, returns its index
    virtual void RemoveOuderdomRegel(qint16 index) = 0;  ///< Removes old-age row number index; later rows move up one number.

    /// --- whole record
    virtual void CopyFrom(Pensioen &source) = 0;         ///< takes over all data, rows and schedules included
    /// A detached copy that belongs to no case; CopyFrom(*snapshot) puts everything back.
    virtual PensioenPtr Snapshot() const = 0;
};

} // namespace VandrelApplication

/// Hosts call the pension screen's members by name (QMetaObject::invokeMethod) with this type.
Q_DECLARE_METATYPE(VandrelApplication::ApplicationPtr)
