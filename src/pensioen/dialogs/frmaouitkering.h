#pragma once

#include "hostmodel.h"

#include <QDialog>

#include <memory>

namespace VandrelPensioen {

// "Specificatie AO uitkering": the disability benefit schedule of one owner record. Writes
// nothing before OK passes its checks.
class frmAoUitkering : public QDialog
{
    Q_OBJECT

public:
    explicit frmAoUitkering(QWidget *parent = nullptr);
    ~frmAoUitkering() override;

    void setApplication(const VandrelApplication::ApplicationPtr &Application);
    // Exactly one owner is set at a time; setting one clears the other two.
    void setKapitaal(const VandrelApplication::KapitaalPtr &AOKapitaal);
    void setVerzekerde(const VandrelApplication::VerzekerdePtr &PvaVerzekerde);
    void setPensioen(const VandrelApplication::PensioenPtr &IpPensioen);
    void Fill_Form();
    void Validation(bool &Cancel, qint16 mode);

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelPensioen
