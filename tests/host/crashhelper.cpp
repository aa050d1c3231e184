// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Test helper: edits a case file step by step and reports every step after its setter returned.
// The crash test kills it at random moments and checks that every reported step is in the file.
//
// With --stroomuitval the case file and its write-ahead log go through a file layer that keeps,
// next to each of them, NAME.durable: the file as the disk would hold it after a power cut, that
// is, with only the writes a sync has flushed. Writes since the last sync live in this process's
// memory only and die with it, as they die in a disk cache when the power goes.

#include "hostapplication.h"

#include <QCoreApplication>

#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

using namespace VandrelApplication;

namespace {

sqlite3_vfs *g_real = nullptr;

struct Pending
{
    sqlite3_int64 offset;
    std::string data;
    bool truncate;
};

struct ShimFile
{
    sqlite3_file base;
    sqlite3_file *real;
    std::string *durable;    // empty: a file the layer passes through untouched
    std::vector<Pending> *pending;
};

sqlite3_file *realOf(sqlite3_file *f)
{
    return reinterpret_cast<ShimFile *>(f)->real;
}

void copyFile(const std::string &from, const std::string &to)
{
    const int in = ::open(from.c_str(), O_RDONLY);
    if (in < 0)
        return;
    const int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    char buffer[65536];
    ssize_t n;
    while ((n = ::read(in, buffer, sizeof buffer)) > 0)
        if (::write(out, buffer, static_cast<size_t>(n)) != n)
            break;
    ::close(in);
    ::close(out);
}

int shimClose(sqlite3_file *f)
{
    auto *s = reinterpret_cast<ShimFile *>(f);
    const int rc = s->real->pMethods ? s->real->pMethods->xClose(s->real) : SQLITE_OK;
    delete s->pending;
    delete s->durable;
    sqlite3_free(s->real);
    return rc;
}
int shimRead(sqlite3_file *f, void *p, int n, sqlite3_int64 o) { return realOf(f)->pMethods->xRead(realOf(f), p, n, o); }
int shimWrite(sqlite3_file *f, const void *p, int n, sqlite3_int64 o)
{
    auto *s = reinterpret_cast<ShimFile *>(f);
    const int rc = s->real->pMethods->xWrite(s->real, p, n, o);
    if (rc == SQLITE_OK && !s->durable->empty())
        s->pending->push_back({o, std::string(static_cast<const char *>(p), static_cast<size_t>(n)), false});
    return rc;
}
int shimTruncate(sqlite3_file *f, sqlite3_int64 size)
{
    auto *s = reinterpret_cast<ShimFile *>(f);
    const int rc = s->real->pMethods->xTruncate(s->real, size);
    if (rc == SQLITE_OK && !s->durable->empty())
        s->pending->push_back({size, std::string(), true});
    return rc;
}
// What was written becomes durable only here.
int shimSync(sqlite3_file *f, int flags)
{
    auto *s = reinterpret_cast<ShimFile *>(f);
    const int rc = s->real->pMethods->xSync(s->real, flags);
    if (rc == SQLITE_OK && !s->durable->empty() && !s->pending->empty()) {
        const int fd = ::open(s->durable->c_str(), O_WRONLY | O_CREAT, 0600);
        for (const Pending &p : *s->pending) {
            if (p.truncate) {
                if (::ftruncate(fd, p.offset) != 0)
                    break;
            } else if (::pwrite(fd, p.data.data(), p.data.size(), p.offset) != static_cast<ssize_t>(p.data.size())) {
                break;
            }
        }
        ::close(fd);
        s->pending->clear();
    }
    return rc;
}
int shimFileSize(sqlite3_file *f, sqlite3_int64 *size) { return realOf(f)->pMethods->xFileSize(realOf(f), size); }
int shimLock(sqlite3_file *f, int l) { return realOf(f)->pMethods->xLock(realOf(f), l); }
int shimUnlock(sqlite3_file *f, int l) { return realOf(f)->pMethods->xUnlock(realOf(f), l); }
int shimCheckReserved(sqlite3_file *f, int *out) { return realOf(f)->pMethods->xCheckReservedLock(realOf(f), out); }
int shimFileControl(sqlite3_file *f, int op, void *arg) { return realOf(f)->pMethods->xFileControl(realOf(f), op, arg); }
int shimSectorSize(sqlite3_file *f) { return realOf(f)->pMethods->xSectorSize(realOf(f)); }
int shimDevice(sqlite3_file *f) { return realOf(f)->pMethods->xDeviceCharacteristics(realOf(f)); }
int shimShmMap(sqlite3_file *f, int i, int size, int extend, void volatile **p)
{
    return realOf(f)->pMethods->xShmMap(realOf(f), i, size, extend, p);
}
int shimShmLock(sqlite3_file *f, int offset, int n, int flags) { return realOf(f)->pMethods->xShmLock(realOf(f), offset, n, flags); }
void shimShmBarrier(sqlite3_file *f) { realOf(f)->pMethods->xShmBarrier(realOf(f)); }
int shimShmUnmap(sqlite3_file *f, int deleteFlag) { return realOf(f)->pMethods->xShmUnmap(realOf(f), deleteFlag); }

// No memory-mapped reads: every read and write passes through the layer.
const sqlite3_io_methods kMethods = {
    2, shimClose, shimRead, shimWrite, shimTruncate, shimSync, shimFileSize, shimLock, shimUnlock,
    shimCheckReserved, shimFileControl, shimSectorSize, shimDevice, shimShmMap, shimShmLock,
    shimShmBarrier, shimShmUnmap, nullptr, nullptr,
};

int shimOpen(sqlite3_vfs *, sqlite3_filename name, sqlite3_file *f, int flags, int *outFlags)
{
    auto *s = reinterpret_cast<ShimFile *>(f);
    std::memset(s, 0, sizeof *s);
    s->real = static_cast<sqlite3_file *>(sqlite3_malloc(g_real->szOsFile));
    if (!s->real)
        return SQLITE_NOMEM;
    std::memset(s->real, 0, static_cast<size_t>(g_real->szOsFile));
    const int rc = g_real->xOpen(g_real, name, s->real, flags, outFlags);
    s->base.pMethods = s->real->pMethods ? &kMethods : nullptr;
    if (rc != SQLITE_OK || !s->real->pMethods) {
        sqlite3_free(s->real);
        s->real = nullptr;
        s->base.pMethods = nullptr;
        return rc;
    }
    s->durable = new std::string;
    s->pending = new std::vector<Pending>;
    if (name && (flags & (SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_WAL))) {
        *s->durable = std::string(name) + ".durable";
        // What is on disk when the file is opened survived whatever came before.
        if (::access(s->durable->c_str(), F_OK) != 0)
            copyFile(name, *s->durable);
    }
    return SQLITE_OK;
}

int shimDelete(sqlite3_vfs *, const char *name, int syncDir)
{
    ::unlink((std::string(name) + ".durable").c_str());
    return g_real->xDelete(g_real, name, syncDir);
}
int shimAccess(sqlite3_vfs *, const char *name, int flags, int *out) { return g_real->xAccess(g_real, name, flags, out); }
int shimFullPath(sqlite3_vfs *, const char *name, int n, char *out) { return g_real->xFullPathname(g_real, name, n, out); }
int shimRandomness(sqlite3_vfs *, int n, char *out) { return g_real->xRandomness(g_real, n, out); }
int shimSleep(sqlite3_vfs *, int us) { return g_real->xSleep(g_real, us); }
int shimCurrentTime(sqlite3_vfs *, double *t) { return g_real->xCurrentTime(g_real, t); }
int shimLastError(sqlite3_vfs *, int n, char *out) { return g_real->xGetLastError(g_real, n, out); }
int shimCurrentTimeInt64(sqlite3_vfs *, sqlite3_int64 *t) { return g_real->xCurrentTimeInt64(g_real, t); }

sqlite3_vfs g_shim;

void installPowerCutLayer()
{
    g_real = sqlite3_vfs_find(nullptr);
    g_shim = sqlite3_vfs{};
    g_shim.iVersion = 2;
    g_shim.szOsFile = sizeof(ShimFile);
    g_shim.mxPathname = g_real->mxPathname;
    g_shim.zName = "stroomuitval";
    g_shim.xOpen = shimOpen;
    g_shim.xDelete = shimDelete;
    g_shim.xAccess = shimAccess;
    g_shim.xFullPathname = shimFullPath;
    g_shim.xRandomness = shimRandomness;
    g_shim.xSleep = shimSleep;
    g_shim.xCurrentTime = shimCurrentTime;
    g_shim.xGetLastError = shimLastError;
    g_shim.xCurrentTimeInt64 = shimCurrentTimeInt64;
    sqlite3_vfs_register(&g_shim, 1);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication qapp(argc, argv);
    if (argc < 2)
        return 2;
    if (argc > 2 && std::strcmp(argv[2], "--stroomuitval") == 0)
        installPowerCutLayer();
    try {
        auto app = Zarnoveld::HostApplication::openFile(QString::fromLocal8Bit(argv[1]));
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        auto pen = anv->Get_Pensioen(1);
        auto scenario = pen->Get_OuderdomRegel(1)->ScenarioOP();
        // The file's salary is the last step that reached it: continue after it.
        for (qint64 step = static_cast<qint64>(pen->Salaris()) + 1;; ++step) {
            if (step % 3 == 0)
                scenario->Add_Regel()->setBedrag(static_cast<double>(step));
            if (step % 5 == 0)
                anv->setNaam(QStringLiteral("N%1").arg(step));
            pen->setSalaris(static_cast<double>(step));
            std::printf("%lld\n", static_cast<long long>(step));
            std::fflush(stdout);
        }
    } catch (const HostError &e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}
