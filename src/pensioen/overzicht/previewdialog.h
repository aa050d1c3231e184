// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The preview of an overview import: per scheme what happens to it, the register's remarks, the
// providers it could not reach and what the adviser still has to fill in. OK ("Inlezen") applies
// the whole plan as one change; Annuleren changes nothing.

#include "importplan.h"

#include <QDialog>

#include <memory>

namespace VandrelPensioen::Overzicht {

class VANDRELOVERZICHT_EXPORT PreviewDialog : public QDialog
{
    Q_OBJECT

public:
    PreviewDialog(ImportPlan plan, VandrelApplication::ApplicationPtr application, QWidget *parent = nullptr);
    ~PreviewDialog() override;

    const ImportPlan &plan() const;
    // Whether OK wrote the plan into the case.
    bool applied() const;

    void accept() override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen::Overzicht
