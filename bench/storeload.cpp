// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// An office under load: 20 advisers at once, each making 1 000 edits to a case of their own, on
// each back end (case files on this disk; a PostgreSQL server with its disk flush on, started
// for the run by scripts/pgcluster). Prints the median and 99th-percentile latency of one
// accepted edit (a setter's write-through, commit included) per back end, and how many edits were
// lost: every session reads its case back and compares it with what it wrote.
//
//   bench_storeload [--sessions N] [--edits N]     (Google Benchmark's options are ignored)

#include "caseaddress.h"
#include "hostapplication.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kSchemes = 10;

struct Result
{
    std::vector<double> latenciesMs;
    int refused = 0;
    int lost = 0;
    int failedSessions = 0;
};

// One adviser's session, in its own process: its own connection, as on its own PC.
int session(const QString &address, int edits, const QString &out)
{
    int argc = 1;
    char name[] = "bench_storeload";
    char *argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    std::vector<double> latencies;
    latencies.reserve(size_t(edits));
    int refused = 0;
    std::vector<int> last(kSchemes, 0);
    try {
        auto application = Zarnoveld::HostApplication::createFile(address);
        auto anv = application->Get_Dossier()->Get_Aanvrager(1);
        for (int i = 0; i < kSchemes; ++i)
            anv->AddPension();
        std::vector<VandrelApplication::PensioenPtr> schemes;
        for (int i = 1; i <= kSchemes; ++i)
            schemes.push_back(anv->Get_Pensioen(qint16(i)));
        for (int k = 1; k <= edits; ++k) {
            const int s = k % kSchemes;
            const auto start = std::chrono::steady_clock::now();
            try {
                schemes[size_t(s)]->setBedragTOP(k);
                last[size_t(s)] = k;
            } catch (const VandrelApplication::HostError &) {
                ++refused;
                continue;
            }
            latencies.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        }
    } catch (const VandrelApplication::HostError &e) {
        std::fprintf(stderr, "sessie mislukt: %s\n", e.description().toLocal8Bit().constData());
        return 2;
    }
    // Read back by a new opening: an edit that was accepted must be there.
    int lost = 0;
    try {
        auto reread = Zarnoveld::HostApplication::openForReading(address);
        auto anv = reread->Get_Dossier()->Get_Aanvrager(1);
        for (int i = 0; i < kSchemes; ++i)
            if (anv->Get_Pensioen(qint16(i + 1))->BedragTOP() != double(last[size_t(i)]))
                ++lost;
    } catch (const VandrelApplication::HostError &e) {
        std::fprintf(stderr, "teruglezen mislukt: %s\n", e.description().toLocal8Bit().constData());
        return 2;
    }
    QFile file(out);
    if (!file.open(QIODevice::WriteOnly))
        return 2;
    const int header[2] = {refused, lost};
    file.write(reinterpret_cast<const char *>(header), sizeof header);
    file.write(reinterpret_cast<const char *>(latencies.data()), qint64(latencies.size() * sizeof(double)));
    return 0;
}

Result run(const std::vector<QString> &addresses, int edits, const QString &folder)
{
    std::vector<pid_t> children;
    for (size_t i = 0; i < addresses.size(); ++i) {
        const pid_t pid = ::fork();
        if (pid == 0)
            ::_exit(session(addresses[i], edits, QStringLiteral("%1/session-%2").arg(folder).arg(i)));
        children.push_back(pid);
    }
    Result result;
    for (pid_t pid : children) {
        int status = 0;
        ::waitpid(pid, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
            ++result.failedSessions;
    }
    for (size_t i = 0; i < addresses.size(); ++i) {
        QFile file(QStringLiteral("%1/session-%2").arg(folder).arg(i));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = file.readAll();
        int header[2] = {0, 0};
        std::memcpy(header, bytes.constData(), sizeof header);
        result.refused += header[0];
        result.lost += header[1];
        const size_t n = (size_t(bytes.size()) - sizeof header) / sizeof(double);
        const size_t at = result.latenciesMs.size();
        result.latenciesMs.resize(at + n);
        std::memcpy(result.latenciesMs.data() + at, bytes.constData() + sizeof header, n * sizeof(double));
    }
    return result;
}

double percentile(std::vector<double> values, double p)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, size_t(p * double(values.size() - 1) + 0.5))];
}

