// Places the pension screen in a window and checks that the exported package is usable.
#include <pensmain.h>
#include <messagebox.h>
#include <hostcheck.h>
#include <overview.h>
#include <registerlink.h>

#include <QApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    VandrelPensioen::PensMain panel;
    bool cancel = false;
    // Nothing is shown yet: validation must pass without asking the host anything.
    panel.Validation(cancel, 0);
    panel.setBackColor(Qt::white);
    // The overview reader refuses what is not an overview, with a Dutch message naming the file.
    const auto read = VandrelPensioen::Overzicht::readOverview("{}", QStringLiteral("leeg.json"));
    const bool ok = !cancel && panel.BackColor() == QColor(Qt::white)
        && VandrelControl::MessageBox::hasResponder() == false
        && !read.ok() && read.error.contains(QStringLiteral("leeg.json"));
    QTextStream(stdout) << (ok ? "consumer: ok\n" : "consumer: FAILED\n");
    return ok ? 0 : 1;
}
