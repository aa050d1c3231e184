// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "hostapplication.h"
#include "hostapplication_p.h"

#include "objects.h"
#include "rules.h"
#include "safefile.h"
#include "store.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <set>
#include <unistd.h>

namespace Zarnoveld {

using namespace VandrelApplication;
using namespace detail;

namespace {

const QString kSource = QStringLiteral("Zarnoveld");
const QString kDateFormat = QStringLiteral("yyyy-MM-dd");

// The shortest decimal that reads back as the same float, so 0.7f is written as 0.7 and a
// round trip through the file gives the very same JSON.
double floatToJson(float value)
{
    for (int precision = 6; precision <= 9; ++precision) {
        const double candidate = QString::number(static_cast<double>(value), 'g', precision).toDouble();
        if (static_cast<float>(candidate) == value)
            return candidate;
    }
    return static_cast<double>(value);
}

QJsonValue toJson(Kind kind, const QVariant &v)
{
    switch (kind) {
    case Kind::Bool: return v.toBool();
    case Kind::Int16:
    case Kind::Int32:
    case Kind::Byte: return v.toInt();
    case Kind::Double: return v.toDouble();
    case Kind::Float: return floatToJson(v.toFloat());
    case Kind::Date: {
        const QDate date = v.toDate();
        return date.isValid() ? QJsonValue(date.toString(kDateFormat)) : QJsonValue(QJsonValue::Null);
    }
    case Kind::Text: return v.toString();
    }
    return {};
}

// A scheme never imported from the pension register has no identifier; leaving the field out then
// keeps the export of every case made before the import existed exactly as it was.
bool omittedWhenEmpty(const FieldDef &f, const QVariant &v)
{
    return f.kind == Kind::Text && qstrcmp(f.name, "HerkenningsNummer") == 0 && v.toString().isEmpty();
}

QJsonObject recordToJson(const Record &r)
{
    QJsonObject o;
    for (size_t i = 0; i < r.def->fields.size(); ++i)
        if (!omittedWhenEmpty(r.def->fields[i], r.v[i]))
            o.insert(QLatin1String(r.def->fields[i].name), toJson(r.def->fields[i].kind, r.v[i]));
    return o;
}

// ---------------------------------------------------------------- import

[[noreturn]] void bad(const QString &path, const QString &problem)
{
    throw HostError(HostErrorCode::OutOfRange,
                    QStringLiteral("Fout in het dossier bij %1: %2").arg(path, problem), kSource);
}

QString shown(const QJsonValue &v)
{
    switch (v.type()) {
    case QJsonValue::Null: return QStringLiteral("null");
    case QJsonValue::Bool: return v.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double: return QString::number(v.toDouble(), 'g', 17);
    case QJsonValue::String: {
        // A message quotes at most a line of what it found.
        const QString text = v.toString();
        return QLatin1Char('"') + (text.size() > 60 ? text.left(57) + QStringLiteral("...") : text) + QLatin1Char('"');
    }
    case QJsonValue::Array: return QStringLiteral("een lijst");
    case QJsonValue::Object: return QStringLiteral("een object");
    default: return QStringLiteral("niets");
    }
}

struct Range
{
    double min;
    double max;
};

// Value limits beyond the C++ type: codes with a fixed meaning and percentages.
Range rangeOf(const char *name, Kind kind)
{
    const QLatin1String n(name);
    if (n == QLatin1String("SoortRegeling"))
        return {1, 3};
    if (n == QLatin1String("Cd_UitkeringSoort"))
        return {0, 2};
    if (n == QLatin1String("Pc_Uitkering"))
        return {-1, 100};
    if (n.startsWith(QLatin1String("Pc_")))
        return {0, 100};
    if (n == QLatin1String("Leeftijd") || n == QLatin1String("LeeftijdOP") || n == QLatin1String("LeeftijdPreP"))
        return {0, 1200};
    if (n == QLatin1String("EindLeeftijdWzP"))
        return {0, 30};
    switch (kind) {
    case Kind::Int16: return {-32768, 32767};
    case Kind::Int32: return {-2147483648.0, 2147483647.0};
    case Kind::Byte: return {0, 255};
    default: return {-1e15, 1e15};
    }
}

QVariant fieldFromJson(const FieldDef &f, const QJsonValue &v, const QString &path)
{
    switch (f.kind) {
    case Kind::Bool:
        if (!v.isBool())
            bad(path, QStringLiteral("verwacht true of false, gevonden %1.").arg(shown(v)));
        return v.toBool();
    case Kind::Text: {
        if (!v.isString())
            bad(path, QStringLiteral("verwacht een tekst, gevonden %1.").arg(shown(v)));
        const QString text = v.toString();
        if (text.size() > HostApplication::MaxTextLength)
            bad(path, QStringLiteral("een tekst van %1 tekens is te lang; hier passen hoogstens %2 tekens.")
                          .arg(text.size()).arg(HostApplication::MaxTextLength));
        return text;
    }
    case Kind::Date: {
        if (v.isNull())
            return QDate();
        const QDate date = v.isString() ? QDate::fromString(v.toString(), kDateFormat) : QDate();
        if (!date.isValid())
            bad(path, QStringLiteral("verwacht een datum als \"jjjj-mm-dd\" of null, gevonden %1.").arg(shown(v)));
        if (!isFilled(date))
            bad(path, QStringLiteral("een datum moet na 1900 liggen (gebruik null voor geen datum), gevonden %1.").arg(shown(v)));
        return date;
    }
    default: {
        if (!v.isDouble())
            bad(path, QStringLiteral("verwacht een getal, gevonden %1.").arg(shown(v)));
        const double number = v.toDouble();
        if (!std::isfinite(number))
            bad(path, QStringLiteral("verwacht een eindig getal."));
        const bool whole = f.kind == Kind::Int16 || f.kind == Kind::Int32 || f.kind == Kind::Byte;
        if (whole && number != std::floor(number))
            bad(path, QStringLiteral("verwacht een geheel getal, gevonden %1.").arg(shown(v)));
        const Range range = rangeOf(f.name, f.kind);
        if (number < range.min || number > range.max)
            bad(path, QStringLiteral("%1 ligt buiten het toegestane bereik (%2 tot en met %3).")
                          .arg(shown(v), QString::number(range.min, 'g', 12), QString::number(range.max, 'g', 12)));
        return normalise(f.kind, number);
    }
    }
}

QJsonObject objectAt(const QJsonValue &v, const QString &path)
{
    if (!v.isObject())
        bad(path, QStringLiteral("verwacht een object, gevonden %1.").arg(shown(v)));
    return v.toObject();
}

QJsonArray arrayAt(const QJsonValue &v, const QString &path)
{
    if (!v.isArray())
        bad(path, QStringLiteral("verwacht een lijst, gevonden %1.").arg(shown(v)));
    return v.toArray();
}

// Fills the record's fields from o; children names are the list fields the caller reads itself.
void readRecord(Record &r, const QJsonObject &o, const QString &path, std::initializer_list<const char *> children)
{
    for (auto it = o.begin(); it != o.end(); ++it) {
        const QString key = it.key();
        const QString at = path + QLatin1Char('.') + key;
        bool known = false;
        for (size_t i = 0; i < r.def->fields.size(); ++i) {
            if (key == QLatin1String(r.def->fields[i].name)) {
                r.v[i] = fieldFromJson(r.def->fields[i], it.value(), at);
                known = true;
                break;
            }
        }
        for (const char *child : children)
            known = known || key == QLatin1String(child);
        if (!known)
            bad(at, QStringLiteral("onbekend veld \"%1\".").arg(key));
    }
}

const QRegularExpression &guidPattern()
{
    static const QRegularExpression re(
        QStringLiteral("^\\{[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}\\}$"));
    return re;
}

std::shared_ptr<PensioenNode> readPensioen(CaseCore &core, const QJsonObject &o, const QString &path)
{
    auto pen = newPensioenNode(core);
    readRecord(*pen, o, path, {"OuderdomRegels", "AoUitkeringen"});
    if (o.contains(QLatin1String("OuderdomRegels"))) {
        const QString rowsPath = path + QStringLiteral(".OuderdomRegels");
        const QJsonArray rows = arrayAt(o.value(QLatin1String("OuderdomRegels")), rowsPath);
        if (rows.isEmpty())
            bad(rowsPath, QStringLiteral("een pensioenregeling heeft minstens één regel ouderdomspensioen."));
        pen->rows.clear();
        std::set<QString> keys;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            const QString rowPath = QStringLiteral("%1[%2]").arg(rowsPath).arg(i);
            const QJsonObject ro = objectAt(rows.at(i), rowPath);
            auto row = newOuderdomNode(core);
            row->pensioen = pen.get();
            readRecord(*row, ro, rowPath, {"ScenarioOP"});
            if (!keys.insert(row->s(OuderdomF::Key)).second)
                bad(rowPath + QStringLiteral(".Key"), QStringLiteral("deze sleutel komt al eerder voor in de regeling."));
            if (ro.contains(QLatin1String("ScenarioOP"))) {
                const QString scPath = rowPath + QStringLiteral(".ScenarioOP");
                const QJsonObject so = objectAt(ro.value(QLatin1String("ScenarioOP")), scPath);
                for (auto it = so.begin(); it != so.end(); ++it) {
                    const QString at = scPath + QLatin1Char('.') + it.key();
                    if (it.key() == QLatin1String("Bedrag")) {
                        row->v[OuderdomF::ScenarioBedrag] = fieldFromJson(FieldDef{"Bedrag", Kind::Double}, it.value(), at);
                    } else if (it.key() == QLatin1String("Regels")) {
                        const QJsonArray regels = arrayAt(it.value(), at);
                        for (qsizetype k = 0; k < regels.size(); ++k) {
                            const QString rp = QStringLiteral("%1[%2]").arg(at).arg(k);
                            auto regel = std::make_shared<ScenarioRegelNode>();
                            regel->id = core.newId(ScenarioRegelTable);
                            readRecord(*regel, objectAt(regels.at(k), rp), rp, {});
                            row->regels.push_back(regel);
                        }
                    } else {
                        bad(at, QStringLiteral("onbekend veld \"%1\".").arg(it.key()));
                    }
                }
            }
            pen->rows.push_back(row);
        }
    }
    if (o.contains(QLatin1String("AoUitkeringen"))) {
        const QString aoPath = path + QStringLiteral(".AoUitkeringen");
        const QJsonArray ao = arrayAt(o.value(QLatin1String("AoUitkeringen")), aoPath);
        for (qsizetype i = 0; i < ao.size(); ++i) {
            const QString ap = QStringLiteral("%1[%2]").arg(aoPath).arg(i);
            auto row = std::make_shared<AoNode>();
            row->id = core.newId(AoTable);
            readRecord(*row, objectAt(ao.at(i), ap), ap, {});
            pen->ao.push_back(row);
        }
    }
    return pen;
}

std::shared_ptr<AanvragerNode> readAanvrager(CaseCore &core, const QJsonObject &o, const QString &path)
{
    auto anv = std::make_shared<AanvragerNode>();
    anv->id = core.newId(AanvragerTable);
    anv->v[AanvragerF::Categorie] = QVariant::fromValue<quint8>(1);
    readRecord(*anv, o, path, {"Dienstverbanden", "Pensioenen"});
    // As on the participants form: nobody is born tomorrow. A birth date far ahead would also
    // give age dates (65, AOW) beyond the year 9999, which no date field can hold or write back.
    if (const QDate birth = anv->date(AanvragerF::GeboorteDatum); birth.isValid() && birth > QDate::currentDate())
        bad(path + QStringLiteral(".GeboorteDatum"),
            QStringLiteral("een geboortedatum ligt in het verleden, gevonden \"%1\".").arg(birth.toString(Qt::ISODate)));
    if (o.contains(QLatin1String("Dienstverbanden"))) {
        const QString dvPath = path + QStringLiteral(".Dienstverbanden");
        const QJsonArray list = arrayAt(o.value(QLatin1String("Dienstverbanden")), dvPath);
        std::set<QString> keys;
        for (qsizetype i = 0; i < list.size(); ++i) {
            const QString p = QStringLiteral("%1[%2]").arg(dvPath).arg(i);
            auto dv = std::make_shared<DienstverbandNode>();
            dv->id = core.newId(DienstverbandTable);
            dv->v[DienstverbandF::Key] = newKey();
            readRecord(*dv, objectAt(list.at(i), p), p, {});
            if (!guidPattern().match(dv->s(DienstverbandF::Key)).hasMatch())
                bad(p + QStringLiteral(".Key"), QStringLiteral("verwacht een sleutel als {xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}, gevonden \"%1\".")
                                                    .arg(dv->s(DienstverbandF::Key)));
            if (!keys.insert(dv->s(DienstverbandF::Key)).second)
                bad(p + QStringLiteral(".Key"), QStringLiteral("deze sleutel komt al eerder voor bij deze aanvrager."));
            anv->dienstverbanden.push_back(dv);
        }
    }
    if (o.contains(QLatin1String("Pensioenen"))) {
        const QString penPath = path + QStringLiteral(".Pensioenen");
        const QJsonArray list = arrayAt(o.value(QLatin1String("Pensioenen")), penPath);
        if (list.size() > AanvragerObj::MaxPensioenen)
            bad(QStringLiteral("%1[%2]").arg(penPath).arg(AanvragerObj::MaxPensioenen),
                QStringLiteral("meer dan %1 pensioenregelingen per aanvrager kunnen niet worden vastgelegd.")
                    .arg(AanvragerObj::MaxPensioenen));
        for (qsizetype i = 0; i < list.size(); ++i) {
            const QString p = QStringLiteral("%1[%2]").arg(penPath).arg(i);
            auto pen = readPensioen(core, objectAt(list.at(i), p), p);
            pen->aanvrager = anv.get();
            anv->pensioenen.push_back(pen);
        }
    }
    return anv;
}

const char *const kParameterFields[] = {"DefaultOpbouwEindloon", "DefaultOpbouwMiddelloon",
                                        "FranchiseEindloonA", "FranchiseEindloonB", "FranchiseA",
                                        "FranchiseB", "MaxAnwCompensation"};

} // namespace

