// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"

#include <QDialog>

#include <memory>

namespace VandrelPensioen {

// "Specificatie pensioen": the pension to be reached from given ages. Edits the record at once
// and takes every edit back on Cancel or the close box.
class frmPensioenSpec : public QDialog
{
    Q_OBJECT
    Q_PROPERTY(bool In_Changed READ In_Changed)

public:
    explicit frmPensioenSpec(QWidget *parent = nullptr);
    ~frmPensioenSpec() override;

    void SetApplication(const VandrelApplication::ApplicationPtr &Application, qint16 Anv_Id,
                        qint16 Pen_Id);
    void Validation(bool &Cancel, qint16 code);
    bool In_Changed() const;

protected:
    void closeEvent(QCloseEvent *event) override;
    void reject() override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen
