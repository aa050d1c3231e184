// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Leaving a field as the user does it: Tab out of a TextBox whose check passes, the value written
// through to a SQLite case file before the focus moves on. The typing happens outside the clock;
// only the leave is timed. The setter alone is the floor the leave is compared with; the setter in
// turn is compared with its own floor on this disk: appending one page to a file next to the case
// and flushing it (fdatasync), which every durable commit needs at least once.

#include "hostapplication.h"
#include "textbox.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

QTemporaryDir *g_dir = nullptr;

struct Form
{
    Form()
    {
        static int n = 0;
        app = Zarnoveld::HostApplication::createFile(g_dir->filePath(QStringLiteral("leave%1").arg(++n)));
        auto aanvrager = app->Get_Dossier()->Get_Aanvrager(1);
        pensioen = aanvrager->Get_Pensioen(aanvrager->AddPension());
        auto *layout = new QVBoxLayout(&window);
        salaris = new VandrelControl::TextBox(&window);
        salaris->setKind(VandrelControl::FieldKind::Amount);
        next = new VandrelControl::TextBox(&window);
        layout->addWidget(salaris);
        layout->addWidget(next);
        QObject::connect(salaris, &VandrelControl::TextBox::Validate, salaris,
                         [this](bool &Cancel) {
                             if (salaris->value() < 0) {
                                 Cancel = true;
                                 return;
                             }
                             pensioen->setSalaris(salaris->value());
                         },
                         Qt::DirectConnection);
        window.show();
        window.activateWindow();
        (void)QTest::qWaitForWindowActive(&window);
    }

    // Types a new salary into the field (not timed) so that leaving it has something to store.
    void type(int i)
    {
        salaris->setFocus(Qt::MouseFocusReason);
        salaris->selectAll();
        QTest::keyClicks(salaris, QString::number(40000 + i % 1000));
    }
    void leave() { QTest::keyClick(salaris, Qt::Key_Tab); }

    std::shared_ptr<Zarnoveld::HostApplication> app;
    VandrelApplication::PensioenPtr pensioen;
    QWidget window;
    VandrelControl::TextBox *salaris = nullptr;
    VandrelControl::TextBox *next = nullptr;
};

Form *g_form = nullptr;

void BM_LeaveField(benchmark::State &state)
{
    int i = 0;
    for (auto _ : state) {
        state.PauseTiming();
        g_form->type(++i);
        state.ResumeTiming();
        g_form->leave();
    }
}
BENCHMARK(BM_LeaveField)->Unit(benchmark::kMicrosecond);

void BM_SetterOnly(benchmark::State &state)
{
    double v = 0;
    for (auto _ : state)
        g_form->pensioen->setSalaris(++v);
}
BENCHMARK(BM_SetterOnly)->Unit(benchmark::kMicrosecond);

double medianMicros(const std::function<void(int)> &prepare, const std::function<void()> &timed, int runs)
{
    std::vector<qint64> ns;
    ns.reserve(size_t(runs));
    QElapsedTimer timer;
    for (int i = 0; i < runs; ++i) {
        prepare(i);
        timer.start();
        timed();
        ns.push_back(timer.nsecsElapsed());
    }
    std::nth_element(ns.begin(), ns.begin() + runs / 2, ns.end());
    return double(ns[size_t(runs / 2)]) / 1000.0;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    g_dir = &dir;
    Form form;
    g_form = &form;

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();

    const int runs = 1000;
    const double leave = medianMicros([&](int i) { form.type(i); }, [&] { form.leave(); }, runs);
    // A leave that never reached the host would be fast and wrong.
    const bool stored = form.pensioen->Salaris() == 40000 + (runs - 1) % 1000;
    double v = 0;
    const double setter = medianMicros([](int) {}, [&] { form.pensioen->setSalaris(++v); }, runs);
    const int fd = ::open(QFile::encodeName(dir.filePath(QStringLiteral("vloer"))).constData(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    const QByteArray page(4096, 'x');
    const double flush = medianMicros([](int) {}, [&] {
        if (::write(fd, page.constData(), size_t(page.size())) != page.size() || ::fdatasync(fd) != 0)
            std::printf("the floor could not be written\n");
    }, 200);
    ::close(fd);
    std::printf("median leave field (check + write-through): %.1f us (target <= 1000 us)\n", leave);
    std::printf("median setter write-through alone: %.1f us\n", setter);
    std::printf("ratio leave / setter: %.2f%s\n", leave / setter, stored ? "" : " (value NOT stored!)");
    std::printf("median append of one page + fdatasync on this disk: %.1f us (setter / flush %.2f)\n", flush, setter / flush);
    benchmark::Shutdown();
    return 0;
}
