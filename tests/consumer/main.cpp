// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Places the pension screen in a window and checks that the exported package is usable: the
// prefixed headers, the version header, the library, and the route by name through the
// component registry.
#include <VandrelPensioen/componentloader.h>
#include <VandrelPensioen/hostcheck.h>
#include <VandrelPensioen/messagebox.h>
#include <VandrelPensioen/pensmain.h>
#include <VandrelPensioen/registration.h>
#include <VandrelPensioen/version.h>
#include <VandrelPensioen/overview.h>
#include <VandrelPensioen/registerlink.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QTextStream>

static_assert(VANDRELPENSIOEN_VERSION >= VANDRELPENSIOEN_VERSION_CHECK(0, 1, 0));

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    bool ok = true;
    const auto expect = [&](bool condition, const char *what) {
        if (!condition)
            out << "consumer: FAILED: " << what << '\n';
        ok = ok && condition;
    };

    VandrelPensioen::PensMain panel;
    bool cancel = false;
    // Nothing is shown yet: validation must pass without asking the host anything.
    panel.Validation(cancel, 0);
    panel.setBackColor(Qt::white);
    // The overview reader refuses what is not an overview, with a Dutch message naming the file.
    const auto read = VandrelPensioen::Overzicht::readOverview("{}", QStringLiteral("leeg.json"));
    expect(!read.ok() && read.error.contains(QStringLiteral("leeg.json")), "overview reader refuses a non-overview");
    expect(!cancel, "validation of an empty screen passes");
    expect(panel.BackColor() == QColor(Qt::white), "BackColor reads back");
    expect(!VandrelControl::MessageBox::hasResponder(), "no responder installed by the library");
    expect(QString::fromLatin1(VANDRELPENSIOEN_VERSION_STRING).startsWith(QLatin1String("0.")),
           "version string");

    // The route by name: register the installed library in a private registry, create by ProgId.
    QTemporaryDir registry;
    qputenv("VANDREL_COMPONENT_REGISTRY", registry.path().toLocal8Bit());
    QString error;
    expect(VandrelPensioen::ComponentLoader::registerLibrary(QStringLiteral(VANDREL_PENSIOEN_LIBRARY), &error),
           "registering the installed library");
    QWidget *byName = VandrelPensioen::ComponentLoader::create(
        QString::fromLatin1(VandrelPensioen::Registration::ProgId), nullptr, &error);
    expect(byName && byName->inherits("VandrelPensioen::PensMain"), "creating PensMain by name");
    if (!error.isEmpty())
        out << "consumer: " << error << '\n';
    delete byName;

    out << (ok ? "consumer: ok\n" : "consumer: FAILED\n");
    return ok ? 0 : 1;
}
