// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "overview.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <cmath>
#include <vector>

namespace VandrelPensioen::Overzicht {

namespace {

// Both serialisations are first turned into this neutral tree, so that one set of rules below
// builds the typed overview: a JSON array becomes repeated children of the same name, which is
// exactly how XML writes a list. A single XML element is therefore a list of one, never a value.
struct Raw
{
    enum Type { Object, Text, Number, Bool, Null };
    QString name;
    Type type = Null;
    QString text;
    double number = 0;
    bool boolean = false;
    bool fromXml = false;
    std::vector<Raw> children;
};

struct Failure
{
    QString problem;
};

[[noreturn]] void fail(const QString &problem)
{
    throw Failure{problem};
}

class Builder
{
public:
    int nodes = 0;

    void count(int depth)
    {
        if (depth > MaxDepth)
            fail(QStringLiteral("het bestand is dieper genest dan een pensioenoverzicht ooit is (meer dan %1 niveaus)")
                     .arg(MaxDepth));
        if (++nodes > MaxNodes)
            fail(QStringLiteral("het bestand bevat veel meer gegevens dan een pensioenoverzicht (meer dan %1 onderdelen)")
                     .arg(MaxNodes));
    }

    // ---- JSON
    void fromJson(const QJsonValue &value, Raw &into, int depth)
    {
        count(depth);
        switch (value.type()) {
        case QJsonValue::Object: {
            into.type = Raw::Object;
            const QJsonObject o = value.toObject();
            for (auto it = o.begin(); it != o.end(); ++it) {
                if (it.value().isArray()) {
                    const QJsonArray a = it.value().toArray();
                    for (const QJsonValue &element : a) {
                        if (element.isArray())
                            fail(QStringLiteral("\"%1\" bevat een lijst in een lijst").arg(it.key()));
                        Raw child;
                        child.name = it.key();
                        fromJson(element, child, depth + 1);
                        into.children.push_back(std::move(child));
                    }
                } else {
                    Raw child;
                    child.name = it.key();
                    fromJson(it.value(), child, depth + 1);
                    into.children.push_back(std::move(child));
                }
            }
            break;
        }
        case QJsonValue::String:
            into.type = Raw::Text;
            into.text = value.toString();
            break;
        case QJsonValue::Double:
            into.type = Raw::Number;
            into.number = value.toDouble();
            break;
        case QJsonValue::Bool:
            into.type = Raw::Bool;
            into.boolean = value.toBool();
            break;
        default:
            into.type = Raw::Null;
            break;
        }
    }

    // ---- XML: reader is positioned on the element's start tag.
    void fromXml(QXmlStreamReader &xml, Raw &into, int depth)
    {
        count(depth);
        into.name = xml.name().toString();
        into.fromXml = true;
        bool nil = false;
        for (const QXmlStreamAttribute &a : xml.attributes())
            if (a.name() == QLatin1String("nil") && a.value().trimmed() == QLatin1String("true"))
                nil = true;
        QString text;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement()) {
                Raw child;
                fromXml(xml, child, depth + 1);
                into.children.push_back(std::move(child));
            } else if (xml.isCharacters()) {
                text += xml.text();
            } else if (xml.isEndElement()) {
                break;
            } else if (xml.isDTD() || xml.isEntityReference()) {
                fail(QStringLiteral("het bestand bevat een DTD of entiteit; een pensioenoverzicht heeft die niet"));
            }
        }
        if (xml.hasError())
            return;
        if (!into.children.empty()) {
            into.type = Raw::Object;
        } else if (nil || text.trimmed().isEmpty()) {
            into.type = Raw::Null;
        } else {
            into.type = Raw::Text;
            into.text = text.trimmed();
        }
    }
};

// ---- typed access, with the place in the file for every message

QString join(const QString &path, const QString &name)
{
    return path.isEmpty() ? name : path + QStringLiteral(" › ") + name;
}

QString indexed(const QString &path, const QString &name, int index)
{
    return join(path, QStringLiteral("%1[%2]").arg(name).arg(index + 1));
}

std::vector<const Raw *> all(const Raw &parent, const char *name)
{
    std::vector<const Raw *> found;
    if (parent.type != Raw::Object)
        return found;
    for (const Raw &c : parent.children)
        if (c.name == QLatin1String(name))
            found.push_back(&c);
    return found;
}

