// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "usersettings.h"

#include "caseaddress.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace Zarnoveld::UserSettings {

namespace {

const QString kRecent = QStringLiteral("dossiers/recent");

} // namespace

QString fileName()
{
    return QSettings().fileName();
}

QVariant value(const QString &key, const QVariant &defaultValue)
{
    return QSettings().value(key, defaultValue);
}

bool setValue(const QString &key, const QVariant &value)
{
    QSettings settings;
    // The folder first and private: the file QSettings writes into it is then never readable by
    // others, not even between its creation and the permission change below.
    const QString folder = QFileInfo(settings.fileName()).absolutePath();
    if (!QDir().mkpath(folder))
        return false;
    QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    settings.setValue(key, value);
    // QSettings writes through a temporary file that replaces the old one only when complete.
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return false;
    return QFile::setPermissions(settings.fileName(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

QStringList recentCases()
{
    QStringList existing;
    // A case file that is gone is left out; a case on a server is kept (whether it is still there
    // is known only by asking the server, which opening it does).
    for (const QString &path : value(kRecent).toStringList())
        if ((CaseAddress::isServer(path) || QFileInfo(path).isFile()) && !existing.contains(path))
            existing.append(path);
    return existing.mid(0, MaxRecent);
}

bool addRecentCase(const QString &path)
{
    if (path.isEmpty())
        return true;
    const QString absolute = CaseAddress::isServer(path) ? path : QFileInfo(path).absoluteFilePath();
    QStringList list = recentCases();
    list.removeAll(absolute);
    list.prepend(absolute);
    return setValue(kRecent, list.mid(0, MaxRecent));
}

} // namespace Zarnoveld::UserSettings
