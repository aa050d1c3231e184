// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "randomuser.h"

#include "formats.h"
#include "textbox.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

using VandrelControl::FieldKind;
using VandrelControl::TextBox;

namespace Robustness {

quint32 seedFromEnvironment(quint32 fallback)
{
    bool ok = false;
    const quint32 seed = qEnvironmentVariable("VANDREL_SEED").toUInt(&ok);
    return ok ? seed : fallback;
}

RandomUser::RandomUser(quint32 seed, TestSupport::MessageRecorder &messages)
    : m_random(seed)
    , m_messages(messages)
{
}

namespace {

bool usable(QWidget *w, QWidget *window)
{
    return w->isVisibleTo(window) && w->isEnabled() && w->window() == window;
}

template <typename T>
QList<T *> usableChildren(QWidget *window)
{
    QList<T *> out;
    for (T *w : window->findChildren<T *>())
        if (usable(w, window))
            out.append(w);
    return out;
}

QString nameOf(const QObject *o)
{
    return o->objectName().isEmpty() ? QString::fromLatin1(o->metaObject()->className()) : o->objectName();
}

} // namespace

void RandomUser::typeText(QWidget *field, const QString &text)
{
    field->setFocus(Qt::MouseFocusReason);
    QApplication::processEvents();
    QWidget *target = QApplication::focusWidget();
    if (!target)
        return;
    if (auto *edit = qobject_cast<QLineEdit *>(target))
        edit->selectAll();
    if (text.isEmpty())
        QTest::keyClick(target, Qt::Key_Delete);
    else
        for (const QChar c : text) {
            // keyClicks() asserts on anything outside ASCII; such a key carries its text only.
            if (c.unicode() < 0x80)
                QTest::keyClick(target, c.toLatin1());
            else
                QTest::sendKeyEvent(QTest::Click, target, Qt::Key_unknown, QString(c), Qt::NoModifier);
        }
}

void RandomUser::tab()
{
    if (QWidget *target = QApplication::focusWidget())
        QTest::keyClick(target, Qt::Key_Tab);
}

QString RandomUser::valueFor(QWidget *field, bool valid)
{
    auto *box = qobject_cast<TextBox *>(field);
    const FieldKind kind = box ? box->kind() : FieldKind::Text;
    QRandomGenerator &r = m_random;
    if (!valid) {
        // Texts made of allowed characters that still do not read as a value of any kind.
        static const QStringList junk = {QStringLiteral("1.2.3"), QStringLiteral("--5"), QStringLiteral("-"),
                                         QStringLiteral("31-02-2023"), QStringLiteral("12.34"),
                                         QStringLiteral("1,2,3"), QStringLiteral("99-99-9999"),
                                         QStringLiteral("1-1-20"), QStringLiteral(","), QStringLiteral("abc"),
                                         QStringLiteral("5-"), QStringLiteral("")};
        return junk.at(int(r.bounded(junk.size())));
    }
    switch (kind) {
    case FieldKind::Amount:
        switch (r.bounded(4)) {
        case 0: return VandrelControl::Format::amount(double(r.bounded(200000)));
        case 1: return QString::number(r.bounded(5000));
        case 2: return QStringLiteral("-") + QString::number(r.bounded(1000));
        default: return QString::number(r.bounded(100000000));
        }
    case FieldKind::Percentage:
    case FieldKind::Factor:
        switch (r.bounded(3)) {
        case 0: return VandrelControl::Format::decimal(r.bounded(10000) / 100.0, 2);
        case 1: return QString::number(r.bounded(150));
        default: return QStringLiteral("1.875");
        }
    case FieldKind::Date: {
        const QDate d = QDate(1940, 1, 1).addDays(r.bounded(45000));
        return r.bounded(2) ? VandrelControl::Format::date(d) : d.toString(QStringLiteral("ddMMyyyy"));
    }
    case FieldKind::WholeNumber:
        return QString::number(int(r.bounded(120)) - 5);
    case FieldKind::Text:
        break;
    }
    static const QStringList words = {QStringLiteral("ABP"), QStringLiteral("PFZW"), QStringLiteral("Nationale-Nederlanden"),
                                      QStringLiteral("Zorg & Welzijn"), QStringLiteral("Metaal"), QStringLiteral("X"),
                                      QStringLiteral("é ü ß"), QStringLiteral("Een hele lange naam van een uitvoerder B.V.")};
    return words.at(int(r.bounded(words.size())));
}

QString RandomUser::act(QWidget *window)
{
    m_messages.setDefaultQuestionAnswer(m_random.bounded(2) ? TestSupport::MessageBox::Answer::Yes
                                                            : TestSupport::MessageBox::Answer::No);
    // A popup menu (the "new scheme" menu) takes every input while it is open.
    if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
        const auto actions = menu->actions();
        if (!actions.isEmpty() && m_random.bounded(3) > 0) {
            QAction *a = actions.at(int(m_random.bounded(actions.size())));
            menu->close();
            if (a->isEnabled())
                a->trigger();
            return QStringLiteral("menu ") + a->text();
        }
        menu->close();
        return QStringLiteral("menu closed");
    }

