#pragma once

// The host object model as the pension library sees it. A host implements these interfaces; the
// library only consumes them. Objects are handed out as shared pointers so that a control may keep
// one for its lifetime even when the host renumbers its collections: an object whose data is gone
// throws HostError(HostErrorCode::NotFound) on use instead of dangling.
//
// Conventions:
// - collections are numbered from 1; a getter past the end returns nullptr;
// - a date is "not filled" when it is null or its year is 1900 or earlier (isFilled());
// - every setter either stores the value durably before it returns or throws HostError;
// - ages are whole months (years * 12 + months).

#include "errorrecord.h"
#include "hosterror.h"
#include "vandrelapplication_export.h"

#include <QDate>
#include <QIcon>
#include <QString>
#include <QVariant>

#include <memory>

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

using ApplicationPtr = std::shared_ptr<Application>;
using DossierPtr = std::shared_ptr<Dossier>;
using AanvragerPtr = std::shared_ptr<Aanvrager>;
using DienstverbandPtr = std::shared_ptr<Dienstverband>;
using PensioenPtr = std::shared_ptr<Pensioen>;
using OuderdomRegelPtr = std::shared_ptr<OuderdomRegel>;
using ScenarioPtr = std::shared_ptr<Scenario>;
using ScenarioRegelPtr = std::shared_ptr<ScenarioRegel>;
using AoUitkeringPtr = std::shared_ptr<AoUitkering>;
using KapitaalPtr = std::shared_ptr<Kapitaal>;
using VerzekerdePtr = std::shared_ptr<Verzekerde>;
using ParametersPtr = std::shared_ptr<Parameters>;

// A date with year 1900 or earlier, or a null date, is "not filled".
VANDRELAPPLICATION_EXPORT bool isFilled(const QDate &date);

// Numbers that the host attaches a meaning to.
namespace SoortRegeling {
inline constexpr qint16 Eindloon = 1;
inline constexpr qint16 Middelloon = 2;
inline constexpr qint16 BeschikbarePremie = 3;
}
namespace UitkeringSoort {
inline constexpr qint16 Geen = 0;
inline constexpr qint16 Volledig = 1;
inline constexpr qint16 ProRata = 2;
}
namespace SyncVlag {
inline constexpr qint32 Salaris = 8;
inline constexpr qint32 Franchise = 16;
inline constexpr qint32 Grondslag = 32;
inline constexpr qint32 Aangroei = 64;
}

class VANDRELAPPLICATION_EXPORT Application
{
public:
    virtual ~Application();

    virtual DossierPtr Get_Dossier() = 0;          // nullptr when no case is open
    virtual ParametersPtr Get_Parameters() = 0;
    // Shows or logs the record; must not throw.
    virtual void ReportError(ErrorRecord &record) = 0;
    virtual QString Title() const = 0;             // title of the running application
    virtual QIcon Icon() const = 0;                // window icon for the library's dialogs
};

class VANDRELAPPLICATION_EXPORT Parameters
{
public:
    virtual ~Parameters();

    virtual float DefaultOpbouwEindloon() const = 0;    // percentage, 1.875 means 1.875 %
    virtual float DefaultOpbouwMiddelloon() const = 0;
    virtual double FranchiseEindloonA() const = 0;      // final pay, first category group
    virtual double FranchiseEindloonB() const = 0;      // final pay, second category group
    virtual double FranchiseA() const = 0;              // other types, first group
    virtual double FranchiseB() const = 0;              // other types, second group
    virtual double MaxAnwCompensation() const = 0;      // already 75 % of the maximum ANW benefit
};

class VANDRELAPPLICATION_EXPORT Dossier
{
public:
    virtual ~Dossier();

    virtual AanvragerPtr Get_Aanvrager(qint16 Anv_Id) = 0;  // 1 applicant, 2 partner
    virtual qint16 AddAanvrager() = 0;                      // adds the partner; returns its number
    virtual void RemoveAanvrager(qint16 Anv_Id) = 0;        // only the partner can be removed
    virtual qint32 SyncVlaggen() const = 0;
    virtual void setSyncVlaggen(qint32 value) = 0;
};

class VANDRELAPPLICATION_EXPORT Aanvrager
{
public:
    virtual ~Aanvrager();

    virtual qint16 Anv_Id() const = 0;
    virtual QString Naam() const = 0;
    virtual void setNaam(const QString &value) = 0;
    virtual QDate GeboorteDatum() const = 0;
    virtual void setGeboorteDatum(const QDate &value) = 0;
    virtual quint8 Categorie() const = 0;
    virtual void setCategorie(quint8 value) = 0;
    virtual qint16 AowLeeftijd() const = 0;              // whole years, derived by the host
    virtual QDate Dt_EindeInkomen() const = 0;           // own end date of income, derived by the host
    virtual qint32 AgeOnDate(const QDate &date) const = 0;  // whole months on that date

    virtual DienstverbandPtr Get_Dienstverband(qint16 index) = 0;
    virtual qint16 AddDienstverband() = 0;
    virtual void RemoveDienstverband(qint16 index) = 0;

    virtual PensioenPtr Get_Pensioen(qint16 Pen_Id) = 0;
    virtual qint16 AddPension() = 0;                     // appends an empty scheme
    virtual void RemovePension(qint16 Pen_Id) = 0;       // later schemes move up one number
};

class VANDRELAPPLICATION_EXPORT Dienstverband
{
public:
    virtual ~Dienstverband();

    virtual QString Key() const = 0;                     // "{8-4-4-4-12}", 38 characters
    virtual QString Werkgever() const = 0;
    virtual void setWerkgever(const QString &value) = 0;
    virtual QDate Dt_Begin() const = 0;
    virtual void setDt_Begin(const QDate &value) = 0;
    virtual QDate Dt_Einde() const = 0;
    virtual void setDt_Einde(const QDate &value) = 0;
    virtual double Salaris() const = 0;
    virtual void setSalaris(double value) = 0;
    virtual QDate Dt_InkomenMeetellenTot() const = 0;    // "datum inkomen meetellen tot"
    virtual void setDt_InkomenMeetellenTot(const QDate &value) = 0;
};

class VANDRELAPPLICATION_EXPORT ScenarioRegel
{
public:
    virtual ~ScenarioRegel();

    virtual qint16 Maand() const = 0;                    // 1 is the scenario's starting month
    virtual void setMaand(qint16 value) = 0;
    virtual double Bedrag() const = 0;
    virtual void setBedrag(double value) = 0;
};

class VANDRELAPPLICATION_EXPORT Scenario
{
public:
    virtual ~Scenario();

    virtual double Bedrag() const = 0;                   // amount of the first month
    virtual void setBedrag(double value) = 0;
    virtual qint16 RegelCount() const = 0;
    virtual ScenarioRegelPtr Regel(qint16 index) = 0;
    virtual void RemoveRegel(qint16 index) = 0;
    virtual void Clear_Regels() = 0;
    virtual ScenarioRegelPtr Add_Regel() = 0;            // appended, Maand 0 and Bedrag 0
};

// One old-age row of a scheme: a target age with its OP and PreP. Row 1 is what the commitments
// panel edits; all rows together are the scheme's specificatie.
class VANDRELAPPLICATION_EXPORT OuderdomRegel
{
public:
    virtual ~OuderdomRegel();

    virtual QString Key() const = 0;                     // stable while the row exists
    virtual qint32 Leeftijd() const = 0;                 // target age in months, 0 = not filled
    virtual void setLeeftijd(qint32 months) = 0;

    virtual bool OP() const = 0;
    virtual void setOP(bool value) = 0;
    virtual double BedragOP() const = 0;
    virtual void setBedragOP(double value) = 0;
    virtual QDate Dt_IngangOP() const = 0;
    virtual void setDt_IngangOP(const QDate &value) = 0;   // also keeps LeeftijdOP in step
    virtual qint32 LeeftijdOP() const = 0;
    virtual void setLeeftijdOP(qint32 months) = 0;        // the host derives Dt_IngangOP from it

    virtual bool PreP() const = 0;
    virtual void setPreP(bool value) = 0;
    virtual double BedragPreP() const = 0;
    virtual void setBedragPreP(double value) = 0;
    virtual QDate Dt_IngangPreP() const = 0;
    virtual void setDt_IngangPreP(const QDate &value) = 0;
    virtual qint32 LeeftijdPreP() const = 0;
    virtual void setLeeftijdPreP(qint32 months) = 0;

    virtual ScenarioPtr ScenarioOP() = 0;                // never nullptr
};

class VANDRELAPPLICATION_EXPORT AoUitkering
{
public:
    virtual ~AoUitkering();

    virtual float Pc_AoVanaf() const = 0;
    virtual void setPc_AoVanaf(float value) = 0;
    virtual float Pc_AoTot() const = 0;
    virtual void setPc_AoTot(float value) = 0;
    virtual float Pc_Uitkering() const = 0;              // -1 means the actual AO percentage
    virtual void setPc_Uitkering(float value) = 0;
};

