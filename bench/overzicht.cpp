// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Reading a pension register overview of 200 schemes, mapping it onto a case and building the
// preview (text and dialog), against the floor of the same work: the bare parse of the same bytes
// by Qt's own reader (QJsonDocument, or QXmlStreamReader walking every token). Target: < 50 ms.

#include "hostapplication.h"
#include "importplan.h"
#include "previewdialog.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

namespace {

using namespace VandrelPensioen::Overzicht;
constexpr int Schemes = 200;

// 200 schemes: each pays from 65, 66 or 67 for life, half with a higher amount before the state
// pension age, every one with a partner pension and every fourth with an orphans' pension.
QByteArray generatedJson()
{
    QByteArray j = "{\"StatusCode\":\"000\",\"TijdstipAanmakenBericht\":\"2026-11-02T10:15:42\","
                   "\"Bijzonderheden\":[\"De bedragen zijn bruto bedragen per jaar.\"],\"OntbrekendePuvsError\":[],"
                   "\"Details\":{\"OuderdomsPensioenDetails\":{\"OuderdomsPensioen\":[";
    const auto item = [](int i, int amount) {
        return QStringLiteral("{\"PensioenUitvoerder\":\"Pensioenfonds %1\",\"HerkenningsNummer\":\"PF-%2\","
                              "\"StandPer\":\"2026-01-01\",\"TeBereiken\":%3,\"Opgebouwd\":%4}")
            .arg(i % 40).arg(i, 5, 10, QLatin1Char('0')).arg(amount).arg(amount / 2).toUtf8();
    };
    const auto period = [&](int fromYears, int toYears, bool lifelong, bool bridging) {
        QByteArray p = "{\"Van\":{\"Leeftijd\":{\"Jaren\":" + QByteArray::number(fromYears) + ",\"Maanden\":0}},\"Tot\":";
        p += lifelong ? QByteArray("{\"OuderdomsPensioenEvent\":\"Overlijden\"}")
                      : "{\"Leeftijd\":{\"Jaren\":" + QByteArray::number(toYears) + ",\"Maanden\":0}}";
        if (fromYears >= 67)
            p += ",\"AOW\":{\"StandPer\":\"2026-11-01\",\"AOWDetailsOpbouw\":{\"TeBereikenSamenwonend\":14379}}";
        p += ",\"Pensioen\":[";
        bool first = true;
        for (int i = 0; i < Schemes; ++i) {
            const int start = 65 + i % 3;
            if (start > fromYears)
                continue;
            p += first ? "" : ",";
            first = false;
            p += item(i, 1000 + i * 37 + (bridging && i % 2 == 0 ? 900 : 0));
        }
        return p + "]}";
    };
    j += period(65, 66, false, true) + "," + period(66, 67, false, true) + "," + period(67, 0, true, false);
    j += "]},\"PartnerPensioenDetails\":{\"PartnerPensioen\":[{\"Van\":{\"PartnerEvent\":\"Overlijden\"},"
         "\"Tot\":{\"PartnerEvent\":\"OverlijdenPartner\"},\"Pensioen\":[";
    for (int i = 0; i < Schemes; ++i)
        j += QStringLiteral("%1{\"PensioenUitvoerder\":\"Pensioenfonds %2\",\"HerkenningsNummer\":\"PF-%3\",\"StandPer\":\"2026-01-01\","
                            "\"Bedragen\":{\"VerzekerdBedrag\":%4,\"VerzekerdBedragNaPens\":%4}}")
                 .arg(i ? QStringLiteral(",") : QString()).arg(i % 40).arg(i, 5, 10, QLatin1Char('0')).arg(700 + i * 26)
                 .toUtf8();
    j += "]}]},\"WezenPensioenDetails\":{\"WezenPensioen\":[{\"Van\":{\"WezenEvent\":\"OverlijdenOuder\"},"
         "\"Tot\":{\"Leeftijd\":{\"Jaren\":21,\"Maanden\":0}},\"Pensioen\":[";
    for (int i = 0; i < Schemes; i += 4)
        j += QStringLiteral("%1{\"PensioenUitvoerder\":\"Pensioenfonds %2\",\"HerkenningsNummer\":\"PF-%3\",\"PerKind\":true,"
                            "\"Bedragen\":{\"VerzekerdBedrag\":%4}}")
                 .arg(i ? QStringLiteral(",") : QString()).arg(i % 40).arg(i, 5, 10, QLatin1Char('0')).arg(200 + i)
                 .toUtf8();
    return j + "]}]}}}";
}

// The same tree as XML, written from the JSON document: lists as repeated elements.
void writeXml(QXmlStreamWriter &w, const QString &name, const QJsonValue &v)
{
    if (v.isArray()) {
        for (const QJsonValue &e : v.toArray())
            writeXml(w, name, e);
        return;
    }
    w.writeStartElement(name);
    if (v.isObject()) {
        const QJsonObject o = v.toObject();
        for (auto it = o.begin(); it != o.end(); ++it)
            writeXml(w, it.key(), it.value());
    } else if (v.isBool()) {
        w.writeCharacters(v.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
    } else if (v.isDouble()) {
        w.writeCharacters(QString::number(v.toDouble(), 'g', 12));
    } else {
        w.writeCharacters(v.toString());
    }
    w.writeEndElement();
}

QByteArray generatedXml()
{
    QByteArray out;
    QXmlStreamWriter w(&out);
    w.writeStartDocument();
    writeXml(w, QStringLiteral("PensioenAanspraken"), QJsonDocument::fromJson(generatedJson()).object());
    w.writeEndDocument();
    return out;
}

using Clock = std::chrono::steady_clock;

double seconds(Clock::time_point from)
{
    return std::chrono::duration<double>(Clock::now() - from).count();
}

// The build machine is shared: the thread's own processor time is the steadier figure beside the
// wall clock.
double threadCpu()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

// The whole job the adviser waits for: read, map onto a case with an applicant of 20 schemes
// (so that matching is done too), build the text and the dialog.
void fullJob(const QByteArray &data, const QString &name, VandrelApplication::ApplicationPtr app)
{
    const ReadResult read = readOverview(data, name);
    if (!read.ok())
        qFatal("%s", qPrintable(read.error));
    ImportPlan plan = planImport(*read.overview, *app, 1, QDate(2026, 11, 24));
    benchmark::DoNotOptimize(previewText(plan));
    PreviewDialog dialog(std::move(plan), app);
    benchmark::DoNotOptimize(dialog.sizeHint());
}

std::shared_ptr<Zarnoveld::HostApplication> caseWith20Schemes()
{
    auto app = Zarnoveld::HostApplication::createInMemory();
    auto anv = app->Get_Dossier()->Get_Aanvrager(1);
    anv->setGeboorteDatum(QDate(1970, 3, 1));
    for (int i = 0; i < 20; ++i)
        anv->Get_Pensioen(anv->AddPension())->setUitvoerder(QStringLiteral("Eigen %1").arg(i));
    return app;
}

template <typename Floor>
void ratio(benchmark::State &state, const QByteArray &data, const QString &name, Floor floor)
{
    auto app = caseWith20Schemes();
    std::vector<double> ours, oursCpu;
    double oursTotal = 0, floorTotal = 0;
    for (auto _ : state) {
        auto start = Clock::now();
        const double cpuStart = threadCpu();
        fullJob(data, name, app);
        oursCpu.push_back(threadCpu() - cpuStart);
        const double t = seconds(start);
        const double floorCpu = threadCpu();
        floor(data);
        floorTotal += threadCpu() - floorCpu;
        oursTotal += oursCpu.back();
        ours.push_back(t);
        state.SetIterationTime(t);
    }
    std::sort(ours.begin(), ours.end());
    std::sort(oursCpu.begin(), oursCpu.end());
    state.counters["median_ms"] = ours.empty() ? 0 : ours[ours.size() / 2] * 1000.0;
    state.counters["cpu_median_ms"] = oursCpu.empty() ? 0 : oursCpu[oursCpu.size() / 2] * 1000.0;
    // Processor time against processor time, so a busy machine does not skew the ratio.
    state.counters["ratio"] = floorTotal > 0 ? oursTotal / floorTotal : 0;
    state.counters["bytes"] = double(data.size());
}

void BM_Overzicht200Json(benchmark::State &state)
{
    static const QByteArray data = generatedJson();
    ratio(state, data, QStringLiteral("200.json"), [](const QByteArray &d) {
        benchmark::DoNotOptimize(QJsonDocument::fromJson(d).object().size());
    });
}

void BM_Overzicht200Xml(benchmark::State &state)
{
    static const QByteArray data = generatedXml();
    ratio(state, data, QStringLiteral("200.xml"), [](const QByteArray &d) {
        QXmlStreamReader xml(d);
        qsizetype n = 0;
        while (!xml.atEnd()) {
            xml.readNext();
            n += xml.text().size();
        }
        benchmark::DoNotOptimize(n);
    });
}

} // namespace

BENCHMARK(BM_Overzicht200Json)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Overzicht200Xml)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
