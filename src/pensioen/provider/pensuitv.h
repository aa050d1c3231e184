#pragma once

#include "hostmodel.h"

#include <QColor>
#include <QWidget>

#include <memory>

namespace VandrelPensioen {

// Provider, sector, participant and employment of the shown scheme.
class PensUitv : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)

public:
    explicit PensUitv(QWidget *parent = nullptr);
    ~PensUitv() override;

    void SetApplication(const VandrelApplication::ApplicationPtr &Application, qint16 Anv_Id,
                        qint16 Pen_Id);
    void Validation(bool &Cancel, qint32 ControleNr);
    QColor BackColor() const;
    void setBackColor(const QColor &colour);

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