// Anything that owns a disability benefit schedule.
class VANDRELAPPLICATION_EXPORT AoUitkeringOwner
{
public:
    virtual ~AoUitkeringOwner();

    virtual AoUitkeringPtr AoUitkeringItem(qint16 index) = 0;
    virtual qint16 AoUitkeringAdd() = 0;
    virtual void AoUitkeringDelete(qint16 index) = 0;
    // Late-bound properties, read and written by name ("Cd_RvcAfwijking", "Pc_RvcAfwijking",
    // "Pc_RvcUitkering"). An owner without such a property throws HostError.
    virtual QVariant Property(const QString &name) const = 0;
    virtual void SetProperty(const QString &name, const QVariant &value) = 0;
};

class VANDRELAPPLICATION_EXPORT Kapitaal : public AoUitkeringOwner
{
public:
    virtual qint32 Cd_UitkeringObv() const = 0;
    virtual void setCd_UitkeringObv(qint32 value) = 0;
    virtual qint32 Cd_AoDekking() const = 0;
    virtual void setCd_AoDekking(qint32 value) = 0;
};

class VANDRELAPPLICATION_EXPORT Verzekerde : public AoUitkeringOwner
{
};

class VANDRELAPPLICATION_EXPORT Pensioen : public AoUitkeringOwner
{
public:
    // --- what the pension list shows and the provider control edits
    virtual bool HuidigeWerkgever() const = 0;
    virtual void setHuidigeWerkgever(bool value) = 0;
    virtual QString Uitvoerder() const = 0;              // provider name
    virtual void setUitvoerder(const QString &value) = 0;
    virtual QString Branche() const = 0;                 // sector
    virtual void setBranche(const QString &value) = 0;
    virtual QString DienstverbandKey() const = 0;        // empty when the scheme names no employment
    virtual void setDienstverbandKey(const QString &value) = 0;
    // Whole years of service with the scheme's employer: a fact of the participant's employment.
    virtual qint16 Dienstjaren() const = 0;
    virtual void setDienstjaren(qint16 value) = 0;
    virtual bool RemoveOnClose() const = 0;
    virtual void setRemoveOnClose(bool value) = 0;
    // Mode switch of the record: while deferred, setters collect their changes and the host writes
    // them at once when the switch is turned off again. Every screen turns it off so that each
    // accepted edit is durable when the setter returns.
    virtual bool UitgesteldSchrijven() const = 0;
    virtual void setUitgesteldSchrijven(bool value) = 0;

    // --- scheme data
    virtual qint16 SoortRegeling() const = 0;
    virtual void setSoortRegeling(qint16 value) = 0;
    virtual bool RegelingBekend() const = 0;
    virtual void setRegelingBekend(bool value) = 0;
    virtual double Salaris() const = 0;
    virtual void setSalaris(double value) = 0;
    virtual double Franchise() const = 0;
    virtual void setFranchise(double value) = 0;
    virtual double Grondslag() const = 0;
    virtual void setGrondslag(double value) = 0;
    virtual float OpbouwPercentage() const = 0;
    virtual void setOpbouwPercentage(float value) = 0;
    virtual double Aangroei() const = 0;                 // factor A
    virtual void setAangroei(double value) = 0;
    virtual double Premie() const = 0;                   // defined-contribution contribution
    virtual void setPremie(double value) = 0;
    virtual double Doelvermogen() const = 0;
    virtual void setDoelvermogen(double value) = 0;
    virtual float RekenrenteOpbouw() const = 0;
    virtual void setRekenrenteOpbouw(float value) = 0;
    virtual float RekenrenteUitkering() const = 0;
    virtual void setRekenrenteUitkering(float value) = 0;
    virtual double Opgebouwd() const = 0;
    virtual void setOpgebouwd(double value) = 0;
    virtual QDate Dt_Overzicht() const = 0;
    virtual void setDt_Overzicht(const QDate &value) = 0;
    virtual double BijdrageOP() const = 0;
    virtual void setBijdrageOP(double value) = 0;
    virtual double BijdragePreP() const = 0;
    virtual void setBijdragePreP(double value) = 0;
    virtual double BijdrageVrijwillig() const = 0;
    virtual void setBijdrageVrijwillig(double value) = 0;

