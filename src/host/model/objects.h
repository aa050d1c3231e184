// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Handles the library gets from the reference host. Each holds the case core and its record; a
// handle whose record was removed throws HostError(NotFound) on every use.

#include "casecore.h"

#include <QJsonObject>

namespace Zarnoveld::detail {

using namespace VandrelApplication;

class DossierObj : public Dossier
{
public:
    DossierObj(std::shared_ptr<CaseCore> core, std::shared_ptr<DossierNode> node);
    AanvragerPtr Get_Aanvrager(qint16 Anv_Id) override;
    qint16 AddAanvrager() override;
    void RemoveAanvrager(qint16 Anv_Id) override;
    qint32 SyncVlaggen() const override;
    void setSyncVlaggen(qint32 value) override;

private:
    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<DossierNode> m_node;
};

class AanvragerObj : public Aanvrager
{
public:
    AanvragerObj(std::shared_ptr<CaseCore> core, std::shared_ptr<AanvragerNode> node);
    qint16 Anv_Id() const override;
    QString Naam() const override;
    void setNaam(const QString &value) override;
    QDate GeboorteDatum() const override;
    void setGeboorteDatum(const QDate &value) override;
    quint8 Categorie() const override;
    void setCategorie(quint8 value) override;
    qint16 AowLeeftijd() const override;
    QDate Dt_EindeInkomen() const override;
    qint32 AgeOnDate(const QDate &date) const override;
    DienstverbandPtr Get_Dienstverband(qint16 index) override;
    qint16 AddDienstverband() override;
    void RemoveDienstverband(qint16 index) override;
    PensioenPtr Get_Pensioen(qint16 Pen_Id) override;
    qint16 AddPension() override;
    void RemovePension(qint16 Pen_Id) override;

    static constexpr int MaxPensioenen = 99;

private:
    const AanvragerNode &node() const;
    std::shared_ptr<CaseCore> m_core;
    std::shared_ptr<AanvragerNode> m_node;
};

// A new scheme as AddPension makes it (also used by the JSON import before it fills the fields).
std::shared_ptr<PensioenNode> newPensioenNode(CaseCore &core);
std::shared_ptr<OuderdomNode> newOuderdomNode(CaseCore &core);
QString newKey();

// Copies everything of src into dst inside the running write (s may be nullptr); the memory side is
// appended to apply, to run once the file has accepted it.
void copyPensioen(CaseCore &core, Store *s, PensioenNode &dst, const PensioenNode &src,
                  std::vector<std::function<void()>> &apply);

// A scheme in the export's form and back (the bin keeps removed schemes so); the reading side
// gives the scheme and its rows new ids of core and throws HostError on a bad document.
QJsonObject pensioenToJson(const PensioenNode &pen);
std::shared_ptr<PensioenNode> pensioenFromJson(CaseCore &core, const QJsonObject &o);

PensioenPtr makePensioen(std::shared_ptr<CaseCore> core, std::shared_ptr<PensioenNode> node);
// The case and record behind a scheme handle of this host; both nullptr for any other object.
std::pair<std::shared_ptr<CaseCore>, std::shared_ptr<PensioenNode>> pensioenOf(Pensioen &scheme);
ParametersPtr makeParameters(std::shared_ptr<CaseCore> core);
DossierPtr makeDossier(std::shared_ptr<CaseCore> core);
KapitaalPtr makeKapitaal();
VerzekerdePtr makeVerzekerde();

} // namespace Zarnoveld::detail
