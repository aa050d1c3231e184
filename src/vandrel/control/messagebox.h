// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vandrelcontrol_export.h"

#include <QString>

#include <functional>

class QWidget;

namespace VandrelControl {

/// The one way the library shows a message or asks a question. Without a responder it shows a real
/// QMessageBox with Dutch button texts; a host or a test installs a responder to answer instead.
class VANDRELCONTROL_EXPORT MessageBox
{
public:
    /// The icon of the box.
    enum class Icon {
        None,         ///< no icon
        Information,  ///< information
        Exclamation,  ///< warning
        Critical,     ///< error
        Question      ///< question
    };
    /// The buttons of the box, with Dutch texts.
    enum class Buttons {
        Ok,    ///< "OK"
        YesNo  ///< "Ja" and "Nee"
    };
    /// The button the user pressed.
    enum class Answer {
        Ok,   ///< "OK"
        Yes,  ///< "Ja"
        No    ///< "Nee"
    };

    /// One message or question as the library asks it.
    struct Request
    {
        QString title;                  ///< window title
        QString text;                   ///< the message, Dutch
        Icon icon = Icon::Exclamation;  ///< the icon
        Buttons buttons = Buttons::Ok;  ///< the buttons offered
    };
    /// Answers a request instead of a real box; must return one of the offered buttons.
    using Responder = std::function<Answer(const Request &)>;

    /// An empty responder restores the real message box.
    static void setResponder(Responder responder);
    static bool hasResponder();  ///< Whether a responder is installed.

    /// Asks the responder, or shows a real box over parent and waits for the user.
    static Answer show(QWidget *parent, const Request &request);
    /// OK-only box; the icon is the exclamation unless told otherwise.
    static void ok(QWidget *parent, const QString &text, const QString &title,
                   Icon icon = Icon::Exclamation);
    /// Yes/No question; true when the user answers Yes.
    static bool yesNo(QWidget *parent, const QString &text, const QString &title,
                      Icon icon = Icon::Question);

    /// Installs a responder for the lifetime of the object and puts the previous one back after.
    class VANDRELCONTROL_EXPORT ScopedResponder
    {
    public:
        explicit ScopedResponder(Responder responder);  ///< Installs responder.
        ~ScopedResponder();  ///< Puts the previous responder back.
        ScopedResponder(const ScopedResponder &) = delete;
        ScopedResponder &operator=(const ScopedResponder &) = delete;

    private:
        Responder m_previous;
    };
};

} // namespace VandrelControl
