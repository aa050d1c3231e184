// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"
#include "schemepanel.h"


#include <memory>

namespace VandrelPensioen {

// Every scheme of applicant and partner in one list, with adding and deleting.
class PensList : public SchemePanel
{
    Q_OBJECT

public:
    explicit PensList(QWidget *parent = nullptr);
    ~PensList() override;

    void SetApplication(const VandrelApplication::ApplicationPtr &Application, qint16 Anv_Id = 0,
                        qint16 Pen_Id = 0) override;
    void Validation(bool &Cancel, qint32 ControleNr) override;
    void InfoChanged();

    // As high as the rows shown without a scroll bar: the list asks for no more, so the panels
    // below keep their room and a container hands the list whatever height is left over.
    QSize sizeHint() const override;

    // The row key is the only link from a row to its scheme: "@" + (Anv_Id * 100 + Pen_Id).
    static QString rowKey(qint16 Anv_Id, qint16 Pen_Id);
    // False (and both 0) for a key that is not of that form.
    static bool decodeKey(const QString &key, qint16 &Anv_Id, qint16 &Pen_Id);

Q_SIGNALS:
    void PensioenChanged(qint16 &Anv_Id, qint16 &Pen_Id);
    void PensioenDeleted();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen
