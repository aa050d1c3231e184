// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"
#include "schemepanel.h"


#include <memory>

namespace VandrelPensioen {

// The commitments panel: OP, PreP, TOP, four partner pensions, WzP, IP and ANW compensation.
class PensToez : public SchemePanel
{
    Q_OBJECT

public:
    explicit PensToez(QWidget *parent = nullptr);
    ~PensToez() override;

    void SetApplication(const VandrelApplication::ApplicationPtr &Application, qint16 Anv_Id,
                        qint16 Pen_Id) override;
    void Validation(bool &Cancel, qint32 ControleNr) override;

Q_SIGNALS:
    void InfoChanged();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen
