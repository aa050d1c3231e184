// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file previewdialog.h
/// \brief The window in which the adviser confirms an overview import.

#include "importplan.h"

#include <QDialog>

#include <memory>

namespace VandrelPensioen::Overzicht {

/// The preview of an overview import ("Pensioenoverzicht inlezen"): per scheme what happens to
/// it, the register's remarks, the providers it could not reach and what the adviser still has to
/// fill in; the same content as previewText(). All its text is Dutch.
///
/// OK ("Inlezen", or "Sluiten" when the plan changes nothing) applies the whole plan with
/// applyPlan() as one change; Annuleren changes nothing. A refused plan (ImportPlan::refusal) is
/// shown but cannot be applied: OK is disabled. A HostError from applyPlan() does not leave the
/// dialog: it tells the adviser in a message box (VandrelControl::MessageBox, so a headless host
/// answers it with its responder) that nothing was imported, and the dialog closes as rejected.
///
/// Typical use: `PreviewDialog dialog(planImport(...), app, window); if (dialog.exec() ==
/// QDialog::Accepted && dialog.applied()) refresh();`
class VANDRELOVERZICHT_EXPORT PreviewDialog : public QDialog
{
    Q_OBJECT

public:
    /// Shows \p plan, which the dialog keeps by value. \p application is the case the plan was
    /// made from; the dialog shares it (and takes its window icon) and writes into it only on OK.
    /// Building the dialog reads nothing from the case and never throws HostError.
    PreviewDialog(ImportPlan plan, VandrelApplication::ApplicationPtr application, QWidget *parent = nullptr);
    ~PreviewDialog() override;  ///< Releases the dialog's share of the application.

    const ImportPlan &plan() const;  ///< The plan shown, as it was handed in.
    /// Whether OK wrote the plan into the case. False after Annuleren, after a plan without
    /// changes was closed, and after applyPlan() failed; the host refreshes its view only when true.
    bool applied() const;

    /// OK: applies the plan when it has changes, then closes as accepted. Does nothing for a
    /// refused plan. On a HostError the adviser is told and the dialog closes as rejected.
    void accept() override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen::Overzicht