// A scheme as the export writes it; the bin keeps removed schemes in this form, so a scheme put
// back is the scheme that was removed, down to the last field.
QJsonObject detail::pensioenToJson(const PensioenNode &pen)
{
    QJsonObject po = recordToJson(pen);
    QJsonArray rows;
    for (const auto &row : pen.rows) {
        QJsonObject ro = recordToJson(*row);
        ro.remove(QStringLiteral("ScenarioBedrag"));
        QJsonObject scenario;
        scenario.insert(QStringLiteral("Bedrag"), row->d(OuderdomF::ScenarioBedrag));
        QJsonArray regels;
        for (const auto &r : row->regels)
            regels.append(recordToJson(*r));
        scenario.insert(QStringLiteral("Regels"), regels);
        ro.insert(QStringLiteral("ScenarioOP"), scenario);
        rows.append(ro);
    }
    po.insert(QStringLiteral("OuderdomRegels"), rows);
    QJsonArray ao;
    for (const auto &r : pen.ao)
        ao.append(recordToJson(*r));
    po.insert(QStringLiteral("AoUitkeringen"), ao);
    return po;
}

std::shared_ptr<PensioenNode> detail::pensioenFromJson(CaseCore &core, const QJsonObject &o)
{
    return readPensioen(core, o, QStringLiteral("$"));
}

