// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "objects.h"

#include "rules.h"
#include "store.h"

#include <QUuid>

namespace Zarnoveld::detail {

namespace Code = VandrelApplication::HostErrorCode;

namespace {

const QString kSource = QStringLiteral("Zarnoveld");

[[noreturn]] void fail(qint32 code, const QString &text)
{
    throw HostError(code, text, kSource);
}

template <typename Node>
std::shared_ptr<Node> itemAt(const std::vector<std::shared_ptr<Node>> &list, qint16 index)
{
    if (index < 1 || index > static_cast<qint16>(list.size()))
        return nullptr;
    return list[static_cast<size_t>(index - 1)];
}

// Appends node to list, written through first.
template <typename Node>
qint16 append(CaseCore &core, std::vector<std::shared_ptr<Node>> &list, std::shared_ptr<Node> node,
              qint64 parentId)
{
    node->id = core.newId(*node->def);
    const int pos = static_cast<int>(list.size()) + 1;
    core.write([&](Store *s) {
        if (s)
            s->insert(*node, parentId, pos);
    });
    list.push_back(std::move(node));
    return static_cast<qint16>(list.size());
}

template <typename Node>
void removeAt(CaseCore &core, std::vector<std::shared_ptr<Node>> &list, qint16 index,
              qint64 parentId, const QString &what)
{
    if (index < 1 || index > static_cast<qint16>(list.size()))
        fail(Code::OutOfRange, QStringLiteral("%1 %2 bestaat niet.").arg(what).arg(index));
    const auto &node = list[static_cast<size_t>(index - 1)];
    core.write([&](Store *s) {
        if (s) {
            s->remove(*node);
            s->shift(*node->def, parentId, index, -1);
        }
    });
    kill(*node);
    list.erase(list.begin() + (index - 1));
}

// Leaf lists (scenario rules, schedule rows): existing records take over the source's values,
// surplus ones go, missing ones are added. Handles to kept positions stay valid.
template <typename Node>
void syncLeaves(CaseCore &core, Store *s, std::vector<std::shared_ptr<Node>> &dst,
                const std::vector<std::shared_ptr<Node>> &src, qint64 parentId,
                std::vector<std::function<void()>> &apply)
{
    const size_t keep = std::min(dst.size(), src.size());
    for (size_t i = 0; i < keep; ++i) {
        auto target = dst[i];
        auto values = src[i]->v;
        if (s && target->v != values) {
            std::swap(target->v, values);
            s->updateAll(*target);
            std::swap(target->v, values);
        }
        apply.push_back([target, values] { target->v = values; });
    }
    if (dst.size() > src.size()) {
        std::vector<std::shared_ptr<Node>> gone(dst.begin() + static_cast<long>(keep), dst.end());
        if (s)
            for (const auto &g : gone)
                s->remove(*g);
        apply.push_back([&dst, gone, keep] {
            for (const auto &g : gone)
                kill(*g);
            dst.resize(keep);
        });
    }
    for (size_t i = keep; i < src.size(); ++i) {
        auto node = std::make_shared<Node>();
        node->id = core.newId(*node->def);
        node->v = src[i]->v;
        if (s)
            s->insert(*node, parentId, static_cast<int>(i) + 1);
        apply.push_back([&dst, node] { dst.push_back(node); });
    }
}

// ---------------------------------------------------------------- schedule rows

class AoObj : public AoUitkering
{
public:
    AoObj(std::shared_ptr<CaseCore> core, std::shared_ptr<AoNode> node, PensioenNode *scheme)
        : m_core(std::move(core)), m_node(std::move(node)), m_scheme(scheme) {}
    float Pc_AoVanaf() const override { return get().fl(AoF::Pc_AoVanaf); }
    void setPc_AoVanaf(float value) override { put(AoF::Pc_AoVanaf, value); }
    float Pc_AoTot() const override { return get().fl(AoF::Pc_AoTot); }
    void setPc_AoTot(float value) override { put(AoF::Pc_AoTot, value); }
    float Pc_Uitkering() const override { return get().fl(AoF::Pc_Uitkering); }
    void setPc_Uitkering(float value) override { put(AoF::Pc_Uitkering, value); }

private:
    const AoNode &get() const { m_node->check(); return *m_node; }
    void put(int field, float value) { m_core->set(m_node, field, QVariant(value), m_scheme); }
    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<AoNode> m_node;
    PensioenNode *m_scheme;
};

// The schedule part every owner shares; owner is the record the rows hang under.
struct AoList
{
    std::shared_ptr<CaseCore> core;
    std::vector<std::shared_ptr<AoNode>> *rows;
    Record *owner;
    PensioenNode *scheme;

    AoUitkeringPtr item(qint16 index) const
    {
        owner->check();
        auto node = itemAt(*rows, index);
        return node ? std::make_shared<AoObj>(core, node, scheme) : nullptr;
    }
    qint16 add() const
    {
        owner->check();
        return append(*core, *rows, std::make_shared<AoNode>(), owner->id);
    }
    void remove(qint16 index) const
    {
        owner->check();
        removeAt(*core, *rows, index, owner->id, QStringLiteral("Staffelregel"));
    }
};

// ---------------------------------------------------------------- scenario

class ScenarioRegelObj : public ScenarioRegel
{
public:
    ScenarioRegelObj(std::shared_ptr<CaseCore> core, std::shared_ptr<ScenarioRegelNode> node,
                     PensioenNode *scheme)
        : m_core(std::move(core)), m_node(std::move(node)), m_scheme(scheme) {}
    qint16 Maand() const override { m_node->check(); return static_cast<qint16>(m_node->i(ScenarioRegelF::Maand)); }
    void setMaand(qint16 value) override { m_core->set(m_node, ScenarioRegelF::Maand, QVariant::fromValue(value), m_scheme); }
    double Bedrag() const override { m_node->check(); return m_node->d(ScenarioRegelF::Bedrag); }
    void setBedrag(double value) override { m_core->set(m_node, ScenarioRegelF::Bedrag, value, m_scheme); }

private:
    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<ScenarioRegelNode> m_node;
    PensioenNode *m_scheme;
};

class ScenarioObj : public Scenario
{
public:
    ScenarioObj(std::shared_ptr<CaseCore> core, std::shared_ptr<OuderdomNode> row)
        : m_core(std::move(core)), m_row(std::move(row)) {}
    double Bedrag() const override { m_row->check(); return m_row->d(OuderdomF::ScenarioBedrag); }
    void setBedrag(double value) override { m_core->set(m_row, OuderdomF::ScenarioBedrag, value, m_row->pensioen); }
    qint16 RegelCount() const override { m_row->check(); return static_cast<qint16>(m_row->regels.size()); }
    ScenarioRegelPtr Regel(qint16 index) override
    {
        m_row->check();
        auto node = itemAt(m_row->regels, index);
        return node ? std::make_shared<ScenarioRegelObj>(m_core, node, m_row->pensioen) : nullptr;
    }
    void RemoveRegel(qint16 index) override
    {
        m_row->check();
        removeAt(*m_core, m_row->regels, index, m_row->id, QStringLiteral("Scenarioregel"));
    }
    void Clear_Regels() override
    {
        m_row->check();
        auto &regels = m_row->regels;
        m_core->write([&](Store *s) {
            if (s)
                for (const auto &r : regels)
                    s->remove(*r);
        });
        for (const auto &r : regels)
            kill(*r);
        regels.clear();
    }
    ScenarioRegelPtr Add_Regel() override
    {
        m_row->check();
        const qint16 index = append(*m_core, m_row->regels, std::make_shared<ScenarioRegelNode>(), m_row->id);
        return Regel(index);
    }

private:
    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<OuderdomNode> m_row;
};

// ---------------------------------------------------------------- old-age rows

class OuderdomObj : public OuderdomRegel
{
public:
    OuderdomObj(std::shared_ptr<CaseCore> core, std::shared_ptr<OuderdomNode> node)
        : m_core(std::move(core)), m_node(std::move(node)) {}

    QString Key() const override { return get().s(OuderdomF::Key); }
    qint32 Leeftijd() const override { return get().i(OuderdomF::Leeftijd); }
    void setLeeftijd(qint32 months) override { put(OuderdomF::Leeftijd, months); }
    bool OP() const override { return get().b(OuderdomF::OP); }
    void setOP(bool value) override { put(OuderdomF::OP, value); }
    double BedragOP() const override { return get().d(OuderdomF::BedragOP); }
    void setBedragOP(double value) override { put(OuderdomF::BedragOP, value); }
    QDate Dt_IngangOP() const override { return get().date(OuderdomF::Dt_IngangOP); }
    void setDt_IngangOP(const QDate &value) override { setDate(OuderdomF::Dt_IngangOP, OuderdomF::LeeftijdOP, value); }
    qint32 LeeftijdOP() const override { return get().i(OuderdomF::LeeftijdOP); }
    void setLeeftijdOP(qint32 months) override { setAge(OuderdomF::Dt_IngangOP, OuderdomF::LeeftijdOP, months); }
    bool PreP() const override { return get().b(OuderdomF::PreP); }
    void setPreP(bool value) override { put(OuderdomF::PreP, value); }
    double BedragPreP() const override { return get().d(OuderdomF::BedragPreP); }
    void setBedragPreP(double value) override { put(OuderdomF::BedragPreP, value); }
    QDate Dt_IngangPreP() const override { return get().date(OuderdomF::Dt_IngangPreP); }
    void setDt_IngangPreP(const QDate &value) override { setDate(OuderdomF::Dt_IngangPreP, OuderdomF::LeeftijdPreP, value); }
    qint32 LeeftijdPreP() const override { return get().i(OuderdomF::LeeftijdPreP); }
    void setLeeftijdPreP(qint32 months) override { setAge(OuderdomF::Dt_IngangPreP, OuderdomF::LeeftijdPreP, months); }
    ScenarioPtr ScenarioOP() override { get(); return std::make_shared<ScenarioObj>(m_core, m_node); }

private:
    const OuderdomNode &get() const { m_node->check(); return *m_node; }
    void put(int field, const QVariant &value) { m_core->set(m_node, field, value, m_node->pensioen); }

    QDate birth() const
    {
        const PensioenNode *pen = m_node->pensioen;
        return pen && pen->aanvrager ? pen->aanvrager->date(AanvragerF::GeboorteDatum) : QDate();
    }

    // Row 1's OP start is the scheme's own start date; both are written in the same transaction.
    void addSchemeStart(std::vector<Change> &changes, int dateField, const QDate &date)
    {
        PensioenNode *pen = m_node->pensioen;
        if (dateField == OuderdomF::Dt_IngangOP && pen && !pen->rows.empty() && pen->rows.front() == m_node)
            changes.push_back({pen->shared_from_this(), PensioenF::Dt_PensioenIngang, QVariant(date)});
    }

    void setDate(int dateField, int ageField, const QDate &value)
    {
        get();
        std::vector<Change> changes;
        if (isFilled(value)) {
            changes.push_back({m_node, dateField, QVariant(value)});
            changes.push_back({m_node, ageField, Rules::ageOnDate(birth(), value)});
            addSchemeStart(changes, dateField, value);
        } else {
            changes.push_back({m_node, dateField, QVariant(QDate())});
            changes.push_back({m_node, ageField, 0});
            addSchemeStart(changes, dateField, QDate());
        }
        m_core->set(std::move(changes), m_node->pensioen);
    }

    // Without a birth date no start date can be derived: the age is kept and the date stays empty.
    void setAge(int dateField, int ageField, qint32 months)
    {
        get();
        const QDate date = months > 0 ? Rules::startDateForAge(birth(), months) : QDate();
        std::vector<Change> changes{{m_node, ageField, months > 0 ? months : 0},
                                    {m_node, dateField, QVariant(date)}};
        addSchemeStart(changes, dateField, date);
        m_core->set(std::move(changes), m_node->pensioen);
    }

    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<OuderdomNode> m_node;
};

// ---------------------------------------------------------------- pension record

int rvcField(const QString &name)
{
    if (name == QLatin1String("Cd_RvcAfwijking"))
        return PensioenF::Cd_RvcAfwijking;
    if (name == QLatin1String("Pc_RvcAfwijking"))
        return PensioenF::Pc_RvcAfwijking;
    if (name == QLatin1String("Pc_RvcUitkering"))
        return PensioenF::Pc_RvcUitkering;
    return -1;
}

[[noreturn]] void unknownProperty(const QString &owner, const QString &name)
{
    fail(Code::OutOfRange, QStringLiteral("%1 kent de eigenschap \"%2\" niet.").arg(owner, name));
}

#define VP_FIELD(Type, Name, Getter)                                                              \
    Type Name() const override { return static_cast<Type>(get().Getter(PensioenF::Name)); }      \
    void set##Name(Type value) override { put(PensioenF::Name, QVariant::fromValue(value)); }
#define VP_DATE(Name)                                                                             \
    QDate Name() const override { return get().date(PensioenF::Name); }                           \
    void set##Name(const QDate &value) override { put(PensioenF::Name, QVariant(value)); }
#define VP_TEXT(Name)                                                                             \
    QString Name() const override { return get().s(PensioenF::Name); }                            \
    void set##Name(const QString &value) override { put(PensioenF::Name, QVariant(value)); }

class PensioenObj : public Pensioen
{
public:
    PensioenObj(std::shared_ptr<CaseCore> core, std::shared_ptr<PensioenNode> node)
        : m_core(std::move(core)), m_node(std::move(node)) {}

    const std::shared_ptr<PensioenNode> &node() const { return m_node; }
    const std::shared_ptr<CaseCore> &core() const { return m_core; }

    // AoUitkeringOwner
    AoUitkeringPtr AoUitkeringItem(qint16 index) override { return ao().item(index); }
    qint16 AoUitkeringAdd() override { return ao().add(); }
    void AoUitkeringDelete(qint16 index) override { ao().remove(index); }
    QVariant Property(const QString &name) const override
    {
        const int field = rvcField(name);
        if (field < 0)
            unknownProperty(QStringLiteral("Een pensioenregeling"), name);
        return get().v[field];
    }
    void SetProperty(const QString &name, const QVariant &value) override
    {
        const int field = rvcField(name);
        if (field < 0)
            unknownProperty(QStringLiteral("Een pensioenregeling"), name);
        put(field, value);
    }

    VP_FIELD(bool, HuidigeWerkgever, b)
    VP_TEXT(Uitvoerder)
    VP_TEXT(Branche)
    VP_TEXT(DienstverbandKey)
    VP_FIELD(qint16, Dienstjaren, i)
    VP_FIELD(bool, RemoveOnClose, b)

    bool UitgesteldSchrijven() const override { return get().deferred; }
    void setUitgesteldSchrijven(bool value) override
    {
        get();
        if (value) {
            m_node->deferred = true;
        } else if (m_node->deferred) {
            m_core->flush(*m_node);
            m_node->deferred = false;
        }
    }

    VP_FIELD(qint16, SoortRegeling, i)
    VP_FIELD(bool, RegelingBekend, b)
    VP_FIELD(double, Salaris, d)
    VP_FIELD(double, Franchise, d)
    VP_FIELD(double, Grondslag, d)
    VP_FIELD(float, OpbouwPercentage, fl)
    VP_FIELD(double, Aangroei, d)
    VP_FIELD(double, Premie, d)
    VP_FIELD(double, Doelvermogen, d)
    VP_FIELD(float, RekenrenteOpbouw, fl)
    VP_FIELD(float, RekenrenteUitkering, fl)
    VP_FIELD(double, Opgebouwd, d)
    VP_DATE(Dt_Overzicht)
    VP_FIELD(double, BijdrageOP, d)
    VP_FIELD(double, BijdragePreP, d)
    VP_FIELD(double, BijdrageVrijwillig, d)
    VP_FIELD(bool, TOP, b)
    VP_FIELD(double, BedragTOP, d)
    VP_FIELD(bool, PP, b)
    VP_FIELD(double, BedragPP, d)
    VP_FIELD(float, Pc_PP, fl)
    VP_FIELD(bool, PPNaAow, b)
    VP_FIELD(double, BedragPPNaAow, d)
    VP_FIELD(float, Pc_PPNaAow, fl)
    VP_FIELD(bool, PPna65, b)
    VP_FIELD(double, BedragPPna65, d)
    VP_FIELD(float, Pc_PPna65, fl)
    VP_FIELD(bool, PpNa65TotAow, b)
    VP_FIELD(double, BedragPpNa65TotAow, d)
    VP_FIELD(float, Pc_PpNa65TotAow, fl)
    VP_FIELD(bool, WzP, b)
    VP_FIELD(double, BedragWzP, d)
    VP_FIELD(float, Pc_WzP, fl)
    VP_FIELD(qint16, EindLeeftijdWzP, i)
    VP_FIELD(bool, IP, b)
    VP_FIELD(double, BedragIP, d)
    VP_FIELD(float, Pc_IP, fl)
    VP_FIELD(qint16, Cd_UitkeringSoort, i)
    VP_FIELD(qint32, Cd_UitkeringObv, i)
    VP_FIELD(bool, AnwCompensatie, b)
    VP_FIELD(double, BedragAnwCompensatie, d)
    VP_DATE(Dt_65)
    VP_DATE(Dt_PensioenIngang)
    VP_FIELD(bool, HeeftSpecificatie, b)

    // The 85 % rule is about early retirement paid by the current employer's scheme, so it applies
    // exactly to schemes marked as the current employer's.
    bool Regel85Procent() const override { return get().b(PensioenF::HuidigeWerkgever); }

    // The scheme's own pensionable salary when one is entered; otherwise the salary of the
    // employment the scheme names (the last matching one, as the salary sync does); else 0.
    double PensioengevendInkomen() const override
    {
        const PensioenNode &pen = get();
        const double own = pen.d(PensioenF::Salaris);
        if (own > 0 || !pen.aanvrager)
            return own;
        const QString key = pen.s(PensioenF::DienstverbandKey);
        double income = own;
        if (!key.isEmpty())
            for (const auto &dv : pen.aanvrager->dienstverbanden)
                if (dv->s(DienstverbandF::Key) == key)
                    income = dv->d(DienstverbandF::Salaris);
        return income;
    }

    qint16 OuderdomRegelCount() const override { return static_cast<qint16>(get().rows.size()); }
    OuderdomRegelPtr Get_OuderdomRegel(qint16 index) override
    {
        get();
        auto row = itemAt(m_node->rows, index);
        return row ? std::make_shared<OuderdomObj>(m_core, row) : nullptr;
    }
    OuderdomRegelPtr Get_OuderdomRegelByKey(const QString &key) override
    {
        get();
        for (const auto &row : m_node->rows)
            if (row->s(OuderdomF::Key) == key)
                return std::make_shared<OuderdomObj>(m_core, row);
        return nullptr;
    }
    qint16 AddOuderdomRegel() override
    {
        get();
        auto row = newOuderdomNode(*m_core);
        row->pensioen = m_node.get();
        m_core->write([&](Store *s) {
            if (s)
                s->insert(*row, m_node->id, static_cast<int>(m_node->rows.size()) + 1);
        });
        m_node->rows.push_back(std::move(row));
        return static_cast<qint16>(m_node->rows.size());
    }
    // Row 1 carries the commitments panel's OP and PreP; a scheme without it would leave that
    // panel nothing to show, so the last remaining row cannot be removed.
    void RemoveOuderdomRegel(qint16 index) override
    {
        get();
        if (m_node->rows.size() == 1 && index == 1)
            fail(Code::InvalidState,
                 QStringLiteral("De laatste regel van het ouderdomspensioen kan niet worden verwijderd."));
        removeAt(*m_core, m_node->rows, index, m_node->id, QStringLiteral("Regel ouderdomspensioen"));
    }

    void CopyFrom(Pensioen &source) override
    {
        get();
        auto *other = dynamic_cast<PensioenObj *>(&source);
        if (!other)
            fail(Code::InvalidState,
                 QStringLiteral("Alleen pensioenregelingen van Zarnoveld kunnen worden overgenomen."));
        const PensioenNode &src = other->get();
        if (&src == m_node.get())
            return;
        std::vector<std::function<void()>> apply;
        m_core->write([&](Store *s) { copyPensioen(*m_core, s, *m_node, src, apply); });
        for (auto &step : apply)
            step();
        // Every value is in the file now; nothing deferred is left to write.
        m_node->pending.clear();
    }

