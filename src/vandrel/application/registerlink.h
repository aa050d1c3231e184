// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file registerlink.h
/// \brief RegisterLink: the optional host interface the pension register import asks for.

#include "hostmodel.h"
#include "vandrelapplication_export.h"

#include <QString>

#include <functional>

namespace VandrelApplication {

/// What the pension register import (Vandrel::Overzicht) asks of a host beyond the object model.
///
/// Optional: a host implements it on the same object as its Application (multiple inheritance,
/// as Zarnoveld::HostApplication does), and the import finds it with dynamic_cast. Without it the
/// import still works, but cannot recognise a scheme it imported before (a second import adds
/// every scheme again, and the preview says so) and cannot make its changes one change in the
/// host's store (it undoes a failed import itself, scheme by scheme). The pension screen itself
/// never uses it.
class VANDRELAPPLICATION_EXPORT RegisterLink
{
public:
    virtual ~RegisterLink();  ///< Interfaces are destroyed through their base.

    /// The identifier at its provider ("HerkenningsNummer") of the register scheme that \p scheme
    /// was filled from; empty for a scheme typed by hand. The import matches schemes on it, so it
    /// must survive saving and reopening the case (the reference host keeps it as a field of the
    /// scheme record, so Pensioen::Snapshot() and Pensioen::CopyFrom() carry it along). \p scheme
    /// is one of this host's own objects; a foreign or removed one may throw HostError.
    virtual QString HerkenningsNummer(Pensioen &scheme) const = 0;
    /// Stores \p value as the HerkenningsNummer of \p scheme, durably like every setter, or
    /// throws HostError. Called only inside RunAsOneChange() by the import.
    virtual void setHerkenningsNummer(Pensioen &scheme, const QString &value) = 0;

    /// Runs \p body as one change: either everything it changed through the object model is
    /// stored or, when it throws, nothing is (in the file and in memory: handles the screen holds
    /// read the old values again) and the exception is passed on unchanged. The import throws
    /// HostError from \p body when the case changed since its preview; a host may throw HostError
    /// itself (StoreFailed when the store refuses the commit, InvalidState without an open case).
    virtual void RunAsOneChange(const std::function<void()> &body) = 0;
};
} // namespace VandrelApplication
