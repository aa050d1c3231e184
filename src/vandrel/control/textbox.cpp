// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "textbox.h"

#include "actionbutton.h"
#include "messagebox.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QScopedValueRollback>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QTimer>
#include <QValidator>

namespace VandrelControl {

namespace {

// Refuses only characters that can never be part of a value of the kind; whether the whole text
// reads is decided when the user leaves, so half-typed text ("12.", "1-") stays possible.
class CharacterFilter : public QValidator
{
public:
    CharacterFilter(FieldKind kind, QObject *parent)
        : QValidator(parent)
        , m_kind(kind)
    {
    }

    State validate(QString &input, int &) const override
    {
        for (const QChar c : std::as_const(input)) {
            if (!Parse::allowedCharacter(m_kind, c))
                return Invalid;
        }
        return Acceptable;
    }

private:
    FieldKind m_kind;
};

// When a click on another control is refused because the field kept the focus, that click must
// not act either (a button would otherwise run with the rejected value still in the field).
// Eats the mouse press being delivered and its release, then removes itself.
class ClickSwallower : public QObject
{
public:
    static void start()
    {
        auto *swallower = new ClickSwallower;
        qApp->installEventFilter(swallower);
        // No press follows when the focus moved by a mouse click on something that took no
        // press (rare); then stop at the next turn of the event loop.
        QTimer::singleShot(0, swallower, [swallower] {
            if (!swallower->m_pressEaten)
                swallower->finish();
        });
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (m_done || !watched->isWidgetType())
            return false;
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            m_pressEaten = true;
            return true;
        case QEvent::MouseButtonRelease:
            if (m_pressEaten) {
                finish();
                return true;
            }
            return false;
        default:
            return false;
        }
    }

private:
    void finish()
    {
        if (m_done)
            return;
        m_done = true;
        qApp->removeEventFilter(this);
        deleteLater();
    }

    bool m_pressEaten = false;
    bool m_done = false;
};

bool isNumeric(FieldKind kind)
{
    return kind == FieldKind::Amount || kind == FieldKind::Percentage || kind == FieldKind::Factor
           || kind == FieldKind::WholeNumber;
}

} // namespace

class TextBox::Private
{
public:
    enum class Outcome { Passed, Cancelled, Unreadable };

    explicit Private(TextBox *q)
        : q(q)
    {
    }

    TextBox *q;
    FieldKind kind = FieldKind::Text;
    int decimals = 3;
    bool causesValidation = true;
    // The exact value code set and the text it was shown as: valid while that text is untouched.
    bool hasCodeValue = false;
    double codeValue = 0.0;
    bool hasCodeDate = false;
    QDate codeDate;
    QString codeText;
    bool userEdited = false;
    bool focused = false;
    bool checking = false;
    int codeSets = 0;
    CharacterFilter *filter = nullptr;

    QString formatted(double v) const
    {
        switch (kind) {
        case FieldKind::Amount:
            return Format::amount(v);
        case FieldKind::Percentage:
        case FieldKind::Factor:
            return Format::decimal(v, decimals);
        case FieldKind::WholeNumber:
            return Format::whole(v);
        case FieldKind::Date:
        case FieldKind::Text:
            break;
        }
        return Format::general(v);
    }

    std::optional<double> parsed(const QString &text) const
    {
        switch (kind) {
        case FieldKind::Amount:
            return Parse::amount(text);
        case FieldKind::Percentage:
        case FieldKind::Factor:
            return Parse::percentage(text);
        case FieldKind::WholeNumber:
            if (const auto w = Parse::wholeNumber(text))
                return double(*w);
            return std::nullopt;
        case FieldKind::Date:
            return Parse::date(text) ? std::optional<double>(0.0) : std::nullopt;
        case FieldKind::Text:
            break;
        }
        if (const auto a = Parse::amount(text))
            return a;
        return Parse::percentage(text);
    }

    bool readable() const
    {
        if (kind == FieldKind::Text)
            return true;
        if (kind == FieldKind::Date)
            return Parse::date(q->text()).has_value();
        return parsed(q->text()).has_value();
    }

    void installFilter()
    {
        if (kind == FieldKind::Text) {
            q->setValidator(nullptr);
            delete filter;
            filter = nullptr;
            return;
        }
        auto *next = new CharacterFilter(kind, q);
        q->setValidator(next);
        delete filter;
        filter = next;
    }

    // A date field always needs room for "00-00-0000". Forms give their fields fixed widths for
    // the standard font; with a larger font a date would be cut off, so the field widens itself
    // (never narrows) until the whole date fits.
    void fitDateWidth()
    {
        if (kind != FieldKind::Date)
            return;
        QStyleOptionFrame option;
        q->initStyleOption(&option);
        const QFontMetrics metrics = q->fontMetrics();
        const QMargins margins = q->textMargins();
        // The line edit's own inner margin (2 px a side) and the cursor's pixel.
        const int text = metrics.horizontalAdvance(QStringLiteral("00-00-0000")) + margins.left()
                         + margins.right() + 2 * 2 + 1;
        const int needed = q->style()
                               ->sizeFromContents(QStyle::CT_LineEdit, &option,
                                                  QSize(text, metrics.height()), q)
                               .width();
        if (q->maximumWidth() < needed)
            q->setMaximumWidth(needed);
        if (q->minimumWidth() > 0 && q->minimumWidth() < needed)
            q->setMinimumWidth(needed);
        if (q->width() < needed && (!q->parentWidget() || !q->parentWidget()->layout()))
            q->resize(needed, q->height());
    }

    void showCode(const QString &text)
    {
        ++codeSets;
        codeText = text;
        userEdited = false;
        // Loading another scheme sets most fields to the text they already show; laying that
        // text out again is the biggest part of a load. What setText would still change is done
        // by hand; a field with edits to undo gets the full setText, which also forgets them.
        if (q->text() == text && !q->isUndoAvailable() && !q->isRedoAvailable()) {
            q->deselect();
            q->setCursorPosition(int(text.size()));
            q->setModified(false);
            return;
        }
        q->setText(text);
    }

    // After a passed check the typed text is shown in the field's own format ("12345" becomes
    // "12.345"); the value stays exactly what was typed.
    void normalizeTypedText()
    {
        if (!userEdited || kind == FieldKind::Text || q->text().trimmed().isEmpty())
            return;
        if (kind == FieldKind::Date) {
            if (const auto d = Parse::date(q->text()))
                q->setDate(*d);
            return;
        }
        if (const auto v = parsed(q->text()))
            q->setValue(*v);
    }

    // The check that runs when the user leaves the field (Tab, Shift+Tab, click elsewhere, Enter).
    Outcome check()
    {
        const QScopedValueRollback<bool> guard(checking, true);
        if (!readable()) {
            MessageBox::ok(q, Parse::expectation(kind), QStringLiteral("Ongeldige invoer"));
            return Outcome::Unreadable;
        }
        bool cancel = false;
        const QString before = q->text();
        const int setsBefore = codeSets;
        Q_EMIT q->Validate(cancel);
        if (cancel)
            return Outcome::Cancelled;
        // A handler that wrote the field itself has the last word, even with the same text.
        if (q->text() == before && codeSets == setsBefore)
            normalizeTypedText();
        return Outcome::Passed;
    }
};

TextBox::TextBox(QWidget *parent)
    : QLineEdit(parent)
    , d(std::make_unique<Private>(this))
{
    connect(this, &QLineEdit::textEdited, this, [this] {
        d->userEdited = true;
        d->hasCodeValue = false;
        d->hasCodeDate = false;
    });
}

TextBox::~TextBox() = default;

FieldKind TextBox::kind() const
{
    return d->kind;
}

void TextBox::setKind(FieldKind kind)
{
    if (d->kind == kind)
        return;
    d->kind = kind;
    d->installFilter();
    d->fitDateWidth();
    if (d->hasCodeValue && text() == d->codeText)
        setValue(d->codeValue);
    else if (d->hasCodeDate && text() == d->codeText)
        setDate(d->codeDate);
}

int TextBox::decimals() const
{
    return d->decimals;
}

void TextBox::setDecimals(int decimals)
{
    decimals = std::clamp(decimals, 0, 15);
    if (d->decimals == decimals)
        return;
    d->decimals = decimals;
    if (d->hasCodeValue && text() == d->codeText)
        setValue(d->codeValue);
}

bool TextBox::causesValidation() const
{
    return d->causesValidation;
}

void TextBox::setCausesValidation(bool on)
{
    d->causesValidation = on;
}

double TextBox::value() const
{
    if (d->hasCodeValue && text() == d->codeText)
        return d->codeValue;
    if (d->kind == FieldKind::Date)
        return 0.0;
    return d->parsed(text()).value_or(0.0);
}

void TextBox::setValue(double value)
{
    d->hasCodeDate = false;
    d->hasCodeValue = true;
    d->codeValue = value;
    d->showCode(d->formatted(value));
}

QDate TextBox::date() const
{
    if (d->hasCodeDate && text() == d->codeText)
        return d->codeDate;
    return Parse::date(text()).value_or(QDate());
}

void TextBox::setDate(const QDate &value)
{
    d->hasCodeValue = false;
    d->hasCodeDate = true;
    d->codeDate = value;
    d->showCode(Format::date(value));
}

bool TextBox::isEmpty() const
{
    return text().trimmed().isEmpty();
}

bool TextBox::isReadable() const
{
    return d->readable();
}

void TextBox::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        // Enter checks the field but moves nothing, as it always did; only a passed check lets
        // the key go on to the line edit (and so to a dialog's default button).
        if (d->causesValidation && !d->checking) {
            if (d->check() != Private::Outcome::Passed) {
                selectAll();
                event->accept();
                return;
            }
        }
        QLineEdit::keyPressEvent(event);
        return;
    }

    // The keypad's decimal key types whatever the keyboard layout says; in a number the Dutch
    // separator is meant, in a date the date separator.
    const bool keypadDecimal = (event->modifiers() & Qt::KeypadModifier)
                               && (key == Qt::Key_Period || key == Qt::Key_Comma
                                   || (key == Qt::Key_Delete
                                       && (event->text() == QLatin1String(".")
                                           || event->text() == QLatin1String(","))));
    if (keypadDecimal && d->kind != FieldKind::Text) {
        if (d->kind == FieldKind::Date)
            insert(QStringLiteral("-"));
        else if (isNumeric(d->kind) && d->kind != FieldKind::WholeNumber)
            insert(QStringLiteral(","));
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void TextBox::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        d->fitDateWidth();
}

bool TextBox::event(QEvent *event)
{
    // Polish comes after the form has given the field its designed width, which is what is checked.
    if (event->type() == QEvent::Polish)
        d->fitDateWidth();
    return QLineEdit::event(event);
}

void TextBox::focusInEvent(QFocusEvent *event)
{
    d->focused = true;
    QLineEdit::focusInEvent(event);
}

void TextBox::focusOutEvent(QFocusEvent *event)
{
    // Only a field that really had the focus checks on leaving: when a cancelled check pulls the
    // focus back, the field the user was heading for gets a focus-out without ever having had it.
    const bool hadFocus = std::exchange(d->focused, false);
    QLineEdit::focusOutEvent(event);
    if (!hadFocus || d->checking || !d->causesValidation)
        return;
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::MouseFocusReason:
    case Qt::OtherFocusReason:
    case Qt::ShortcutFocusReason:
        break;
    default:
        // Another window (a message box among them) taking the focus is not leaving the field.
        return;
    }
    // Focus going nowhere is a window closing or hiding the field, not the user moving on.
    QWidget *target = QApplication::focusWidget();
    if (!target || !isVisible())
        return;
    if (auto *button = qobject_cast<ActionButton *>(target); button && !button->causesValidation())
        return;

    if (d->check() == Private::Outcome::Passed)
        return;
    QWidget *now = QApplication::focusWidget();
    if (now && now != target && now != this)
        return; // the check itself put the focus on the field concerned
    if (event->reason() == Qt::MouseFocusReason)
        ClickSwallower::start();
    setFocus(Qt::OtherFocusReason);
    selectAll();
}

} // namespace VandrelControl
