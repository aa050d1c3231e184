// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "previewdialog.h"

#include "messagebox.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace VandrelPensioen::Overzicht {

class PreviewDialog::Private
{
public:
    ImportPlan plan;
    VandrelApplication::ApplicationPtr application;
    bool applied = false;
};

namespace {

QLabel *wrapped(const QString &text, const QString &name, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QTreeWidgetItem *line(QTreeWidgetItem *parent, const QString &what, const QString &before = QString(),
                      const QString &after = QString())
{
    auto *item = new QTreeWidgetItem(parent, {what, QString(), before, after});
    item->setToolTip(0, what);
    return item;
}

// A remark rather than a field: it may use the whole width of the list.
QTreeWidgetItem *remark(QTreeWidgetItem *parent, const QString &text)
{
    QTreeWidgetItem *item = line(parent, text);
    item->setFirstColumnSpanned(true);
    return item;
}

} // namespace

PreviewDialog::PreviewDialog(ImportPlan plan, VandrelApplication::ApplicationPtr application, QWidget *parent)
    : QDialog(parent)
    , d(std::make_unique<Private>())
{
    d->plan = std::move(plan);
    d->application = std::move(application);
    const ImportPlan &p = d->plan;
    setObjectName(QStringLiteral("frmPensioenoverzicht"));
    setWindowTitle(QStringLiteral("Pensioenoverzicht inlezen"));
    if (d->application)
        setWindowIcon(d->application->Icon());

    auto *layout = new QVBoxLayout(this);
    QString header = QStringLiteral("Pensioenoverzicht %1 voor de %2.").arg(p.fileName, p.participant);
    if (!p.createdAt.isEmpty())
        header += QStringLiteral(" Gemaakt door het pensioenregister op %1.").arg(createdOn(p));
    layout->addWidget(wrapped(header, QStringLiteral("lblBestand"), this));

    QStringList warnings;
    if (!p.refusal.isEmpty())
        warnings << p.refusal;
    if (!p.unreachableProviders.isEmpty())
        warnings << QStringLiteral("Het overzicht is onvolledig. Het pensioenregister kon de gegevens van deze uitvoerders niet ophalen: %1. "
                                   "Vraag hun gegevens zelf op.")
                        .arg(p.unreachableProviders.join(QStringLiteral(", ")));
    if (!p.providersWithoutData.isEmpty())
        warnings << QStringLiteral("Geen gegevens bij: %1.").arg(p.providersWithoutData.join(QStringLiteral(", ")));
    if (!p.canRecognise)
        warnings << QStringLiteral("Dit programma bewaart geen herkenningsnummers; bij een volgende import worden de regelingen opnieuw toegevoegd.");
    if (!warnings.isEmpty()) {
        auto *box = new QGroupBox(QStringLiteral("Let op"), this);
        box->setObjectName(QStringLiteral("fraWaarschuwing"));
        auto *boxLayout = new QHBoxLayout(box);
        auto *icon = new QLabel(box);
        icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(32, 32));
        icon->setAlignment(Qt::AlignTop);
        boxLayout->addWidget(icon);
        boxLayout->addWidget(wrapped(warnings.join(QLatin1Char('\n')), QStringLiteral("lblWaarschuwing"), box), 1);
        layout->addWidget(box);
    }

    layout->addWidget(wrapped(QStringLiteral("Regelingen: %1 nieuw, %2 bijgewerkt, %3 ongewijzigd.")
                                  .arg(p.count(PlanStatus::New))
                                  .arg(p.count(PlanStatus::Updated))
                                  .arg(p.count(PlanStatus::Unchanged)),
                              QStringLiteral("lblSamenvatting"), this));

    auto *tree = new QTreeWidget(this);
    tree->setObjectName(QStringLiteral("lvwRegelingen"));
    tree->setHeaderLabels({QStringLiteral("Regeling"), QStringLiteral("Status"), QStringLiteral("Nu in het dossier"),
                           QStringLiteral("Uit het overzicht")});
    tree->setRootIsDecorated(true);
    // One line per row, long remarks span the row and show whole in their tool tip: with 200
    // schemes the list must not lay out thousands of wrapped rows before it can be shown.
    tree->setUniformRowHeights(true);
    // A long list opens folded except where something changes or the screen will object.
    const bool expandAll = p.schemes.size() <= 30;
    const auto fill = [this](QTreeWidgetItem *top, const PlannedScheme &s) {
        for (const FieldChange &c : s.changes)
            line(top, c.label, s.status == PlanStatus::New ? QStringLiteral("—") : c.before, c.after);
        if (!s.skipReason.isEmpty())
            remark(top, s.skipReason);
        for (const QString &note : s.values.notes)
            remark(top, QStringLiteral("Opmerking: ") + note);
        if (!s.toFill.isEmpty())
            remark(top, QStringLiteral("Nog in te vullen: ") + s.toFill.join(QStringLiteral(", ")));
        if (s.status != PlanStatus::Unchanged) {
            if (s.checkFailures.isEmpty())
                remark(top, QStringLiteral("Controle pensioenscherm: in orde"));
            for (const QString &f : s.checkFailures) {
                auto *item = remark(top, QStringLiteral("Controle pensioenscherm houdt tegen: ") + f);
                item->setIcon(0, style()->standardIcon(QStyle::SP_MessageBoxWarning));
            }
        }
    };
    constexpr int SchemeRole = Qt::UserRole;
    for (qsizetype i = 0; i < p.schemes.size(); ++i) {
        const PlannedScheme &s = p.schemes[i];
        QString title = s.values.provider;
        if (!s.values.schemeId.isEmpty())
            title += QStringLiteral(" (%1)").arg(s.values.schemeId);
        auto *top = new QTreeWidgetItem(tree, {title, statusText(s.status)});
        top->setToolTip(0, title);
        QFont bold = top->font(0);
        bold.setBold(true);
        top->setFont(0, bold);
        const bool expanded = expandAll ? s.status != PlanStatus::Unchanged
                                        : s.status == PlanStatus::Updated || !s.checkFailures.isEmpty();
        // A folded scheme of a long list gets its lines when the user opens it.
        if (expandAll || expanded) {
            fill(top, s);
        } else {
            top->setData(0, SchemeRole, int(i));
            top->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
        }
        top->setExpanded(expanded);
    }
    connect(tree, &QTreeWidget::itemExpanded, this, [this, fill](QTreeWidgetItem *top) {
        const QVariant index = top->data(0, SchemeRole);
        if (!index.isValid() || top->childCount() > 0)
            return;
        top->setData(0, SchemeRole, QVariant());
        fill(top, d->plan.schemes.at(index.toInt()));
    });
    // Wide enough for the longest field name and both amounts side by side without scrolling.
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int c = 1; c < 4; ++c)
        tree->header()->setSectionResizeMode(c, QHeaderView::ResizeToContents);
    const QFontMetrics metrics(tree->font());
    const int widest = metrics.horizontalAdvance(QStringLiteral("Nabestaandenpensioen na AOW bij overlijden voor AOW"))
                     + 2 * tree->indentation();
    // The value columns hold amounts, dates and the provider's name; counted in characters, as
    // measuring thousands of texts would cost more than building the list.
    qsizetype longestValue = 0;
    for (const PlannedScheme &s : p.schemes)
        for (const FieldChange &c : s.changes)
            longestValue = std::max({longestValue, c.before.size(), c.after.size()});
    const int valueWidth = std::max(metrics.horizontalAdvance(QStringLiteral("Uit het overzicht")),
                                    int(std::min<qsizetype>(longestValue, 48)) * metrics.averageCharWidth());
    tree->setMinimumWidth(widest + metrics.horizontalAdvance(QStringLiteral("ongewijzigd  Nu in het dossier"))
                          + valueWidth + 80);
    tree->setMinimumHeight(metrics.height() * 22);
    layout->addWidget(tree, 1);

    if (!p.remarks.isEmpty()) {
        auto *box = new QGroupBox(QStringLiteral("Bijzonderheden van het pensioenregister"), this);
        box->setObjectName(QStringLiteral("fraBijzonderheden"));
        auto *boxLayout = new QVBoxLayout(box);
        QStringList lines;
        for (const QString &r : p.remarks)
            lines << QStringLiteral("• ") + r;
        boxLayout->addWidget(wrapped(lines.join(QLatin1Char('\n')), QStringLiteral("lblBijzonderheden"), box));
        layout->addWidget(box);
    }

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName(QStringLiteral("cmdKnoppen"));
    QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("cmdInlezen"));
    ok->setText(p.hasChanges() ? QStringLiteral("Inlezen") : QStringLiteral("Sluiten"));
    ok->setEnabled(p.refusal.isEmpty());
    QPushButton *cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("cmdAnnuleren"));
    cancel->setText(QStringLiteral("Annuleren"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(960, 600);
}

PreviewDialog::~PreviewDialog() = default;

const ImportPlan &PreviewDialog::plan() const
{
    return d->plan;
}

bool PreviewDialog::applied() const
{
    return d->applied;
}

void PreviewDialog::accept()
{
    if (!d->plan.refusal.isEmpty())
        return;
    if (d->plan.hasChanges()) {
        try {
            applyPlan(d->plan, *d->application);
            d->applied = true;
        } catch (const VandrelApplication::HostError &e) {
            VandrelControl::MessageBox::ok(this, QStringLiteral("Het overzicht is niet ingelezen; het dossier is niet gewijzigd.\n\n")
                                                     + e.description(),
                                           QStringLiteral("Pensioenoverzicht inlezen"));
            QDialog::reject();
            return;
        }
    }
    QDialog::accept();
}

} // namespace VandrelPensioen::Overzicht
