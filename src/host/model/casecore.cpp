// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "casecore.h"

#include "store.h"

#include <QDate>

#include <algorithm>
#include <cmath>
#include <set>


namespace Zarnoveld::detail {

using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

int figureYearForNewCase()
{
    return FiscalFigures::yearFor(QDate::currentDate());
}

ParameterValues builtInParameters()
{
    return FiscalFigures::find(figureYearForNewCase())->values;
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

void CaseCore::attach(std::unique_ptr<Store> s)
{
    store = std::move(s);
    if (!store)
        return;
    store->setRewrite([this](Store &target) {
        target.clear();
        target.writeParameters(params);
        target.insertTree(*dossier);
        for (const BinItem &item : bin)
            target.binInsert(item);
    });
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
    // Inside asOneChange the surrounding transaction takes the write (and its rollback).
    if (!store || m_oneChange > 0) {
        body(store.get());
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
                        QStringLiteral("De wijziging kon niet in het dossier worden opgeslagen: %1")
                            .arg(QString::fromLocal8Bit(e.what())),
                        QStringLiteral("Zarnoveld"));
    }
    if (written)
        written();
}

namespace {

// Every record of the tree, parents before children.
void visit(Record &r, const std::function<void(Record &)> &f)
{
    f(r);
    if (auto *p = dynamic_cast<PensioenNode *>(&r)) {
        for (auto &row : p->rows)
            visit(*row, f);
        for (auto &a : p->ao)
            visit(*a, f);
    } else if (auto *o = dynamic_cast<OuderdomNode *>(&r)) {
        for (auto &regel : o->regels)
            visit(*regel, f);
    } else if (auto *a = dynamic_cast<AanvragerNode *>(&r)) {
        for (auto &dv : a->dienstverbanden)
            visit(*dv, f);
        for (auto &pen : a->pensioenen)
            visit(*pen, f);
    } else if (auto *d = dynamic_cast<DossierNode *>(&r)) {
        for (auto &anv : d->aanvragers)
            visit(*anv, f);
    }
}

// What asOneChange puts back: each record's values and each child list as they were.
std::vector<std::function<void()>> remember(DossierNode &dossier)
{
    std::vector<std::function<void()>> undo;
    visit(dossier, [&undo](Record &r) {
        undo.push_back([&r, v = r.v, alive = r.alive] { r.v = v; r.alive = alive; });
        if (auto *p = dynamic_cast<PensioenNode *>(&r))
            undo.push_back([p, rows = p->rows, ao = p->ao, deferred = p->deferred, pending = p->pending] {
                p->rows = rows;
                p->ao = ao;
                p->deferred = deferred;
                p->pending = pending;
            });
        else if (auto *o = dynamic_cast<OuderdomNode *>(&r))
            undo.push_back([o, regels = o->regels] { o->regels = regels; });
        else if (auto *a = dynamic_cast<AanvragerNode *>(&r))
            undo.push_back([a, dvs = a->dienstverbanden, pens = a->pensioenen] {
                a->dienstverbanden = dvs;
                a->pensioenen = pens;
            });
        else if (auto *d = dynamic_cast<DossierNode *>(&r))
            undo.push_back([d, anvs = d->aanvragers] { d->aanvragers = anvs; });
    });
    return undo;
}

} // namespace

void CaseCore::asOneChange(const std::function<void()> &body)
{
    checkOpen();
    if (m_oneChange > 0) {
        body();
        return;
    }
    std::vector<std::function<void()>> undo = remember(*dossier);
    std::set<const Record *> before;
    visit(*dossier, [&before](Record &r) { before.insert(&r); });
    const auto putBack = [&] {
        std::vector<Record *> added;
        visit(*dossier, [&](Record &r) {
            if (!before.count(&r))
                added.push_back(&r);
        });
        for (Record *r : added)
            r->alive = false;
        for (auto &step : undo)
            step();
    };
    if (store)
        store->begin();
    ++m_oneChange;
    try {
        body();
        --m_oneChange;
        if (store)
            store->commit();
    } catch (const HostError &) {
        m_oneChange = 0;
        if (store)
            store->rollback();
        putBack();
        throw;
    } catch (const std::exception &e) {
        m_oneChange = 0;
        if (store)
            store->rollback();
        putBack();
        throw HostError(Code::StoreFailed,
                        QStringLiteral("De wijziging kon niet in het dossier worden opgeslagen: %1")
                            .arg(QString::fromLocal8Bit(e.what())),
                        QStringLiteral("Zarnoveld"));
    }
}

void CaseCore::set(std::vector<Change> changes, PensioenNode *scheme)
{
    checkOpen();
    for (Change &c : changes) {
        c.record->check();
        c.value = normalise(c.record->def->fields[c.field].kind, c.value);
    }
    // A value equal to the one held is no change: a screen that writes what it just read (as
    // binding does) leaves the case file untouched, and a read-only case can still be shown.
    changes.erase(std::remove_if(changes.begin(), changes.end(),
                                 [](const Change &c) { return c.record->v[c.field] == c.value; }),
                  changes.end());
    if (changes.empty())
        return;
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
