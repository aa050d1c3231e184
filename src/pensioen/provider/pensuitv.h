// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"
#include "schemepanel.h"


#include <memory>

namespace VandrelPensioen {

// Provider, sector, participant and employment of the shown scheme.
class PensUitv : public SchemePanel
{
    Q_OBJECT

public:
    explicit PensUitv(QWidget *parent = nullptr);
    ~PensUitv() override;

    void SetApplication(const VandrelApplication::ApplicationPtr &Application, qint16 Anv_Id,
                        qint16 Pen_Id) override;
    void Validation(bool &Cancel, qint32 ControleNr) override;
    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

Q_SIGNALS:
    void AanvragerChanged(qint16 &Anv_Id, qint16 &Pen_Id);
    void ChangeAanvrager(bool &Cancel);
    void InfoChanged();
    void DienstverbandChanged();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen
