#pragma once

#include "hostmodel.h"

#include <QColor>
#include <QWidget>

#include <memory>

namespace VandrelPensioen {

// Every scheme of applicant and partner in one list, with adding and deleting.
class PensList : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)

public:
    explicit PensList(QWidget *parent = nullptr);
    ~PensList() override;

    void SetApplication(const VandrelApplication::ApplicationPtr &Application, qint16 Anv_Id = 0,
                        qint16 Pen_Id = 0);
    void Validation(bool &Cancel, qint32 ControleNr);
    void InfoChanged();
    QColor BackColor() const;
    void setBackColor(const QColor &colour);

Q_SIGNALS:
    void PensioenChanged(qint16 &Anv_Id, qint16 &Pen_Id);
    void PensioenDeleted();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen
