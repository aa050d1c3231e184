// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vandrelapplication_export.h"

#include <QString>

#include <exception>
#include <string>

namespace VandrelApplication {

/// What a host operation throws when it cannot do what was asked. The library's error trap turns it
/// into an ErrorRecord; nothing else inspects it.
class VANDRELAPPLICATION_EXPORT HostError : public std::exception
{
public:
    /// An error with the host's number, a Dutch description for the user and where it arose.
    HostError(qint32 number, QString description, QString source = QStringLiteral("VandrelApplication"));

    qint32 number() const noexcept { return m_number; }                       ///< The error number (HostErrorCode or the host's own).
    const QString &description() const noexcept { return m_description; }    ///< Dutch text for the user.
    const QString &source() const noexcept { return m_source; }               ///< Where the error arose.
    const char *what() const noexcept override { return m_what.c_str(); }    ///< The description as UTF-8.

private:
    qint32 m_number;
    QString m_description;
    QString m_source;
    std::string m_what;
};

/// Error numbers the reference host uses; a host may use its own.
namespace HostErrorCode {
inline constexpr qint32 NotFound = 1001;       ///< an object that no longer exists
inline constexpr qint32 OutOfRange = 1002;     ///< an index or value the host cannot hold
inline constexpr qint32 StoreFailed = 1003;    ///< the case file refused a write
inline constexpr qint32 InvalidState = 1004;   ///< an operation not allowed now
}

} // namespace VandrelApplication