// At most one; nullptr when absent or empty.
const Raw *one(const Raw &parent, const char *name, const QString &path)
{
    const auto found = all(parent, name);
    if (found.size() > 1)
        fail(QStringLiteral("%1 komt meer dan eens voor").arg(join(path, QLatin1String(name))));
    if (found.empty() || found.front()->type == Raw::Null)
        return nullptr;
    return found.front();
}

// Repeatable: always a list, also with one element; empty elements are skipped.
std::vector<const Raw *> many(const Raw &parent, const char *name)
{
    std::vector<const Raw *> found;
    for (const Raw *r : all(parent, name))
        if (r->type != Raw::Null)
            found.push_back(r);
    return found;
}

const Raw *group(const Raw &parent, const char *name, const QString &path)
{
    const Raw *r = one(parent, name, path);
    if (r && r->type != Raw::Object)
        fail(QStringLiteral("%1 hoort een groep gegevens te zijn").arg(join(path, QLatin1String(name))));
    return r;
}

QString textOf(const Raw &r, const QString &at)
{
    if (r.type != Raw::Text)
        fail(QStringLiteral("%1 hoort tekst te zijn").arg(at));
    return r.text;
}

QString text(const Raw &parent, const char *name, const QString &path)
{
    const Raw *r = one(parent, name, path);
    return r ? textOf(*r, join(path, QLatin1String(name))) : QString();
}

QStringList texts(const Raw &parent, const char *name, const QString &path)
{
    QStringList out;
    const auto list = many(parent, name);
    for (size_t i = 0; i < list.size(); ++i)
        out << textOf(*list[i], indexed(path, QLatin1String(name), int(i)));
    return out;
}

// Numbers use a point as decimal separator in both serialisations; a comma ("12,5") is refused
// rather than guessed at, because a guess can be a thousand times off.
std::optional<double> number(const Raw &parent, const char *name, const QString &path)
{
    const Raw *r = one(parent, name, path);
    if (!r)
        return std::nullopt;
    const QString at = join(path, QLatin1String(name));
    double value = 0;
    if (r->type == Raw::Number) {
        value = r->number;
    } else if (r->type == Raw::Text && r->fromXml) {
        static const QRegularExpression pattern(QStringLiteral("^-?[0-9]{1,12}(\\.[0-9]{1,6})?$"));
        if (!pattern.match(r->text).hasMatch())
            fail(QStringLiteral("\"%1\" bij %2 is geen getal (verwacht bijvoorbeeld 1234.56, met een punt)")
                     .arg(r->text.left(40), at));
        value = r->text.toDouble();
    } else if (r->type == Raw::Text) {
        fail(QStringLiteral("\"%1\" bij %2 is tekst in plaats van een getal").arg(r->text.left(40), at));
    } else {
        fail(QStringLiteral("%1 hoort een getal te zijn").arg(at));
    }
    if (!std::isfinite(value) || std::abs(value) > 1e9)
        fail(QStringLiteral("%1 bij %2 valt buiten elk redelijk bereik").arg(value, 0, 'g', 12).arg(at));
    return value;
}

std::optional<double> amount(const Raw &parent, const char *name, const QString &path)
{
    const auto value = number(parent, name, path);
    if (value && *value < 0)
        fail(QStringLiteral("%1 is negatief (%2); het pensioenregister geeft geen negatieve bedragen")
                 .arg(join(path, QLatin1String(name)))
                 .arg(*value, 0, 'f', 2));
    return value;
}

qint32 whole(const Raw &parent, const char *name, const QString &path, qint32 max)
{
    const auto value = number(parent, name, path);
    const QString at = join(path, QLatin1String(name));
    if (!value)
        fail(QStringLiteral("%1 ontbreekt").arg(at));
    if (*value != std::floor(*value) || *value < 0 || *value > max)
        fail(QStringLiteral("%1 hoort een heel getal van 0 tot en met %2 te zijn").arg(at).arg(max));
    return qint32(*value);
}

bool boolean(const Raw &parent, const char *name, const QString &path)
{
    const Raw *r = one(parent, name, path);
    if (!r)
        return false;
    if (r->type == Raw::Bool)
        return r->boolean;
    if (r->type == Raw::Text && r->fromXml) {
        if (r->text == QLatin1String("true") || r->text == QLatin1String("1"))
            return true;
        if (r->text == QLatin1String("false") || r->text == QLatin1String("0"))
            return false;
    }
    fail(QStringLiteral("%1 hoort true of false te zijn").arg(join(path, QLatin1String(name))));
}

QDate date(const Raw &parent, const char *name, const QString &path)
{
    const QString t = text(parent, name, path);
    if (t.isEmpty())
        return {};
    const QDate d = QDate::fromString(t.left(10), Qt::ISODate);
    if (!d.isValid() || (t.size() > 10 && t.at(10) != QLatin1Char('T')))
        fail(QStringLiteral("\"%1\" bij %2 is geen datum (verwacht jjjj-mm-dd)").arg(t.left(40), join(path, QLatin1String(name))));
    return d;
}

Bound bound(const Raw &parent, const char *name, const QString &path)
{
    const QString at = join(path, QLatin1String(name));
    const Raw *r = group(parent, name, path);
    if (!r)
        fail(QStringLiteral("%1 ontbreekt").arg(at));
    Bound b;
    if (const Raw *age = group(*r, "Leeftijd", at)) {
        const QString ageAt = join(at, QStringLiteral("Leeftijd"));
        b.months = whole(*age, "Jaren", ageAt, 130) * 12 + (one(*age, "Maanden", ageAt) ? whole(*age, "Maanden", ageAt, 11) : 0);
        return b;
    }
    for (const char *event : {"OuderdomsPensioenEvent", "PartnerEvent", "WezenEvent"}) {
        b.event = text(*r, event, at);
        if (!b.event.isEmpty())
            return b;
    }
    fail(QStringLiteral("%1 noemt geen leeftijd en geen gebeurtenis").arg(at));
}

QList<OldAgeItem> oldAgeItems(const Raw &period, const char *name, const QString &path)
{
    QList<OldAgeItem> out;
    const auto list = many(period, name);
    for (size_t i = 0; i < list.size(); ++i) {
        const QString at = indexed(path, QLatin1String(name), int(i));
        const Raw &r = *list[i];
        if (r.type != Raw::Object)
            fail(QStringLiteral("%1 hoort een groep gegevens te zijn").arg(at));
        OldAgeItem item;
        item.provider = text(r, "PensioenUitvoerder", at).simplified();
        item.schemeId = text(r, "HerkenningsNummer", at).trimmed();
        item.asOf = date(r, "StandPer", at);
        item.reachable = amount(r, "TeBereiken", at);
        item.accrued = amount(r, "Opgebouwd", at);
        item.settlement = text(r, "AfhandelingVerevening", at);
        if (item.provider.isEmpty())
            fail(QStringLiteral("%1 noemt geen pensioenuitvoerder").arg(at));
        out << item;
    }
    return out;
}

QList<SurvivorItem> survivorItems(const Raw &period, const char *name, bool indicative, const QString &path)
{
    QList<SurvivorItem> out;
    const auto list = many(period, name);
    for (size_t i = 0; i < list.size(); ++i) {
        const QString at = indexed(path, QLatin1String(name), int(i));
        const Raw &r = *list[i];
        if (r.type != Raw::Object)
            fail(QStringLiteral("%1 hoort een groep gegevens te zijn").arg(at));
        SurvivorItem item;
        item.provider = text(r, "PensioenUitvoerder", at).simplified();
        item.schemeId = text(r, "HerkenningsNummer", at).trimmed();
        item.asOf = date(r, "StandPer", at);
        item.indicative = indicative;
        item.perChild = boolean(r, "PerKind", at);
        item.settlement = text(r, "AfhandelingScheiding", at);
        if (const Raw *b = group(r, "Bedragen", at)) {
            const QString bAt = join(at, QStringLiteral("Bedragen"));
            item.amounts.insured = amount(*b, "VerzekerdBedrag", bAt);
            item.amounts.accrued = amount(*b, "OpgebouwdBedrag", bAt);
            item.amounts.insuredAfter = amount(*b, "VerzekerdBedragNaPens", bAt);
            item.amounts.accruedAfter = amount(*b, "OpgebouwdBedragNaPens", bAt);
        }
        if (item.provider.isEmpty())
            fail(QStringLiteral("%1 noemt geen pensioenuitvoerder").arg(at));
        out << item;
    }
    return out;
}

