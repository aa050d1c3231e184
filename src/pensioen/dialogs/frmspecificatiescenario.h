// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"

#include <QDialog>

#include <memory>

namespace VandrelPensioen {

// Dated amounts of the old-age pension; writes its rows back on OK only.
class frmSpecificatieScenario : public QDialog
{
    Q_OBJECT
    Q_PROPERTY(bool In_Changed READ In_Changed)

public:
    explicit frmSpecificatieScenario(QWidget *parent = nullptr);
    ~frmSpecificatieScenario() override;

    void Set_Application(const VandrelApplication::ApplicationPtr &Application,
                         const VandrelApplication::ScenarioPtr &Scenario, const QDate &Dt_Ingang,
                         const QDate &Dt_MaxEind);
    void Validation(bool &Cancel, qint16 ControleNr);
    // "Geeft aan dat er een wijziging is gedaan op één van de invoervelden"
    bool In_Changed() const;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen
