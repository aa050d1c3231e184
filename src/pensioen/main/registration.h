// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file registration.h
/// The library's component identity and its four entry points. A host finds the library through
/// the per-user component registry and creates PensMain through the class factory.

#include "vandrelpensioen_export.h"

#include <QDir>
#include <QString>

class QWidget;

namespace VandrelPensioen::Registration {

inline constexpr const char *ProgId = "VandrelPensioen.PensMain";  ///< The name a host creates the screen by.
inline constexpr const char *TypeLibraryDescription = "VandrelPensioen";  ///< The type description the registry records.
inline constexpr const char *ClassId = "{6E0B7B52-3C1D-4F0A-9B52-5A8C2D7E4F10}";  ///< Identity of the PensMain class.
inline constexpr const char *InterfaceId = "{6E0B7B53-3C1D-4F0A-9B52-5A8C2D7E4F10}";  ///< Identity of PensMain's interface.
inline constexpr const char *EventInterfaceId = "{6E0B7B54-3C1D-4F0A-9B52-5A8C2D7E4F10}";  ///< Identity of PensMain's event interface.
/// The class factory's own interface (the standard one of in-process component libraries).
inline constexpr const char *ClassFactoryId = "{00000001-0000-0000-C000-000000000046}";

// Result codes of the entry points.
inline constexpr long S_OK = 0;  ///< Success.
inline constexpr long S_FALSE = 1;  ///< Success, answer "no".
inline constexpr long E_FAIL = static_cast<long>(0x80004005L);  ///< Failure.
inline constexpr long CLASS_E_CLASSNOTAVAILABLE = static_cast<long>(0x80040111L);  ///< The class is not in this library.
inline constexpr long E_NOINTERFACE = static_cast<long>(0x80004002L);  ///< The interface is not offered.
inline constexpr long E_POINTER = static_cast<long>(0x80004003L);  ///< A null pointer where one was needed.

/// The per-user registry folder: $VANDREL_COMPONENT_REGISTRY, else $XDG_DATA_HOME/vandrel/components.
/// Inline, so that a host finds the registry without linking the library.
inline QString registryFolder()
{
    const QString overridden = qEnvironmentVariable("VANDREL_COMPONENT_REGISTRY");
    if (!overridden.isEmpty())
        return overridden;
    QString data = qEnvironmentVariable("XDG_DATA_HOME");
    if (data.isEmpty())
        data = QDir::homePath() + QStringLiteral("/.local/share");
    return data + QStringLiteral("/vandrel/components");
}

/// What DllGetClassObject hands out.
class VANDRELPENSIOEN_EXPORT ClassFactory
{
public:
    /// Defined inline so that a host that only includes this header has the type information too.
    virtual ~ClassFactory() = default;
    virtual QWidget *CreateInstance(QWidget *parent) = 0;  ///< A new PensMain with that parent.
    virtual void LockServer(bool lock) = 0;  ///< While locked, DllCanUnloadNow() answers S_FALSE.
};

} // namespace VandrelPensioen::Registration

extern "C" {
/// Records the library in the per-user registry; S_OK or E_FAIL.
VANDRELPENSIOEN_EXPORT long DllRegisterServer();
/// Removes the library's records from the registry; S_OK or E_FAIL.
VANDRELPENSIOEN_EXPORT long DllUnregisterServer();
/// Hands out the class factory of classId through factory when interfaceId is the factory's.
VANDRELPENSIOEN_EXPORT long DllGetClassObject(const char *classId, const char *interfaceId,
                                              void **factory);
/// S_OK when no screen is alive and the server is not locked, else S_FALSE.
VANDRELPENSIOEN_EXPORT long DllCanUnloadNow();
}
