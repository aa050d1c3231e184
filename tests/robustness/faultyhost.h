// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// A host that forwards every operation to a real case and can be told to fail: the N-th host
// operation after arming throws HostError, as a host whose file refused a write would. Counting
// without arming gives the number of operations a session performs.

#include "hostmodel.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>

namespace Robustness {

class FaultyHost;

// What all wrappers share: the count, the armed operation and the names seen.
class FaultPlan
{
public:
    static constexpr qint32 InjectedNumber = 4242;

    // Counts one operation; throws HostError when it is the armed one.
    void tick(const char *operation);
    void arm(qint64 failAt) { m_failAt = failAt; }   // 0 disarms
    void resetCount() { m_count = 0; }
    qint64 count() const { return m_count; }
    bool fired() const { return m_fired; }
    void clearFired() { m_fired = false; }
    QString firedOperation() const { return m_firedOperation; }
    const QSet<QString> &seen() const { return m_seen; }
    // Every operation counted, in order: which kind the N-th one is.
    const QStringList &operations() const { return m_operations; }

    // One wrapper per real object, so the library sees stable identities.
    template <typename Wrapper, typename Inner>
    std::shared_ptr<Inner> wrap(const std::shared_ptr<Inner> &inner);

private:
    qint64 m_count = 0;
    qint64 m_failAt = 0;
    bool m_fired = false;
    QString m_firedOperation;
    QSet<QString> m_seen;
    QStringList m_operations;
    std::map<const void *, std::weak_ptr<void>> m_wrappers;
};

class FaultyHost : public VandrelApplication::Application
{
public:
    explicit FaultyHost(VandrelApplication::ApplicationPtr inner);

    FaultPlan &plan() { return *m_plan; }
    const VandrelApplication::ApplicationPtr &inner() const { return m_inner; }
    QList<VandrelApplication::ErrorRecord> reports() const { return m_reports; }
    void clearReports() { m_reports.clear(); }

    VandrelApplication::DossierPtr Get_Dossier() override;
    VandrelApplication::ParametersPtr Get_Parameters() override;
    // Part of the error path itself: never fails, and records what the library reported.
    void ReportError(VandrelApplication::ErrorRecord &record) override;
    QString Title() const override;
    QIcon Icon() const override;

private:
    VandrelApplication::ApplicationPtr m_inner;
    std::shared_ptr<FaultPlan> m_plan;
    QList<VandrelApplication::ErrorRecord> m_reports;
};

// The real object behind a wrapper, or the object itself when it is not one of ours.
VandrelApplication::Pensioen &unwrap(VandrelApplication::Pensioen &pensioen);

} // namespace Robustness
