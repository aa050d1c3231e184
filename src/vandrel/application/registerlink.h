// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// What the pension register import asks of a host beyond the object model. The interface is
// optional: the import finds it on the Application with dynamic_cast and works without it, but
// then cannot recognise a scheme it imported before and cannot make its changes one change.

#include "hostmodel.h"
#include "vandrelapplication_export.h"

#include <QString>

#include <functional>

namespace VandrelApplication {

class VANDRELAPPLICATION_EXPORT RegisterLink
{
public:
    virtual ~RegisterLink();

    // The identifier at its provider ("HerkenningsNummer") of the register scheme the record was
    // filled from; empty for a scheme typed by hand.
    virtual QString HerkenningsNummer(Pensioen &scheme) const = 0;
    virtual void setHerkenningsNummer(Pensioen &scheme, const QString &value) = 0;

    // Runs body as one change: either everything it changed is stored or, when it throws, nothing
    // is (in the file and in memory) and the exception is passed on.
    virtual void RunAsOneChange(const std::function<void()> &body) = 0;
};

} // namespace VandrelApplication