void report(const char *backEnd, const Result &r, int sessions, int edits)
{
    std::printf("%s %d sessions x %d edits, median write (ms): %.2f\n", backEnd, sessions, edits, percentile(r.latenciesMs, 0.5));
    std::printf("%s %d sessions x %d edits, p99 write (ms): %.2f\n", backEnd, sessions, edits, percentile(r.latenciesMs, 0.99));
    std::printf("%s edits lost: %d\n", backEnd, r.lost);
    std::printf("%s edits refused: %d\n", backEnd, r.refused);
    std::printf("%s sessions failed: %d\n", backEnd, r.failedSessions);
}

} // namespace

int main(int argc, char **argv)
{
    int sessions = 20;
    int edits = 1000;
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "--sessions") == 0)
            sessions = std::atoi(argv[i + 1]);
        if (std::strcmp(argv[i], "--edits") == 0)
            edits = std::atoi(argv[i + 1]);
    }
    // On the disk the program runs from: a temporary folder may be memory, where a flush is free.
    QTemporaryDir scratch(QDir::currentPath() + QStringLiteral("/storeload-XXXXXX"));
    if (!scratch.isValid())
        return 2;
    int status = 0;

    std::vector<QString> files;
    for (int i = 0; i < sessions; ++i)
        files.push_back(scratch.filePath(QStringLiteral("adviseur-%1.zdossier").arg(i)));
    QDir().mkpath(scratch.filePath(QStringLiteral("sqlite")));
    const Result sqlite = run(files, edits, scratch.filePath(QStringLiteral("sqlite")));
    report("sqlite", sqlite, sessions, edits);
    status |= sqlite.lost || sqlite.failedSessions;

    // The server: a throwaway cluster that flushes to disk, as an office's server does.
    const QString cluster = scratch.filePath(QStringLiteral("cluster"));
    const std::string start = std::string("PGCLUSTER_FSYNC=on " VANDREL_SOURCE_DIR "/scripts/pgcluster start '")
        + cluster.toStdString() + "' >/dev/null";
    QFile url(cluster + QStringLiteral("/url"));
    if (std::system(start.c_str()) != 0 || !url.open(QIODevice::ReadOnly)) {
        QFile skip(cluster + QStringLiteral("/skip"));
        skip.open(QIODevice::ReadOnly);
        std::printf("postgresql: overgeslagen (%s)\n", skip.readAll().trimmed().constData());
        return status;
    }
    QFile password(cluster + QStringLiteral("/password"));
    password.open(QIODevice::ReadOnly);
    ::setenv("PGPASSWORD", password.readAll().trimmed().constData(), 1);
    const QString database = QString::fromUtf8(url.readAll().trimmed());
    std::vector<QString> cases;
    const QString tag = QString::number(::getpid());
    for (int i = 0; i < sessions; ++i)
        cases.push_back(Zarnoveld::CaseAddress::ofCase(database, QStringLiteral("Adviseur %1-%2").arg(i).arg(tag)));
    QDir().mkpath(scratch.filePath(QStringLiteral("postgresql")));
    const Result server = run(cases, edits, scratch.filePath(QStringLiteral("postgresql")));
    report("postgresql", server, sessions, edits);
    status |= server.lost || server.failedSessions;
    const std::string stop = std::string(VANDREL_SOURCE_DIR "/scripts/pgcluster stop '") + cluster.toStdString() + "'";
    std::system(stop.c_str());
    return status;
}