QJsonObject HostApplication::exportJson() const
{
    const CaseCore &core = *d->core;
    QJsonObject root;
    root.insert(QStringLiteral("SyncVlaggen"), core.dossier->i(DossierF::SyncVlaggen));
    root.insert(QStringLiteral("Rekenjaar"), core.dossier->i(DossierF::Rekenjaar));
    const ParameterValues &p = core.params;
    QJsonObject params;
    params.insert(QStringLiteral("DefaultOpbouwEindloon"), floatToJson(p.defaultOpbouwEindloon));
    params.insert(QStringLiteral("DefaultOpbouwMiddelloon"), floatToJson(p.defaultOpbouwMiddelloon));
    params.insert(QStringLiteral("FranchiseEindloonA"), p.franchiseEindloonA);
    params.insert(QStringLiteral("FranchiseEindloonB"), p.franchiseEindloonB);
    params.insert(QStringLiteral("FranchiseA"), p.franchiseA);
    params.insert(QStringLiteral("FranchiseB"), p.franchiseB);
    params.insert(QStringLiteral("MaxAnwCompensation"), p.maxAnwCompensation);
    root.insert(QStringLiteral("Parameters"), params);

    QJsonArray aanvragers;
    for (const auto &anv : core.dossier->aanvragers) {
        QJsonObject a = recordToJson(*anv);
        QJsonArray dvs;
        for (const auto &dv : anv->dienstverbanden)
            dvs.append(recordToJson(*dv));
        a.insert(QStringLiteral("Dienstverbanden"), dvs);
        QJsonArray pens;
        for (const auto &pen : anv->pensioenen) {
            pens.append(detail::pensioenToJson(*pen));
        }
        a.insert(QStringLiteral("Pensioenen"), pens);
        aanvragers.append(a);
    }
    root.insert(QStringLiteral("Aanvragers"), aanvragers);
    return root;
}

