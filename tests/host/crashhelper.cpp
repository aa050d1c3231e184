// Test helper: edits a case file step by step and reports every step after its setter returned.
// The crash test kills it at random moments and checks that every reported step is in the file.

#include "hostapplication.h"

#include <QCoreApplication>

#include <cstdio>

using namespace VandrelApplication;

int main(int argc, char **argv)
{
    QCoreApplication qapp(argc, argv);
    if (argc < 2)
        return 2;
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
