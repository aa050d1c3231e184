// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The shared heart of one open case: the record tree, the parameters, the optional store that
// every change is written through to, and the id counters. Handles keep it alive.

#include "casedata.h"
#include "fiscalfigures.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace Zarnoveld::detail {

class Store;

// The figure year a case made today gets, and its figures.
int figureYearForNewCase();
ParameterValues builtInParameters();

struct Change
{
    std::shared_ptr<Record> record;
    int field;
    QVariant value;
};

class CaseCore
{
public:
    CaseCore();
    ~CaseCore();

    // A core without a case file, shared by snapshots and stand-alone schedule owners.
    static std::shared_ptr<CaseCore> detached();

    std::shared_ptr<DossierNode> dossier;
    ParameterValues params;
    std::unique_ptr<Store> store;   // nullptr: the case lives in memory only
    // Takes a store for this case; after a lost connection it writes the case again from here.
    void attach(std::unique_ptr<Store> s);
    bool closed = false;

    qint64 newId(const TableDef &table);
    void seedIds();   // after loading: continue after the highest id in use

    // Writes the changes in one transaction, then applies them in memory. A change to a record of
    // a scheme that defers its writes is only applied and remembered (scheme: the owning scheme).
    void set(std::vector<Change> changes, PensioenNode *scheme);
    void set(const std::shared_ptr<Record> &record, int field, const QVariant &value, PensioenNode *scheme);
    // Writes the remembered changes of a deferring scheme in one transaction.
    void flush(PensioenNode &scheme);

    // Runs body inside one store transaction; body gets nullptr when the case has no file. A
    // failure rolls back and becomes HostError(StoreFailed).
    void write(const std::function<void(Store *)> &body);

    void checkOpen() const;

    // Runs body as one change: every write inside it joins a single store transaction; when body
    // throws, the file rolls back, the records in memory get their values back, records it added
    // are gone (their handles throw) and the exception is passed on.
    void asOneChange(const std::function<void()> &body);

    // The bin (see bin.cpp): RemovePension moves a scheme here in the same transaction that
    // removes it; putting it back returns its number in the participant's list.
    std::vector<BinItem> bin;
    void removeToBin(AanvragerNode &aanvrager, qint16 penId);
    qint16 restoreFromBin(qint64 binId);
    // Empties the bin of everything removed before removedBefore (an invalid time: everything).
    int emptyBin(const QDateTime &removedBefore);

    // Called after every change the case file accepted (and every change of a case in memory).
    std::function<void()> written;

private:
    std::map<const TableDef *, qint64> m_nextId;
    int m_oneChange = 0;
    qint64 m_nextBinId = 0;
};

} // namespace Zarnoveld::detail
