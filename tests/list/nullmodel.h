// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Host objects that hold nothing: every getter answers its empty value, every setter keeps
// nothing. Tests derive from them to build cases the reference host cannot hold (a scheme
// without old-age rows).

#include "hostmodel.h"

namespace TestModel {

using namespace VandrelApplication;

class NullPensioen : public Pensioen
{
public:
    AoUitkeringPtr AoUitkeringItem(qint16 index) override { return {}; }
    qint16 AoUitkeringAdd() override { return {}; }
    void AoUitkeringDelete(qint16 index) override {}
    QVariant Property(const QString &name) const override { return {}; }
    void SetProperty(const QString &name, const QVariant &value) override {}
    bool HuidigeWerkgever() const override { return {}; }
    void setHuidigeWerkgever(bool value) override {}
    QString Uitvoerder() const override { return {}; }
    void setUitvoerder(const QString &value) override {}
    QString Branche() const override { return {}; }
    void setBranche(const QString &value) override {}
    QString DienstverbandKey() const override { return {}; }
    void setDienstverbandKey(const QString &value) override {}
    qint16 Dienstjaren() const override { return 0; }
    void setDienstjaren(qint16) override {}
    bool RemoveOnClose() const override { return {}; }
    void setRemoveOnClose(bool value) override {}
    bool UitgesteldSchrijven() const override { return {}; }
    void setUitgesteldSchrijven(bool value) override {}
    qint16 SoortRegeling() const override { return {}; }
    void setSoortRegeling(qint16 value) override {}
    bool RegelingBekend() const override { return {}; }
    void setRegelingBekend(bool value) override {}
    double Salaris() const override { return {}; }
    void setSalaris(double value) override {}
    double Franchise() const override { return {}; }
    void setFranchise(double value) override {}
    double Grondslag() const override { return {}; }
    void setGrondslag(double value) override {}
    float OpbouwPercentage() const override { return {}; }
    void setOpbouwPercentage(float value) override {}
    double Aangroei() const override { return {}; }
    void setAangroei(double value) override {}
    double Premie() const override { return {}; }
    void setPremie(double value) override {}
    double Doelvermogen() const override { return {}; }
    void setDoelvermogen(double value) override {}
    float RekenrenteOpbouw() const override { return {}; }
    void setRekenrenteOpbouw(float value) override {}
    float RekenrenteUitkering() const override { return {}; }
    void setRekenrenteUitkering(float value) override {}
    double Opgebouwd() const override { return {}; }
    void setOpgebouwd(double value) override {}
    QDate Dt_Overzicht() const override { return {}; }
    void setDt_Overzicht(const QDate &value) override {}
    double BijdrageOP() const override { return {}; }
    void setBijdrageOP(double value) override {}
    double BijdragePreP() const override { return {}; }
    void setBijdragePreP(double value) override {}
    double BijdrageVrijwillig() const override { return {}; }
    void setBijdrageVrijwillig(double value) override {}
    bool TOP() const override { return {}; }
    void setTOP(bool value) override {}
    double BedragTOP() const override { return {}; }
    void setBedragTOP(double value) override {}
    bool PP() const override { return {}; }
    void setPP(bool value) override {}
    double BedragPP() const override { return {}; }
    void setBedragPP(double value) override {}
    float Pc_PP() const override { return {}; }
    void setPc_PP(float value) override {}
    bool PPNaAow() const override { return {}; }
    void setPPNaAow(bool value) override {}
    double BedragPPNaAow() const override { return {}; }
    void setBedragPPNaAow(double value) override {}
    float Pc_PPNaAow() const override { return {}; }
    void setPc_PPNaAow(float value) override {}
    bool PPna65() const override { return {}; }
    void setPPna65(bool value) override {}
    double BedragPPna65() const override { return {}; }
    void setBedragPPna65(double value) override {}
    float Pc_PPna65() const override { return {}; }
    void setPc_PPna65(float value) override {}
    bool PpNa65TotAow() const override { return {}; }
    void setPpNa65TotAow(bool value) override {}
    double BedragPpNa65TotAow() const override { return {}; }
    void setBedragPpNa65TotAow(double value) override {}
    float Pc_PpNa65TotAow() const override { return {}; }
    void setPc_PpNa65TotAow(float value) override {}
    bool WzP() const override { return {}; }
    void setWzP(bool value) override {}
    double BedragWzP() const override { return {}; }
    void setBedragWzP(double value) override {}
    float Pc_WzP() const override { return {}; }
    void setPc_WzP(float value) override {}
    qint16 EindLeeftijdWzP() const override { return {}; }
    void setEindLeeftijdWzP(qint16 value) override {}
    bool IP() const override { return {}; }
    void setIP(bool value) override {}
    double BedragIP() const override { return {}; }
    void setBedragIP(double value) override {}
    float Pc_IP() const override { return {}; }
    void setPc_IP(float value) override {}
    qint16 Cd_UitkeringSoort() const override { return {}; }
    void setCd_UitkeringSoort(qint16 value) override {}
    qint32 Cd_UitkeringObv() const override { return {}; }
    void setCd_UitkeringObv(qint32 value) override {}
    bool AnwCompensatie() const override { return {}; }
    void setAnwCompensatie(bool value) override {}
    double BedragAnwCompensatie() const override { return {}; }
    void setBedragAnwCompensatie(double value) override {}
    QDate Dt_65() const override { return {}; }
    void setDt_65(const QDate &value) override {}
    QDate Dt_PensioenIngang() const override { return {}; }
    void setDt_PensioenIngang(const QDate &value) override {}
    bool Regel85Procent() const override { return {}; }
    double PensioengevendInkomen() const override { return {}; }
    bool HeeftSpecificatie() const override { return {}; }
    void setHeeftSpecificatie(bool value) override {}
    qint16 OuderdomRegelCount() const override { return {}; }
    OuderdomRegelPtr Get_OuderdomRegel(qint16 index) override { return {}; }
    OuderdomRegelPtr Get_OuderdomRegelByKey(const QString &key) override { return {}; }
    qint16 AddOuderdomRegel() override { return {}; }
    void RemoveOuderdomRegel(qint16 index) override {}
    void CopyFrom(Pensioen &source) override {}
    PensioenPtr Snapshot() const override { return {}; }
};

class NullAanvrager : public Aanvrager
{
public:
    qint16 Anv_Id() const override { return {}; }
    QString Naam() const override { return {}; }
    void setNaam(const QString &value) override {}
    QDate GeboorteDatum() const override { return {}; }
    void setGeboorteDatum(const QDate &value) override {}
    quint8 Categorie() const override { return {}; }
    void setCategorie(quint8 value) override {}
    qint16 AowLeeftijd() const override { return {}; }
    QDate Dt_EindeInkomen() const override { return {}; }
    qint32 AgeOnDate(const QDate &date) const override { return {}; }
    DienstverbandPtr Get_Dienstverband(qint16 index) override { return {}; }
    qint16 AddDienstverband() override { return {}; }
    void RemoveDienstverband(qint16 index) override {}
    PensioenPtr Get_Pensioen(qint16 Pen_Id) override { return {}; }
    qint16 AddPension() override { return {}; }
    void RemovePension(qint16 Pen_Id) override {}
};

} // namespace TestModel
