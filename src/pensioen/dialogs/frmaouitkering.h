// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"

#include <QDialog>
#include <QList>
#include <QString>

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
    void resizeEvent(QResizeEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

// The schedule rules of the dialog as plain functions, so that they can be checked without a form.
namespace AoStaffel {

// One band: from vanaf % up to tot % of disability the benefit is uitkering % (-1: the AO% itself).
struct Row
{
    float vanaf = 0;
    float tot = 0;
    float uitkering = 0;
    bool operator==(const Row &) const = default;
};

enum class OwnerKind { Kapitaal, Verzekerde, Pensioen };

// Item data of the two modes of "Gedeeltelijke uitkering o.b.v.".
inline constexpr int ModeWerkelijkAo = 1;
inline constexpr int ModeStaffel = 2;

// The default schedule for a mode between the thresholds geen and volledig.
QList<Row> defaultSchedule(int mode, OwnerKind owner, bool benefitEndsAtThreshold, float geen,
                           float volledig);
// The first fault of the schedule as the user is told it; empty when the bands join from 0 to 100.
QString scheduleFault(const QList<Row> &rows);
// "Percentage van <lowest>% t/m <highest>% invullen."
QString percentageRangeText(float lowest, float highest);
// The hidden sort key of a list row: "#" + vanaf + tot, each zero-filled to four digits.
QString rowKey(float vanaf, float tot);
// A list cell's text for a percentage ("35%", "AO%" for -1 in the benefit column).
QString cellText(float value, bool benefit);
// A list cell read back: every "%" removed, a text beginning with "AO" is -1.
float cellValue(const QString &text);

} // namespace AoStaffel

} // namespace VandrelPensioen
