#include "casecore.h"

#include "store.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

static void initModelResources()
{
    // The model is a static library: its resource must be registered by hand.
    Q_INIT_RESOURCE(model);
}

namespace Zarnoveld::detail {

using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

namespace {

double roundCents(double value)
{
    return std::round(value * 100.0) / 100.0;
}

} // namespace

// Group B franchises and the ANW maximum are derived from the statutory benefit in the file, so a
// yearly update changes one base figure instead of three results that must agree.
ParameterValues builtInParameters()
{
    static const ParameterValues values = [] {
        initModelResources();
        QFile file(QStringLiteral(":/zarnoveld/parameters.json"));
        file.open(QIODevice::ReadOnly);
        const QJsonObject o = QJsonDocument::fromJson(file.readAll()).object();
        const auto value = [&o](const char *name) {
            return o.value(QLatin1String(name)).toObject().value(QLatin1String("waarde")).toDouble();
        };
        ParameterValues p;
        p.defaultOpbouwEindloon = static_cast<float>(value("DefaultOpbouwEindloon"));
        p.defaultOpbouwMiddelloon = static_cast<float>(value("DefaultOpbouwMiddelloon"));
        p.franchiseEindloonA = value("FranchiseEindloonA");
        p.franchiseA = value("FranchiseA");
        const double aow = value("AowJaarbedragSamenwonend");
        p.franchiseEindloonB = roundCents(aow * 10.0 / 7.0);
        p.franchiseB = roundCents(aow * 100.0 / 75.0);
        p.maxAnwCompensation = roundCents(value("AnwNabestaandenuitkeringJaar") * 0.75);
        return p;
    }();
    return values;
}

CaseCore::CaseCore() = default;
CaseCore::~CaseCore() = default;

std::shared_ptr<CaseCore> CaseCore::detached()
{
    static const std::shared_ptr<CaseCore> core = [] {
        auto c = std::make_shared<CaseCore>();
        c->params = builtInParameters();
        return c;
    }();
    return core;
}

qint64 CaseCore::newId(const TableDef &table)
{
    qint64 &next = m_nextId[&table];
    return ++next;
}

void CaseCore::seedIds()
{
    m_nextId.clear();
    for (const BinItem &item : bin)
        m_nextBinId = std::max(m_nextBinId, item.id);
    const auto bump = [this](const Record &r) {
        qint64 &next = m_nextId[r.def];
        next = std::max(next, r.id);
    };
    if (!dossier)
        return;
    bump(*dossier);
    for (const auto &anv : dossier->aanvragers) {
        bump(*anv);
        for (const auto &dv : anv->dienstverbanden)
            bump(*dv);
        for (const auto &pen : anv->pensioenen) {
            bump(*pen);
            for (const auto &a : pen->ao)
                bump(*a);
            for (const auto &row : pen->rows) {
                bump(*row);
                for (const auto &r : row->regels)
                    bump(*r);
            }
        }
    }
}

void CaseCore::checkOpen() const
{
    if (closed)
        throw HostError(Code::InvalidState, QStringLiteral("Het dossier is gesloten."),
                        QStringLiteral("Zarnoveld"));
}

void CaseCore::write(const std::function<void(Store *)> &body)
{
    checkOpen();
    if (!store) {
        body(nullptr);
        if (written)
            written();
        return;
    }
    store->begin();
    try {
        body(store.get());
        store->commit();
    } catch (const HostError &) {
        store->rollback();
        throw;
    } catch (const std::exception &e) {
        store->rollback();
        throw HostError(Code::StoreFailed,
                        QStringLiteral("De wijziging kon niet in het dossierbestand worden opgeslagen: %1")
                            .arg(QString::fromLocal8Bit(e.what())),
                        QStringLiteral("Zarnoveld"));
    }
    if (written)
        written();
}

void CaseCore::set(std::vector<Change> changes, PensioenNode *scheme)
{
    checkOpen();
    for (Change &c : changes) {
        c.record->check();
        c.value = normalise(c.record->def->fields[c.field].kind, c.value);
    }
    if (scheme && scheme->deferred) {
        for (Change &c : changes) {
            c.record->v[c.field] = c.value;
            const bool known = std::any_of(scheme->pending.begin(), scheme->pending.end(),
                                           [&c](const PensioenNode::Pending &p) {
                                               return p.record == c.record && p.field == c.field;
                                           });
            if (!known)
                scheme->pending.push_back({c.record, c.field});
        }
        return;
    }
    // The file first: when it refuses, the model keeps the old value and both stay in step.
    write([&changes](Store *s) {
        if (s)
            for (const Change &c : changes)
                s->update(*c.record, c.field, c.value);
    });
    for (Change &c : changes)
        c.record->v[c.field] = std::move(c.value);
}

void CaseCore::set(const std::shared_ptr<Record> &record, int field, const QVariant &value,
                   PensioenNode *scheme)
{
    set(std::vector<Change>{{record, field, value}}, scheme);
}

void CaseCore::flush(PensioenNode &scheme)
{
    std::vector<PensioenNode::Pending> pending;
    pending.swap(scheme.pending);
    try {
        write([&pending](Store *s) {
            if (s)
                for (const auto &p : pending)
                    if (p.record->alive)
                        s->update(*p.record, p.field, p.record->v[p.field]);
        });
    } catch (...) {
        // Keep them so that a later switch-off can try again.
        scheme.pending.insert(scheme.pending.begin(), pending.begin(), pending.end());
        throw;
    }
}

} // namespace Zarnoveld::detail