QList<SurvivorPeriod> survivorPeriods(const Raw *details, const char *groupName, const char *periodName,
                                      const QString &path)
{
    QList<SurvivorPeriod> out;
    if (!details)
        return out;
    const QString groupAt = join(path, QLatin1String(groupName));
    const Raw *g = group(*details, groupName, path);
    if (!g)
        return out;
    const auto list = many(*g, periodName);
    for (size_t i = 0; i < list.size(); ++i) {
        const QString at = indexed(groupAt, QLatin1String(periodName), int(i));
        if (list[i]->type != Raw::Object)
            fail(QStringLiteral("%1 hoort een groep gegevens te zijn").arg(at));
        SurvivorPeriod p;
        p.from = bound(*list[i], "Van", at);
        p.to = bound(*list[i], "Tot", at);
        p.items = survivorItems(*list[i], "Pensioen", false, at);
        p.items += survivorItems(*list[i], "IndicatiefPensioen", true, at);
        out << p;
    }
    return out;
}

Overview build(const Raw &root, const QString &fileName)
{
    Overview o;
    o.fileName = fileName;
    const QString top;
    if (all(root, "StatusCode").empty())
        fail(QStringLiteral("dit is geen pensioenoverzicht van het pensioenregister (StatusCode ontbreekt)"));
    o.statusCode = text(root, "StatusCode", top).trimmed();
    if (o.statusCode != QLatin1String("000")) {
        QStringList remarks;
        try {
            remarks = texts(root, "Bijzonderheden", top);
        } catch (const Failure &) {
        }
        QString problem = QStringLiteral("het pensioenregister meldt dat dit overzicht niet bruikbaar is (StatusCode \"%1\")")
                              .arg(o.statusCode.left(20));
        if (!remarks.isEmpty())
            problem += QStringLiteral(": ") + remarks.join(QLatin1Char(' '));
        problem += QStringLiteral(". Laat de klant het overzicht opnieuw downloaden.");
        fail(problem);
    }
    o.createdAt = text(root, "TijdstipAanmakenBericht", top);
    o.remarks = texts(root, "Bijzonderheden", top);
    o.unreachableProviders = texts(root, "OntbrekendePuvsError", top);
    o.providersWithoutData = texts(root, "OntbrekendePuvsGeenGegevens", top);

    // Totalen are sums of the details per period; the details are what the case needs, so the
    // sums are only checked for being a group.
    group(root, "Totalen", top);
    const Raw *details = group(root, "Details", top);
    if (!details && all(root, "Totalen").empty())
        fail(QStringLiteral("het overzicht bevat geen Details en geen Totalen: het bestand is onvolledig"));
    const QString detailsAt = QStringLiteral("Details");
    if (details) {
        if (const Raw *g = group(*details, "OuderdomsPensioenDetails", detailsAt)) {
            const QString groupAt = join(detailsAt, QStringLiteral("OuderdomsPensioenDetails"));
            const auto list = many(*g, "OuderdomsPensioen");
            for (size_t i = 0; i < list.size(); ++i) {
                const QString at = indexed(groupAt, QStringLiteral("OuderdomsPensioen"), int(i));
                if (list[i]->type != Raw::Object)
                    fail(QStringLiteral("%1 hoort een groep gegevens te zijn").arg(at));
                OldAgePeriod p;
                p.from = bound(*list[i], "Van", at);
                p.to = bound(*list[i], "Tot", at);
                if (const Raw *aow = group(*list[i], "AOW", at)) {
                    const QString aowAt = join(at, QStringLiteral("AOW"));
                    StatePension s;
                    s.asOf = date(*aow, "StandPer", aowAt);
                    if (const Raw *d = group(*aow, "AOWDetailsOpbouw", aowAt)) {
                        const QString dAt = join(aowAt, QStringLiteral("AOWDetailsOpbouw"));
                        s.reachableCohabiting = amount(*d, "TeBereikenSamenwonend", dAt);
                        s.accruedCohabiting = amount(*d, "OpgebouwdSamenwonend", dAt);
                        s.reachableSingle = amount(*d, "TeBereikenAlleenstaand", dAt);
                        s.accruedSingle = amount(*d, "OpgebouwdAlleenstaand", dAt);
                    }
                    p.aow = s;
                }
                p.pension = oldAgeItems(*list[i], "Pensioen", at);
                p.indicative = oldAgeItems(*list[i], "IndicatiefPensioen", at);
                p.single = oldAgeItems(*list[i], "AlleenstaandenPensioen", at);
                o.oldAge << p;
            }
        }
        o.partner = survivorPeriods(details, "PartnerPensioenDetails", "PartnerPensioen", detailsAt);
        o.orphans = survivorPeriods(details, "WezenPensioenDetails", "WezenPensioen", detailsAt);
    }
    return o;
}