    const int pick = int(m_random.bounded(100));
    if (pick < 45) {
        auto fields = usableChildren<QLineEdit>(window);
        fields.removeIf([](QLineEdit *e) { return e->isReadOnly(); });
        if (fields.isEmpty())
            return QString();
        QLineEdit *field = fields.at(int(m_random.bounded(fields.size())));
        const bool valid = m_random.bounded(100) < 80;
        const QString text = valueFor(field, valid);
        typeText(field, text);
        if (m_random.bounded(100) < 85)
            tab();
        return QStringLiteral("type \"%1\" into %2").arg(text, nameOf(field));
    }
    if (pick < 52) {
        tab();
        return QStringLiteral("tab");
    }
    if (pick < 64) {
        const auto boxes = usableChildren<QCheckBox>(window);
        if (boxes.isEmpty())
            return QString();
        QCheckBox *box = boxes.at(int(m_random.bounded(boxes.size())));
        TestSupport::click(box);
        return QStringLiteral("click %1").arg(nameOf(box));
    }
    if (pick < 72) {
        const auto options = usableChildren<QRadioButton>(window);
        if (options.isEmpty())
            return QString();
        QRadioButton *option = options.at(int(m_random.bounded(options.size())));
        TestSupport::click(option);
        return QStringLiteral("click %1").arg(nameOf(option));
    }
    if (pick < 82) {
        const auto lists = usableChildren<QTreeWidget>(window);
        if (lists.isEmpty())
            return QString();
        QTreeWidget *list = lists.at(int(m_random.bounded(lists.size())));
        if (list->topLevelItemCount() == 0)
            return QString();
        QTreeWidgetItem *row = list->topLevelItem(int(m_random.bounded(list->topLevelItemCount())));
        list->scrollToItem(row);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualItemRect(row).center());
        return QStringLiteral("click row %1 of %2").arg(list->indexOfTopLevelItem(row)).arg(nameOf(list));
    }
    if (pick < 88) {
        const auto combos = usableChildren<QComboBox>(window);
        if (combos.isEmpty())
            return QString();
        QComboBox *combo = combos.at(int(m_random.bounded(combos.size())));
        combo->setFocus(Qt::MouseFocusReason);
        QApplication::processEvents();
        if (QApplication::focusWidget() == combo)
            QTest::keyClick(combo, m_random.bounded(2) ? Qt::Key_Down : Qt::Key_Up);
        return QStringLiteral("step %1").arg(nameOf(combo));
    }
    auto buttons = usableChildren<QPushButton>(window);
    buttons.removeIf([this](QPushButton *b) { return m_avoided.contains(b->objectName()); });
    if (buttons.isEmpty())
        return QString();
    QPushButton *button = buttons.at(int(m_random.bounded(buttons.size())));
    const QString what = QStringLiteral("click %1").arg(nameOf(button));
    TestSupport::click(button);
    return what;
}

DialogDriver::DialogDriver(Action action, int actions)
    : m_action(std::move(action))
    , m_actions(actions)
{
    arm();
}

DialogDriver::~DialogDriver()
{
    m_stopped = true;
}

QStringList DialogDriver::dialogNames() const
{
    QStringList names(m_seen.begin(), m_seen.end());
    names.sort();
    return names;
}

void DialogDriver::arm()
{
    if (!m_stopped)
        QTimer::singleShot(1, this, [this] { tick(); });
}

void DialogDriver::tick()
{
    // The successor first: if this action opens another dialog, that one is served from its loop.
    arm();
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (!dialog || !dialog->isVisible())
        return;
    m_seen.insert(dialog->objectName());
    const int done = dialog->property("robustnessActions").toInt();
    dialog->setProperty("robustnessActions", done + 1);
    if (done < m_actions && m_action) {
        m_action(dialog);
        return;
    }
    // The close box; a dialog that refuses it (it should not) is ended after a while.
    if (done < m_actions + 20)
        dialog->close();
    else
        dialog->reject();
}

} // namespace Robustness