// Everything is read into a new case in memory first; only a complete, valid case is written to
// a file, so a bad document leaves nothing behind.
std::shared_ptr<HostApplication> HostApplication::importJson(const QJsonObject &document, const QString &path)
{
    auto core = std::make_shared<CaseCore>();
    core->params = builtInParameters();
    auto dossier = std::make_shared<DossierNode>();
    dossier->id = core->newId(DossierTable);
    const QString root = QStringLiteral("$");
    bool hasParameters = false;
    int year = 0;
    if (document.contains(QLatin1String("Rekenjaar"))) {
        const QString at = root + QStringLiteral(".Rekenjaar");
        year = fieldFromJson(FieldDef{"Rekenjaar", Kind::Int16}, document.value(QLatin1String("Rekenjaar")), at).toInt();
        const FiscalFigures::Year *figures = FiscalFigures::find(year);
        if (!figures) {
            QStringList known;
            for (int y : FiscalFigures::years())
                known << QString::number(y);
            bad(at, QStringLiteral("voor %1 zijn geen fiscale cijfers bekend (wel voor %2).")
                        .arg(year)
                        .arg(known.join(QStringLiteral(", "))));
        }
        core->params = figures->values;
    }

    for (auto it = document.begin(); it != document.end(); ++it) {
        const QString at = root + QLatin1Char('.') + it.key();
        if (it.key() == QLatin1String("SyncVlaggen")) {
            dossier->v[DossierF::SyncVlaggen] = fieldFromJson(FieldDef{"SyncVlaggen", Kind::Int32}, it.value(), at);
        } else if (it.key() == QLatin1String("Rekenjaar")) {
            // Read before the loop: the year's figures are the base for the "Parameters" block.
        } else if (it.key() == QLatin1String("Parameters")) {
            hasParameters = true;
            const QJsonObject po = objectAt(it.value(), at);
            std::vector<double> values(std::size(kParameterFields));
            const ParameterValues &b = core->params;
            values = {b.defaultOpbouwEindloon, b.defaultOpbouwMiddelloon, b.franchiseEindloonA,
                      b.franchiseEindloonB, b.franchiseA, b.franchiseB, b.maxAnwCompensation};
            for (auto p = po.begin(); p != po.end(); ++p) {
                const QString pp = at + QLatin1Char('.') + p.key();
                size_t index = std::size(kParameterFields);
                for (size_t i = 0; i < std::size(kParameterFields); ++i)
                    if (p.key() == QLatin1String(kParameterFields[i]))
                        index = i;
                if (index == std::size(kParameterFields))
                    bad(pp, QStringLiteral("onbekend veld \"%1\".").arg(p.key()));
                const double v = fieldFromJson(FieldDef{kParameterFields[index], Kind::Double}, p.value(), pp).toDouble();
                if (v < 0)
                    bad(pp, QStringLiteral("een parameter kan niet negatief zijn."));
                values[index] = v;
            }
            ParameterValues &t = core->params;
            t.defaultOpbouwEindloon = static_cast<float>(values[0]);
            t.defaultOpbouwMiddelloon = static_cast<float>(values[1]);
            t.franchiseEindloonA = values[2];
            t.franchiseEindloonB = values[3];
            t.franchiseA = values[4];
            t.franchiseB = values[5];
            t.maxAnwCompensation = values[6];
        } else if (it.key() == QLatin1String("Aanvragers")) {
            const QJsonArray list = arrayAt(it.value(), at);
            if (list.size() > 2)
                bad(QStringLiteral("%1[2]").arg(at), QStringLiteral("een dossier heeft alleen een aanvrager en eventueel een partner."));
            for (qsizetype i = 0; i < list.size(); ++i) {
                const QString p = QStringLiteral("%1[%2]").arg(at).arg(i);
                dossier->aanvragers.push_back(readAanvrager(*core, objectAt(list.at(i), p), p));
            }
        } else {
            bad(at, QStringLiteral("onbekend veld \"%1\".").arg(it.key()));
        }
    }
    if (dossier->aanvragers.empty())
        bad(root + QStringLiteral(".Aanvragers"), QStringLiteral("de aanvrager (deelnemer 1) ontbreekt."));

    // The age-65 date is derived, never entered: whatever the document says, each scheme gets the
    // one that belongs to its participant's birth date, as the host keeps it from now on.
    for (const auto &anv : dossier->aanvragers)
        for (const auto &pen : anv->pensioenen)
            pen->v[PensioenF::Dt_65] = Rules::dateOf65(anv->date(AanvragerF::GeboorteDatum));
    // The figure year: as the document states it. A document without a year is either a case
    // written before years were kept (it carries its figures: they get the year they match, else
    // 2025, as a case file of that age does) or a new case (no figures: this year's). A document
    // that states a year without figures gets that year's figures; figures it states always win,
    // so an exported case comes back exactly as it was.
    if (!year && hasParameters) {
        const int matched = FiscalFigures::matchingYear(core->params);
        year = matched ? matched : FiscalFigures::kYearOfUnmarkedCases;
    } else if (!year) {
        year = figureYearForNewCase();
        core->params = FiscalFigures::find(year)->values;
    }
    dossier->v[DossierF::Rekenjaar] = normalise(Kind::Int16, year);

    core->dossier = dossier;
    if (!path.isEmpty()) {
        core->attach(Store::createWhole(path, *dossier, core->params, {}, core->dossier, core->params));
        core->seedIds();
    }
    std::shared_ptr<HostApplication> app(new HostApplication);
    app->d->core = std::move(core);
    return app;
}

} // namespace Zarnoveld