QString fault(const QString &fileName, const QString &problem)
{
    return QStringLiteral("Het pensioenoverzicht %1 kan niet worden ingelezen: %2").arg(fileName, problem);
}

} // namespace

ReadResult readOverview(const QByteArray &data, const QString &fileName)
{
    ReadResult result;
    if (data.size() > MaxFileBytes) {
        result.error = fault(fileName, QStringLiteral("het bestand is %1 MB; een pensioenoverzicht is nooit groter dan %2 MB")
                                           .arg(double(data.size()) / (1024 * 1024), 0, 'f', 1)
                                           .arg(MaxFileBytes / (1024 * 1024)));
        return result;
    }
    qsizetype start = data.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    while (start < data.size() && QChar::isSpace(uchar(data.at(start))))
        ++start;
    try {
        if (start >= data.size())
            fail(QStringLiteral("het bestand is leeg"));
        Builder builder;
        Raw root;
        if (data.at(start) == '{' || data.at(start) == '[') {
            QJsonParseError parseError;
            const QJsonDocument doc = QJsonDocument::fromJson(data, &parseError);
            if (parseError.error != QJsonParseError::NoError) {
                const bool truncated = parseError.error == QJsonParseError::UnterminatedObject
                                    || parseError.error == QJsonParseError::UnterminatedArray
                                    || parseError.error == QJsonParseError::UnterminatedString
                                    || parseError.offset >= data.size() - 1;
                if (parseError.error == QJsonParseError::DeepNesting)
                    fail(QStringLiteral("het bestand is dieper genest dan een pensioenoverzicht ooit is"));
                fail(truncated ? QStringLiteral("het bestand houdt halverwege op (afgebroken download?)")
                               : QStringLiteral("het bestand is geen geldige JSON (fout bij teken %1)").arg(parseError.offset));
            }
            if (!doc.isObject())
                fail(QStringLiteral("dit is geen pensioenoverzicht van het pensioenregister (verwacht een JSON-object)"));
            builder.fromJson(doc.object(), root, 1);
        } else if (data.at(start) == '<') {
            QXmlStreamReader xml(data);
            while (!xml.atEnd() && !xml.isStartElement()) {
                xml.readNext();
                if (xml.isDTD())
                    fail(QStringLiteral("het bestand bevat een DTD; een pensioenoverzicht heeft die niet"));
            }
            if (xml.isStartElement()) {
                if (xml.name() != QLatin1String("PensioenAanspraken"))
                    fail(QStringLiteral("dit is geen pensioenoverzicht van het pensioenregister (hoofdelement <%1>, verwacht <PensioenAanspraken>)")
                             .arg(xml.name().toString().left(60)));
                builder.fromXml(xml, root, 1);
            }
            // Anything after the root element must still be well formed.
            while (!xml.hasError() && !xml.atEnd())
                xml.readNext();
            if (xml.hasError()) {
                fail(xml.error() == QXmlStreamReader::PrematureEndOfDocumentError
                         ? QStringLiteral("het bestand houdt halverwege op (afgebroken download?)")
                         : QStringLiteral("het bestand is geen geldige XML (fout in regel %1, kolom %2)")
                               .arg(xml.lineNumber())
                               .arg(xml.columnNumber()));
            }
            if (root.name.isEmpty())
                fail(QStringLiteral("het bestand bevat geen gegevens"));
        } else {
            fail(QStringLiteral("dit is geen pensioenoverzicht (verwacht een JSON- of XML-bestand van het pensioenregister)"));
        }
        if (root.type != Raw::Object)
            fail(QStringLiteral("dit is geen pensioenoverzicht van het pensioenregister (het bestand bevat geen gegevens)"));
        result.overview = build(root, fileName);
    } catch (const Failure &f) {
        result.error = fault(fileName, f.problem);
    }
    return result;
}

ReadResult readOverviewFile(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        ReadResult result;
        result.error = fault(name, file.errorString());
        return result;
    }
    if (file.size() > MaxFileBytes) {
        ReadResult result;
        result.error = fault(name, QStringLiteral("het bestand is %1 MB; een pensioenoverzicht is nooit groter dan %2 MB")
                                       .arg(double(file.size()) / (1024 * 1024), 0, 'f', 1)
                                       .arg(MaxFileBytes / (1024 * 1024)));
        return result;
    }
    return readOverview(file.read(MaxFileBytes + 1), name);
}

} // namespace VandrelPensioen::Overzicht
