// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file componentloader.h
/// Host side of registration: finds a registered class in the per-user component registry, loads
/// its library and creates the control through the library's class factory. A host links this
/// small library, never VandrelPensioen itself.

#include <QString>

class QWidget;

namespace VandrelPensioen::ComponentLoader {

/// What the registry holds for one registered class.
struct Registered
{
    QString classId;       ///< "{...}", the class identity
    QString progId;        ///< "VandrelPensioen.PensMain"
    QString library;       ///< absolute path of the library
    QString typeLibrary;   ///< the type description, "VandrelPensioen"
};

/// The registry record of progId; false (with a Dutch reason in error) when it is not registered.
bool lookup(const QString &progId, Registered *record, QString *error);
/// Loads library and calls its DllRegisterServer / DllUnregisterServer.
bool registerLibrary(const QString &library, QString *error);
bool unregisterLibrary(const QString &library, QString *error);  ///< See registerLibrary().
/// Creates the registered control with the given parent; nullptr with a Dutch reason in error.
QWidget *create(const QString &progId, QWidget *parent, QString *error);
/// Asks the registered library whether it may be unloaded (DllCanUnloadNow == S_OK).
bool canUnload(const QString &progId);

} // namespace VandrelPensioen::ComponentLoader