    // --- commitments at scheme level
    virtual bool TOP() const = 0;
    virtual void setTOP(bool value) = 0;
    virtual double BedragTOP() const = 0;
    virtual void setBedragTOP(double value) = 0;

    virtual bool PP() const = 0;                         // partner pension until AOW, death before AOW
    virtual void setPP(bool value) = 0;
    virtual double BedragPP() const = 0;
    virtual void setBedragPP(double value) = 0;
    virtual float Pc_PP() const = 0;
    virtual void setPc_PP(float value) = 0;

    virtual bool PPNaAow() const = 0;                    // after AOW, death before AOW
    virtual void setPPNaAow(bool value) = 0;
    virtual double BedragPPNaAow() const = 0;
    virtual void setBedragPPNaAow(double value) = 0;
    virtual float Pc_PPNaAow() const = 0;
    virtual void setPc_PPNaAow(float value) = 0;

    virtual bool PPna65() const = 0;                     // after AOW, death after AOW
    virtual void setPPna65(bool value) = 0;
    virtual double BedragPPna65() const = 0;
    virtual void setBedragPPna65(double value) = 0;
    virtual float Pc_PPna65() const = 0;
    virtual void setPc_PPna65(float value) = 0;

    virtual bool PpNa65TotAow() const = 0;               // until AOW, death after AOW
    virtual void setPpNa65TotAow(bool value) = 0;
    virtual double BedragPpNa65TotAow() const = 0;
    virtual void setBedragPpNa65TotAow(double value) = 0;
    virtual float Pc_PpNa65TotAow() const = 0;
    virtual void setPc_PpNa65TotAow(float value) = 0;

    virtual bool WzP() const = 0;
    virtual void setWzP(bool value) = 0;
    virtual double BedragWzP() const = 0;
    virtual void setBedragWzP(double value) = 0;
    virtual float Pc_WzP() const = 0;
    virtual void setPc_WzP(float value) = 0;
    virtual qint16 EindLeeftijdWzP() const = 0;          // whole years
    virtual void setEindLeeftijdWzP(qint16 value) = 0;

    virtual bool IP() const = 0;
    virtual void setIP(bool value) = 0;
    virtual double BedragIP() const = 0;
    virtual void setBedragIP(double value) = 0;
    virtual float Pc_IP() const = 0;
    virtual void setPc_IP(float value) = 0;
    virtual qint16 Cd_UitkeringSoort() const = 0;        // 0 none, 1 "Volledig", 2 "Pro-rata"
    virtual void setCd_UitkeringSoort(qint16 value) = 0;
    virtual qint32 Cd_UitkeringObv() const = 0;          // disability schedule mode code, 2 allows a staffel
    virtual void setCd_UitkeringObv(qint32 value) = 0;

    virtual bool AnwCompensatie() const = 0;
    virtual void setAnwCompensatie(bool value) = 0;
    virtual double BedragAnwCompensatie() const = 0;
    virtual void setBedragAnwCompensatie(double value) = 0;

    virtual QDate Dt_65() const = 0;                     // first day of the month of the 65th birthday
    virtual void setDt_65(const QDate &value) = 0;
    virtual QDate Dt_PensioenIngang() const = 0;         // the scheme's own start date, kept equal to the OP start
    virtual void setDt_PensioenIngang(const QDate &value) = 0;
    virtual bool Regel85Procent() const = 0;             // whether the 85 % rule applies to the PreP
    virtual double PensioengevendInkomen() const = 0;    // derived by the host

    // --- old-age rows (row 1 is the commitments panel's) and the specificatie
    virtual bool HeeftSpecificatie() const = 0;
    virtual void setHeeftSpecificatie(bool value) = 0;
    virtual qint16 OuderdomRegelCount() const = 0;
    virtual OuderdomRegelPtr Get_OuderdomRegel(qint16 index) = 0;
    virtual OuderdomRegelPtr Get_OuderdomRegelByKey(const QString &key) = 0;
    virtual qint16 AddOuderdomRegel() = 0;               // appends an empty row, returns its index
    virtual void RemoveOuderdomRegel(qint16 index) = 0;

    // --- whole record
    virtual void CopyFrom(Pensioen &source) = 0;         // takes over all data, rows and schedules included
    // A detached copy that belongs to no case; CopyFrom(*snapshot) puts everything back.
    virtual PensioenPtr Snapshot() const = 0;
};

} // namespace VandrelApplication

// Hosts call the pension screen's members by name (QMetaObject::invokeMethod) with this type.
Q_DECLARE_METATYPE(VandrelApplication::ApplicationPtr)
