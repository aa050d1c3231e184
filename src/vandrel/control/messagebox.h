#pragma once

#include "vandrelcontrol_export.h"

#include <QString>

#include <functional>

class QWidget;

namespace VandrelControl {

// The one way the library shows a message or asks a question. Without a responder it shows a real
// QMessageBox with Dutch button texts; a host or a test installs a responder to answer instead.
class VANDRELCONTROL_EXPORT MessageBox
{
public:
    enum class Icon { None, Information, Exclamation, Critical, Question };
    enum class Buttons { Ok, YesNo };
    enum class Answer { Ok, Yes, No };

    struct Request
    {
        QString title;
        QString text;
        Icon icon = Icon::Exclamation;
        Buttons buttons = Buttons::Ok;
    };
    using Responder = std::function<Answer(const Request &)>;

    // An empty responder restores the real message box.
    static void setResponder(Responder responder);
    static bool hasResponder();

    static Answer show(QWidget *parent, const Request &request);
    // OK-only box; the icon is the exclamation unless told otherwise.
    static void ok(QWidget *parent, const QString &text, const QString &title,
                   Icon icon = Icon::Exclamation);
    // Yes/No question; true when the user answers Yes.
    static bool yesNo(QWidget *parent, const QString &text, const QString &title,
                      Icon icon = Icon::Question);

    // Installs a responder for the lifetime of the object and puts the previous one back after.
    class VANDRELCONTROL_EXPORT ScopedResponder
    {
    public:
        explicit ScopedResponder(Responder responder);
        ~ScopedResponder();
        ScopedResponder(const ScopedResponder &) = delete;
        ScopedResponder &operator=(const ScopedResponder &) = delete;

    private:
        Responder m_previous;
    };
};

} // namespace VandrelControl
