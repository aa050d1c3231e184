#pragma once

#include "hostmodel.h"

#include <QColor>
#include <QWidget>

#include <memory>

namespace VandrelPensioen {

// The commitments panel: OP, PreP, TOP, four partner pensions, WzP, IP and ANW compensation.
class PensToez : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)

public:
    explicit PensToez(QWidget *parent = nullptr);
    ~PensToez() override;

    void SetApplication(const VandrelApplication::ApplicationPtr &Application, qint16 Anv_Id,
                        qint16 Pen_Id);
    void Validation(bool &Cancel, qint32 ControleNr);
    QColor BackColor() const;
    void setBackColor(const QColor &colour);

Q_SIGNALS:
    void InfoChanged();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen
