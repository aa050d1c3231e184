// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "hosterror.h"

namespace VandrelApplication {

HostError::HostError(qint32 number, QString description, QString source)
    : m_number(number)
    , m_description(std::move(description))
    , m_source(std::move(source))
    , m_what(m_description.toStdString())
{
}

} // namespace VandrelApplication
