// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "faultyhost.h"

using namespace VandrelApplication;

namespace Robustness {

void FaultPlan::tick(const char *operation)
{
    ++m_count;
    const QString name = QString::fromLatin1(operation);
    m_seen.insert(name);
    m_operations.append(name);
    if (m_failAt > 0 && m_count == m_failAt) {
        m_fired = true;
        m_firedOperation = name;
        throw HostError(InjectedNumber,
                        QStringLiteral("Schrijven naar het dossier mislukt (%1).").arg(name),
                        QStringLiteral("FaultyHost"));
    }
}

template <typename Wrapper, typename Inner>
std::shared_ptr<Inner> FaultPlan::wrap(const std::shared_ptr<Inner> &inner)
{
    if (!inner)
        return nullptr;
    auto &slot = m_wrappers[inner.get()];
    if (auto alive = std::static_pointer_cast<Wrapper>(slot.lock()))
        return alive;
    auto made = std::make_shared<Wrapper>(inner, this);
    slot = made;
    return made;
}

namespace {

// Forwarding with one count per call; the name is "Interface::operation".
#define VR_FWD(Ret, Name, Params, Args) \
    Ret Name Params override { m_plan->tick(kName #Name); return m_inner->Name Args; }
#define VR_FWDC(Ret, Name, Params, Args) \
    Ret Name Params const override { m_plan->tick(kName #Name); return m_inner->Name Args; }
#define VR_WRAP(Ret, Wrapper, Name, Params, Args) \
    Ret Name Params override { m_plan->tick(kName #Name); return m_plan->wrap<Wrapper>(m_inner->Name Args); }
#define VR_PROP(Type, Get, Set) \
    VR_FWDC(Type, Get, (), ()) VR_FWD(void, Set, (Type value), (value))
#define VR_PROPREF(Type, Get, Set) \
    VR_FWDC(Type, Get, (), ()) VR_FWD(void, Set, (const Type &value), (value))

template <typename Inner>
class Wrapped : public Inner
{
public:
    Wrapped(std::shared_ptr<Inner> inner, FaultPlan *plan) : m_inner(std::move(inner)), m_plan(plan) {}
    const std::shared_ptr<Inner> &innerObject() const { return m_inner; }

protected:
    std::shared_ptr<Inner> m_inner;
    FaultPlan *m_plan;
};

class FScenarioRegel final : public Wrapped<ScenarioRegel>
{
public:
    using Wrapped::Wrapped;
#define kName "ScenarioRegel::"
    VR_PROP(qint16, Maand, setMaand)
    VR_PROP(double, Bedrag, setBedrag)
#undef kName
};

class FScenario final : public Wrapped<Scenario>
{
public:
    using Wrapped::Wrapped;
#define kName "Scenario::"
    VR_PROP(double, Bedrag, setBedrag)
    VR_FWDC(qint16, RegelCount, (), ())
    VR_WRAP(ScenarioRegelPtr, FScenarioRegel, Regel, (qint16 index), (index))
    VR_FWD(void, RemoveRegel, (qint16 index), (index))
    VR_FWD(void, Clear_Regels, (), ())
    VR_WRAP(ScenarioRegelPtr, FScenarioRegel, Add_Regel, (), ())
#undef kName
};

class FOuderdomRegel final : public Wrapped<OuderdomRegel>
{
public:
    using Wrapped::Wrapped;
#define kName "OuderdomRegel::"
    VR_FWDC(QString, Key, (), ())
    VR_PROP(qint32, Leeftijd, setLeeftijd)
    VR_PROP(bool, OP, setOP)
    VR_PROP(double, BedragOP, setBedragOP)
    VR_PROPREF(QDate, Dt_IngangOP, setDt_IngangOP)
    VR_PROP(qint32, LeeftijdOP, setLeeftijdOP)
    VR_PROP(bool, PreP, setPreP)
    VR_PROP(double, BedragPreP, setBedragPreP)
    VR_PROPREF(QDate, Dt_IngangPreP, setDt_IngangPreP)
    VR_PROP(qint32, LeeftijdPreP, setLeeftijdPreP)
    VR_WRAP(ScenarioPtr, FScenario, ScenarioOP, (), ())
#undef kName
};

class FAoUitkering final : public Wrapped<AoUitkering>
{
public:
    using Wrapped::Wrapped;
#define kName "AoUitkering::"
    VR_PROP(float, Pc_AoVanaf, setPc_AoVanaf)
    VR_PROP(float, Pc_AoTot, setPc_AoTot)
    VR_PROP(float, Pc_Uitkering, setPc_Uitkering)
#undef kName
};

#define VR_AO_OWNER \
    VR_WRAP(AoUitkeringPtr, FAoUitkering, AoUitkeringItem, (qint16 index), (index)) \
    VR_FWD(qint16, AoUitkeringAdd, (), ()) \
    VR_FWD(void, AoUitkeringDelete, (qint16 index), (index)) \
    VR_FWDC(QVariant, Property, (const QString &name), (name)) \
    VR_FWD(void, SetProperty, (const QString &name, const QVariant &value), (name, value))

class FPensioen final : public Wrapped<Pensioen>
{
public:
    using Wrapped::Wrapped;
#define kName "Pensioen::"
    VR_AO_OWNER
    VR_PROP(bool, HuidigeWerkgever, setHuidigeWerkgever)
    VR_PROPREF(QString, Uitvoerder, setUitvoerder)
    VR_PROPREF(QString, Branche, setBranche)
    VR_PROPREF(QString, DienstverbandKey, setDienstverbandKey)
    VR_PROP(qint16, Dienstjaren, setDienstjaren)
    VR_PROP(bool, RemoveOnClose, setRemoveOnClose)
    VR_PROP(bool, UitgesteldSchrijven, setUitgesteldSchrijven)
    VR_PROP(qint16, SoortRegeling, setSoortRegeling)
    VR_PROP(bool, RegelingBekend, setRegelingBekend)
    VR_PROP(double, Salaris, setSalaris)
    VR_PROP(double, Franchise, setFranchise)
    VR_PROP(double, Grondslag, setGrondslag)
    VR_PROP(float, OpbouwPercentage, setOpbouwPercentage)
    VR_PROP(double, Aangroei, setAangroei)
    VR_PROP(double, Premie, setPremie)
    VR_PROP(double, Doelvermogen, setDoelvermogen)
    VR_PROP(float, RekenrenteOpbouw, setRekenrenteOpbouw)
    VR_PROP(float, RekenrenteUitkering, setRekenrenteUitkering)
    VR_PROP(double, Opgebouwd, setOpgebouwd)
    VR_PROPREF(QDate, Dt_Overzicht, setDt_Overzicht)
    VR_PROP(double, BijdrageOP, setBijdrageOP)
    VR_PROP(double, BijdragePreP, setBijdragePreP)
    VR_PROP(double, BijdrageVrijwillig, setBijdrageVrijwillig)
    VR_PROP(bool, TOP, setTOP)
    VR_PROP(double, BedragTOP, setBedragTOP)
    VR_PROP(bool, PP, setPP)
    VR_PROP(double, BedragPP, setBedragPP)
    VR_PROP(float, Pc_PP, setPc_PP)
    VR_PROP(bool, PPNaAow, setPPNaAow)
    VR_PROP(double, BedragPPNaAow, setBedragPPNaAow)
    VR_PROP(float, Pc_PPNaAow, setPc_PPNaAow)
    VR_PROP(bool, PPna65, setPPna65)
    VR_PROP(double, BedragPPna65, setBedragPPna65)
    VR_PROP(float, Pc_PPna65, setPc_PPna65)
    VR_PROP(bool, PpNa65TotAow, setPpNa65TotAow)
    VR_PROP(double, BedragPpNa65TotAow, setBedragPpNa65TotAow)
    VR_PROP(float, Pc_PpNa65TotAow, setPc_PpNa65TotAow)
    VR_PROP(bool, WzP, setWzP)
    VR_PROP(double, BedragWzP, setBedragWzP)
    VR_PROP(float, Pc_WzP, setPc_WzP)
    VR_PROP(qint16, EindLeeftijdWzP, setEindLeeftijdWzP)
    VR_PROP(bool, IP, setIP)
    VR_PROP(double, BedragIP, setBedragIP)
    VR_PROP(float, Pc_IP, setPc_IP)
    VR_PROP(qint16, Cd_UitkeringSoort, setCd_UitkeringSoort)
    VR_PROP(qint32, Cd_UitkeringObv, setCd_UitkeringObv)
    VR_PROP(bool, AnwCompensatie, setAnwCompensatie)
    VR_PROP(double, BedragAnwCompensatie, setBedragAnwCompensatie)
    VR_PROPREF(QDate, Dt_65, setDt_65)
    VR_PROPREF(QDate, Dt_PensioenIngang, setDt_PensioenIngang)
    VR_FWDC(bool, Regel85Procent, (), ())
    VR_FWDC(double, PensioengevendInkomen, (), ())
    VR_PROP(bool, HeeftSpecificatie, setHeeftSpecificatie)
    VR_FWDC(qint16, OuderdomRegelCount, (), ())
    VR_WRAP(OuderdomRegelPtr, FOuderdomRegel, Get_OuderdomRegel, (qint16 index), (index))
    VR_WRAP(OuderdomRegelPtr, FOuderdomRegel, Get_OuderdomRegelByKey, (const QString &key), (key))
    VR_FWD(qint16, AddOuderdomRegel, (), ())
    VR_FWD(void, RemoveOuderdomRegel, (qint16 index), (index))

    void CopyFrom(Pensioen &source) override
    {
        m_plan->tick(kName "CopyFrom");
        m_inner->CopyFrom(unwrap(source));
    }
    PensioenPtr Snapshot() const override
    {
        m_plan->tick(kName "Snapshot");
        return m_plan->wrap<FPensioen>(m_inner->Snapshot());
    }
#undef kName
};

class FDienstverband final : public Wrapped<Dienstverband>
{
public:
    using Wrapped::Wrapped;
#define kName "Dienstverband::"
    VR_FWDC(QString, Key, (), ())
    VR_PROPREF(QString, Werkgever, setWerkgever)
    VR_PROPREF(QDate, Dt_Begin, setDt_Begin)
    VR_PROPREF(QDate, Dt_Einde, setDt_Einde)
    VR_PROP(double, Salaris, setSalaris)
    VR_PROPREF(QDate, Dt_InkomenMeetellenTot, setDt_InkomenMeetellenTot)
#undef kName
};

class FAanvrager final : public Wrapped<Aanvrager>
{
public:
    using Wrapped::Wrapped;
#define kName "Aanvrager::"
    VR_FWDC(qint16, Anv_Id, (), ())
    VR_PROPREF(QString, Naam, setNaam)
    VR_PROPREF(QDate, GeboorteDatum, setGeboorteDatum)
    VR_PROP(quint8, Categorie, setCategorie)
    VR_FWDC(qint16, AowLeeftijd, (), ())
    VR_FWDC(QDate, Dt_EindeInkomen, (), ())
    VR_FWDC(qint32, AgeOnDate, (const QDate &date), (date))
    VR_WRAP(DienstverbandPtr, FDienstverband, Get_Dienstverband, (qint16 index), (index))
    VR_FWD(qint16, AddDienstverband, (), ())
    VR_FWD(void, RemoveDienstverband, (qint16 index), (index))
    VR_WRAP(PensioenPtr, FPensioen, Get_Pensioen, (qint16 Pen_Id), (Pen_Id))
    VR_FWD(qint16, AddPension, (), ())
    VR_FWD(void, RemovePension, (qint16 Pen_Id), (Pen_Id))
#undef kName
};

class FDossier final : public Wrapped<Dossier>
{
public:
    using Wrapped::Wrapped;
#define kName "Dossier::"
    VR_WRAP(AanvragerPtr, FAanvrager, Get_Aanvrager, (qint16 Anv_Id), (Anv_Id))
    VR_FWD(qint16, AddAanvrager, (), ())
    VR_FWD(void, RemoveAanvrager, (qint16 Anv_Id), (Anv_Id))
    VR_PROP(qint32, SyncVlaggen, setSyncVlaggen)
#undef kName
};

class FParameters final : public Wrapped<Parameters>
{
public:
    using Wrapped::Wrapped;
#define kName "Parameters::"
    VR_FWDC(float, DefaultOpbouwEindloon, (), ())
    VR_FWDC(float, DefaultOpbouwMiddelloon, (), ())
    VR_FWDC(double, FranchiseEindloonA, (), ())
    VR_FWDC(double, FranchiseEindloonB, (), ())
    VR_FWDC(double, FranchiseA, (), ())
    VR_FWDC(double, FranchiseB, (), ())
    VR_FWDC(double, MaxAnwCompensation, (), ())
#undef kName
};

} // namespace

Pensioen &unwrap(Pensioen &pensioen)
{
    if (auto *wrapper = dynamic_cast<FPensioen *>(&pensioen))
        return *wrapper->innerObject();
    return pensioen;
}

FaultyHost::FaultyHost(ApplicationPtr inner)
    : m_inner(std::move(inner))
    , m_plan(std::make_shared<FaultPlan>())
{
}

DossierPtr FaultyHost::Get_Dossier()
{
    m_plan->tick("Application::Get_Dossier");
    return m_plan->wrap<FDossier>(m_inner->Get_Dossier());
}

ParametersPtr FaultyHost::Get_Parameters()
{
    m_plan->tick("Application::Get_Parameters");
    return m_plan->wrap<FParameters>(m_inner->Get_Parameters());
}

void FaultyHost::ReportError(ErrorRecord &record)
{
    m_reports.append(record);
}

QString FaultyHost::Title() const
{
    return m_inner->Title();
}

QIcon FaultyHost::Icon() const
{
    return m_inner->Icon();
}

} // namespace Robustness