    PensioenPtr Snapshot() const override
    {
        const PensioenNode &src = get();
        auto core = CaseCore::detached();
        auto copy = std::make_shared<PensioenNode>();
        copy->id = core->newId(PensioenTable);
        std::vector<std::function<void()>> apply;
        copyPensioen(*core, nullptr, *copy, src, apply);
        for (auto &step : apply)
            step();
        return std::make_shared<PensioenObj>(core, copy);
    }

private:
    const PensioenNode &get() const { m_node->check(); return *m_node; }
    void put(int field, const QVariant &value) { m_core->set(m_node, field, value, m_node.get()); }
    AoList ao() const { return AoList{m_core, &m_node->ao, m_node.get(), m_node.get()}; }

    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<PensioenNode> m_node;
};

#undef VP_FIELD
#undef VP_DATE
#undef VP_TEXT

// ---------------------------------------------------------------- employments

class DienstverbandObj : public Dienstverband
{
public:
    DienstverbandObj(std::shared_ptr<CaseCore> core, std::shared_ptr<DienstverbandNode> node)
        : m_core(std::move(core)), m_node(std::move(node)) {}
    QString Key() const override { return get().s(DienstverbandF::Key); }
    QString Werkgever() const override { return get().s(DienstverbandF::Werkgever); }
    void setWerkgever(const QString &value) override { put(DienstverbandF::Werkgever, value); }
    QDate Dt_Begin() const override { return get().date(DienstverbandF::Dt_Begin); }
    void setDt_Begin(const QDate &value) override { put(DienstverbandF::Dt_Begin, value); }
    QDate Dt_Einde() const override { return get().date(DienstverbandF::Dt_Einde); }
    void setDt_Einde(const QDate &value) override { put(DienstverbandF::Dt_Einde, value); }
    double Salaris() const override { return get().d(DienstverbandF::Salaris); }
    void setSalaris(double value) override { put(DienstverbandF::Salaris, value); }
    QDate Dt_InkomenMeetellenTot() const override { return get().date(DienstverbandF::Dt_InkomenMeetellenTot); }
    void setDt_InkomenMeetellenTot(const QDate &value) override { put(DienstverbandF::Dt_InkomenMeetellenTot, value); }

private:
    const DienstverbandNode &get() const { m_node->check(); return *m_node; }
    void put(int field, const QVariant &value) { m_core->set(m_node, field, value, nullptr); }
    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<DienstverbandNode> m_node;
};

// ---------------------------------------------------------------- parameters

class ParametersObj : public Parameters
{
public:
    explicit ParametersObj(std::shared_ptr<CaseCore> core) : m_core(std::move(core)) {}
    float DefaultOpbouwEindloon() const override { return m_core->params.defaultOpbouwEindloon; }
    float DefaultOpbouwMiddelloon() const override { return m_core->params.defaultOpbouwMiddelloon; }
    double FranchiseEindloonA() const override { return m_core->params.franchiseEindloonA; }
    double FranchiseEindloonB() const override { return m_core->params.franchiseEindloonB; }
    double FranchiseA() const override { return m_core->params.franchiseA; }
    double FranchiseB() const override { return m_core->params.franchiseB; }
    double MaxAnwCompensation() const override { return m_core->params.maxAnwCompensation; }

private:
    std::shared_ptr<CaseCore> m_core;
};

// ---------------------------------------------------------------- owners outside a case

// Holds what a capital or insured-person cover keeps besides its schedule, in memory only.
struct OwnerNode : Record
{
    OwnerNode() : Record(PensioenTable) {}
};

class KapitaalObj : public Kapitaal
{
public:
    KapitaalObj() : m_core(CaseCore::detached()), m_owner(std::make_shared<OwnerNode>()) {}
    AoUitkeringPtr AoUitkeringItem(qint16 index) override { return ao().item(index); }
    qint16 AoUitkeringAdd() override { return ao().add(); }
    void AoUitkeringDelete(qint16 index) override { ao().remove(index); }
    QVariant Property(const QString &name) const override
    {
        const int field = rvcField(name);
        if (field < 0)
            unknownProperty(QStringLiteral("Een kapitaalverzekering"), name);
        return m_owner->v[field];
    }
    void SetProperty(const QString &name, const QVariant &value) override
    {
        const int field = rvcField(name);
        if (field < 0)
            unknownProperty(QStringLiteral("Een kapitaalverzekering"), name);
        m_core->set(m_owner, field, value, nullptr);
    }
    qint32 Cd_UitkeringObv() const override { return m_owner->i(PensioenF::Cd_UitkeringObv); }
    void setCd_UitkeringObv(qint32 value) override { m_core->set(m_owner, PensioenF::Cd_UitkeringObv, value, nullptr); }
    qint32 Cd_AoDekking() const override { return m_aoDekking; }
    void setCd_AoDekking(qint32 value) override { m_aoDekking = value; }

private:
    AoList ao() const { return AoList{m_core, &m_rows, m_owner.get(), nullptr}; }
    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<OwnerNode> m_owner;
    mutable std::vector<std::shared_ptr<AoNode>> m_rows;
    qint32 m_aoDekking = 0;
};

class VerzekerdeObj : public Verzekerde
{
public:
    VerzekerdeObj() : m_core(CaseCore::detached()), m_owner(std::make_shared<OwnerNode>()) {}
    AoUitkeringPtr AoUitkeringItem(qint16 index) override { return ao().item(index); }
    qint16 AoUitkeringAdd() override { return ao().add(); }
    void AoUitkeringDelete(qint16 index) override { ao().remove(index); }
    // An insured person has no RVC deviation: every late-bound property is unknown.
    QVariant Property(const QString &name) const override
    {
        unknownProperty(QStringLiteral("Een verzekerde"), name);
    }
    void SetProperty(const QString &name, const QVariant &) override
    {
        unknownProperty(QStringLiteral("Een verzekerde"), name);
    }

private:
    AoList ao() const { return AoList{m_core, &m_rows, m_owner.get(), nullptr}; }
    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<OwnerNode> m_owner;
    mutable std::vector<std::shared_ptr<AoNode>> m_rows;
};

} // namespace

// ---------------------------------------------------------------- dossier

DossierObj::DossierObj(std::shared_ptr<CaseCore> core, std::shared_ptr<DossierNode> node)
    : m_core(std::move(core)), m_node(std::move(node)) {}

AanvragerPtr DossierObj::Get_Aanvrager(qint16 Anv_Id)
{
    m_node->check();
    auto node = itemAt(m_node->aanvragers, Anv_Id);
    return node ? std::make_shared<AanvragerObj>(m_core, node) : nullptr;
}

qint16 DossierObj::AddAanvrager()
{
    m_node->check();
    if (m_node->aanvragers.size() >= 2)
        fail(Code::InvalidState, QStringLiteral("Het dossier heeft al een partner."));
    auto partner = std::make_shared<AanvragerNode>();
    partner->v[AanvragerF::Categorie] = QVariant::fromValue<quint8>(1);
    return append(*m_core, m_node->aanvragers, std::move(partner), m_node->id);
}

void DossierObj::RemoveAanvrager(qint16 Anv_Id)
{
    m_node->check();
    if (Anv_Id != 2 || m_node->aanvragers.size() < 2)
        fail(Code::InvalidState, Anv_Id == 1
                                     ? QStringLiteral("De aanvrager kan niet uit het dossier worden verwijderd.")
                                     : QStringLiteral("Het dossier heeft geen partner."));
    const qint64 partnerId = m_node->aanvragers[1]->id;
    removeAt(*m_core, m_node->aanvragers, Anv_Id, m_node->id, QStringLiteral("Aanvrager"));
    // The file dropped the partner's removed schemes with the partner (foreign key cascade).
    std::erase_if(m_core->bin, [partnerId](const BinItem &item) { return item.aanvragerId == partnerId; });
}

qint32 DossierObj::SyncVlaggen() const
{
    m_node->check();
    return m_node->i(DossierF::SyncVlaggen);
}

void DossierObj::setSyncVlaggen(qint32 value)
{
    m_core->set(m_node, DossierF::SyncVlaggen, value, nullptr);
}

// ---------------------------------------------------------------- participant

AanvragerObj::AanvragerObj(std::shared_ptr<CaseCore> core, std::shared_ptr<AanvragerNode> node)
    : m_core(std::move(core)), m_node(std::move(node)) {}

const AanvragerNode &AanvragerObj::node() const
{
    m_node->check();
    return *m_node;
}

qint16 AanvragerObj::Anv_Id() const
{
    node();
    const auto &all = m_core->dossier->aanvragers;
    for (size_t i = 0; i < all.size(); ++i)
        if (all[i] == m_node)
            return static_cast<qint16>(i + 1);
    return 0;
}

QString AanvragerObj::Naam() const { return node().s(AanvragerF::Naam); }
void AanvragerObj::setNaam(const QString &value) { m_core->set(m_node, AanvragerF::Naam, value, nullptr); }
QDate AanvragerObj::GeboorteDatum() const { return node().date(AanvragerF::GeboorteDatum); }
// The age-65 date of every scheme follows the birth date in the same transaction, so the case never
// holds the one without the other.
void AanvragerObj::setGeboorteDatum(const QDate &value)
{
    node();
    std::vector<Change> changes{{m_node, AanvragerF::GeboorteDatum, value}};
    const QDate at65 = Rules::dateOf65(normalise(Kind::Date, value).toDate());
    for (const auto &pen : m_node->pensioenen)
        changes.push_back({pen, PensioenF::Dt_65, at65});
    m_core->set(std::move(changes), nullptr);
}
quint8 AanvragerObj::Categorie() const { return static_cast<quint8>(node().i(AanvragerF::Categorie)); }
void AanvragerObj::setCategorie(quint8 value) { m_core->set(m_node, AanvragerF::Categorie, QVariant::fromValue(value), nullptr); }
qint16 AanvragerObj::AowLeeftijd() const { return static_cast<qint16>(Rules::aowLeeftijd(GeboorteDatum())); }
QDate AanvragerObj::Dt_EindeInkomen() const { return Rules::eindeInkomen(GeboorteDatum()); }
qint32 AanvragerObj::AgeOnDate(const QDate &date) const { return Rules::ageOnDate(GeboorteDatum(), date); }

DienstverbandPtr AanvragerObj::Get_Dienstverband(qint16 index)
{
    auto dv = itemAt(node().dienstverbanden, index);
    return dv ? std::make_shared<DienstverbandObj>(m_core, dv) : nullptr;
}

qint16 AanvragerObj::AddDienstverband()
{
    node();
    auto dv = std::make_shared<DienstverbandNode>();
    dv->v[DienstverbandF::Key] = newKey();
    return append(*m_core, m_node->dienstverbanden, std::move(dv), m_node->id);
}

// Schemes keep the key of a removed employment: the adviser sees it in the provider control and
// in the host check, and can pick another employment, instead of the link vanishing silently.
void AanvragerObj::RemoveDienstverband(qint16 index)
{
    node();
    removeAt(*m_core, m_node->dienstverbanden, index, m_node->id, QStringLiteral("Dienstverband"));
}

PensioenPtr AanvragerObj::Get_Pensioen(qint16 Pen_Id)
{
    auto pen = itemAt(node().pensioenen, Pen_Id);
    return pen ? std::make_shared<PensioenObj>(m_core, pen) : nullptr;
}

qint16 AanvragerObj::AddPension()
{
    node();
    if (m_node->pensioenen.size() >= MaxPensioenen)
        fail(Code::OutOfRange, QStringLiteral("Er kunnen niet meer dan %1 pensioenregelingen per aanvrager worden vastgelegd.")
                                   .arg(MaxPensioenen));
    auto pen = newPensioenNode(*m_core);
    pen->aanvrager = m_node.get();
    pen->v[PensioenF::Dt_65] = Rules::dateOf65(m_node->date(AanvragerF::GeboorteDatum));
    const int pos = static_cast<int>(m_node->pensioenen.size()) + 1;
    m_core->write([&](Store *s) {
        if (s)
            s->insertPensioen(*pen, m_node->id, pos);
    });
    m_node->pensioenen.push_back(std::move(pen));
    return static_cast<qint16>(m_node->pensioenen.size());
}

void AanvragerObj::RemovePension(qint16 Pen_Id)
{
    node();
    m_core->removeToBin(*m_node, Pen_Id);
}

// ---------------------------------------------------------------- helpers

QString newKey()
{
    return QUuid::createUuid().toString(QUuid::WithBraces).toUpper();
}

std::shared_ptr<OuderdomNode> newOuderdomNode(CaseCore &core)
{
    auto row = std::make_shared<OuderdomNode>();
    row->id = core.newId(OuderdomTable);
    row->v[OuderdomF::Key] = newKey();
    return row;
}

// A new scheme is a final-pay scheme whose details are known, the type most advisers enter
// first. Orphans' pension runs to 21 by default: the end age most Dutch pension funds use.
std::shared_ptr<PensioenNode> newPensioenNode(CaseCore &core)
{
    auto pen = std::make_shared<PensioenNode>();
    pen->id = core.newId(PensioenTable);
    pen->v[PensioenF::SoortRegeling] = QVariant::fromValue<qint16>(SoortRegeling::Eindloon);
    pen->v[PensioenF::RegelingBekend] = true;
    pen->v[PensioenF::EindLeeftijdWzP] = QVariant::fromValue<qint16>(21);
    auto row = newOuderdomNode(core);
    row->pensioen = pen.get();
    pen->rows.push_back(std::move(row));
    return pen;
}

void copyPensioen(CaseCore &core, Store *s, PensioenNode &dst, const PensioenNode &src,
                  std::vector<std::function<void()>> &apply)
{
    {
        auto values = src.v;
        if (s && dst.v != values) {
            std::swap(dst.v, values);
            s->updateAll(dst);
            std::swap(dst.v, values);
        }
        PensioenNode *target = &dst;
        apply.push_back([target, values] { target->v = values; });
    }

    const size_t keep = std::min(dst.rows.size(), src.rows.size());
    for (size_t i = 0; i < keep; ++i) {
        auto row = dst.rows[i];
        auto values = src.rows[i]->v;
        if (s && row->v != values) {
            std::swap(row->v, values);
            s->updateAll(*row);
            std::swap(row->v, values);
        }
        apply.push_back([row, values] { row->v = values; });
        syncLeaves(core, s, row->regels, src.rows[i]->regels, row->id, apply);
    }
    if (dst.rows.size() > keep) {
        std::vector<std::shared_ptr<OuderdomNode>> gone(dst.rows.begin() + static_cast<long>(keep), dst.rows.end());
        if (s)
            for (const auto &g : gone)
                s->remove(*g);
        PensioenNode *target = &dst;
        apply.push_back([target, gone, keep] {
            for (const auto &g : gone)
                kill(*g);
            target->rows.resize(keep);
        });
    }
    for (size_t i = keep; i < src.rows.size(); ++i) {
        auto row = std::make_shared<OuderdomNode>();
        row->id = core.newId(OuderdomTable);
        row->v = src.rows[i]->v;
        row->pensioen = &dst;
        if (s)
            s->insert(*row, dst.id, static_cast<int>(i) + 1);
        for (const auto &r : src.rows[i]->regels) {
            auto regel = std::make_shared<ScenarioRegelNode>();
            regel->id = core.newId(ScenarioRegelTable);
            regel->v = r->v;
            if (s)
                s->insert(*regel, row->id, static_cast<int>(row->regels.size()) + 1);
            row->regels.push_back(regel);
        }
        PensioenNode *target = &dst;
        apply.push_back([target, row] { target->rows.push_back(row); });
    }
    syncLeaves(core, s, dst.ao, src.ao, dst.id, apply);
}

std::pair<std::shared_ptr<CaseCore>, std::shared_ptr<PensioenNode>> pensioenOf(Pensioen &scheme)
{
    if (auto *obj = dynamic_cast<PensioenObj *>(&scheme))
        return {obj->core(), obj->node()};
    return {};
}

PensioenPtr makePensioen(std::shared_ptr<CaseCore> core, std::shared_ptr<PensioenNode> node)
{
    return std::make_shared<PensioenObj>(std::move(core), std::move(node));
}

ParametersPtr makeParameters(std::shared_ptr<CaseCore> core)
{
    return std::make_shared<ParametersObj>(std::move(core));
}

DossierPtr makeDossier(std::shared_ptr<CaseCore> core)
{
    auto node = core->dossier;
    return std::make_shared<DossierObj>(std::move(core), std::move(node));
}

KapitaalPtr makeKapitaal()
{
    return std::make_shared<KapitaalObj>();
}

VerzekerdePtr makeVerzekerde()
{
    return std::make_shared<VerzekerdeObj>();
}

} // namespace Zarnoveld::detail
