// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "fiscalfigures.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>

static void initFiguresResources()
{
    // A static library: its resource must be registered by hand.
    Q_INIT_RESOURCE(fiscalfigures);
}

namespace Zarnoveld::FiscalFigures {

namespace {

double roundCents(double value)
{
    return std::round(value * 100.0) / 100.0;
}

// The file is part of the program; a broken one is a build fault, not a user error, so it stops
// the program at once instead of letting a case be made with zeros.
std::map<int, Year> load()
{
    initFiguresResources();
    QFile file(QStringLiteral(":/zarnoveld/fiscalfigures.json"));
    if (!file.open(QIODevice::ReadOnly))
        throw std::logic_error("fiscalfigures.json ontbreekt in het programma");
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonObject jaren = root.value(QLatin1String("jaren")).toObject();
    std::map<int, Year> result;
    for (auto it = jaren.begin(); it != jaren.end(); ++it) {
        bool ok = false;
        Year y;
        y.year = it.key().toInt(&ok);
        if (!ok)
            throw std::logic_error("fiscalfigures.json: jaar is geen getal");
        const QJsonObject o = it.value().toObject();
        const auto value = [&o, &y](const char *name) {
            const QJsonObject f = o.value(QLatin1String(name)).toObject();
            if (!f.value(QLatin1String("waarde")).isDouble() || f.value(QLatin1String("bron")).toString().isEmpty()
                || !f.value(QLatin1String("geverifieerd")).isBool())
                throw std::logic_error(std::string("fiscalfigures.json: ") + name + " onvolledig voor "
                                       + std::to_string(y.year));
            y.figures.push_back({QLatin1String(name), f.value(QLatin1String("waarde")).toDouble(),
                                 f.value(QLatin1String("bron")).toString(),
                                 f.value(QLatin1String("geverifieerd")).toBool()});
            return y.figures.back().value;
        };
        y.aowJaarbedragSamenwonend = value("AowJaarbedragSamenwonend");
        y.values.franchiseA = value("FranchiseA");
        y.values.franchiseEindloonA = value("FranchiseEindloonA");
        y.values.defaultOpbouwEindloon = static_cast<float>(value("DefaultOpbouwEindloon"));
        y.values.defaultOpbouwMiddelloon = static_cast<float>(value("DefaultOpbouwMiddelloon"));
        y.anwNabestaandenuitkeringJaar = value("AnwNabestaandenuitkeringJaar");
        y.maxPensioengevendLoon = value("MaxPensioengevendLoon");
        // Derived here rather than stored, so a yearly update changes one base figure instead of
        // three results that must agree.
        y.values.franchiseEindloonB = roundCents(y.aowJaarbedragSamenwonend * kFactorEindloon);
        y.values.franchiseB = roundCents(y.aowJaarbedragSamenwonend * kFactorMiddelloon);
        y.values.maxAnwCompensation = roundCents(y.anwNabestaandenuitkeringJaar * kAnwCompensationShare);
        result.emplace(y.year, std::move(y));
    }
    if (result.empty())
        throw std::logic_error("fiscalfigures.json bevat geen jaren");
    return result;
}

const std::map<int, Year> &all()
{
    static const std::map<int, Year> figures = load();
    return figures;
}

bool sameCents(double a, double b)
{
    return std::abs(a - b) < 0.005;
}

} // namespace

QList<int> years()
{
    QList<int> list;
    for (const auto &[year, figures] : all())
        list.append(year);
    return list;
}

const Year *find(int year)
{
    const auto it = all().find(year);
    return it == all().end() ? nullptr : &it->second;
}

int yearFor(const QDate &date)
{
    const QList<int> known = years();
    const int year = date.isValid() ? date.year() : known.last();
    if (year <= known.first())
        return known.first();
    // The latest known year not after the date: figures of a year still to come are not guessed.
    int chosen = known.first();
    for (int y : known)
        if (y <= year)
            chosen = y;
    return chosen;
}

const QStringList &names()
{
    static const QStringList list{QStringLiteral("DefaultOpbouwEindloon"), QStringLiteral("DefaultOpbouwMiddelloon"),
                                  QStringLiteral("FranchiseEindloonA"),    QStringLiteral("FranchiseEindloonB"),
                                  QStringLiteral("FranchiseA"),            QStringLiteral("FranchiseB"),
                                  QStringLiteral("MaxAnwCompensation")};
    return list;
}

std::vector<double> asList(const Values &v)
{
    return {v.defaultOpbouwEindloon, v.defaultOpbouwMiddelloon, v.franchiseEindloonA, v.franchiseEindloonB,
            v.franchiseA, v.franchiseB, v.maxAnwCompensation};
}

int matchingYear(const Values &values)
{
    const std::vector<double> wanted = asList(values);
    for (const auto &[year, figures] : all()) {
        const std::vector<double> have = asList(figures.values);
        if (std::equal(wanted.begin(), wanted.end(), have.begin(), sameCents))
            return year;
    }
    return 0;
}

QStringList differences(const Values &from, const Values &to)
{
    const QLocale dutch(QLocale::Dutch, QLocale::Netherlands);
    const std::vector<double> a = asList(from);
    const std::vector<double> b = asList(to);
    QStringList lines;
    for (size_t i = 0; i < a.size(); ++i)
        if (!sameCents(a[i], b[i]))
            lines << QStringLiteral("%1: %2 -> %3")
                         .arg(names().at(qsizetype(i)), dutch.toString(a[i], 'f', i < 2 ? 3 : 2),
                              dutch.toString(b[i], 'f', i < 2 ? 3 : 2));
    return lines;
}

} // namespace Zarnoveld::FiscalFigures
