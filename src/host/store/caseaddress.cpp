// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "caseaddress.h"

#include "hosterror.h"

#include <QUrl>
#include <QUrlQuery>

namespace Zarnoveld::CaseAddress {

using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

namespace {

[[noreturn]] void refuse(const QString &text)
{
    throw HostError(Code::InvalidState, text, QStringLiteral("Zarnoveld"));
}

// The libpq options an office may need in its address (encryption, certificates, a time limit,
// a socket folder). Anything else is refused rather than passed on unread.
bool knownOption(const QString &key)
{
    static const QStringList known{
        QStringLiteral("sslmode"), QStringLiteral("sslrootcert"), QStringLiteral("sslcert"),
        QStringLiteral("sslkey"), QStringLiteral("connect_timeout"), QStringLiteral("host"),
        QStringLiteral("application_name"), QStringLiteral("target_session_attrs"),
    };
    return known.contains(key);
}

} // namespace

QString Server::display() const
{
    return QStringLiteral("%1 op %2:%3").arg(database, host.isEmpty() ? QStringLiteral("lokale server") : host).arg(port);
}

bool isServer(const QString &address)
{
    return address.startsWith(QStringLiteral("postgresql://"), Qt::CaseInsensitive)
        || address.startsWith(QStringLiteral("postgres://"), Qt::CaseInsensitive);
}

Server parse(const QString &address)
{
    const QUrl url(address, QUrl::StrictMode);
    if (!isServer(address) || !url.isValid())
        refuse(QStringLiteral("Het adres van de database is niet bruikbaar. Gebruik de vorm "
                              "postgresql://gebruiker@server:poort/database."));
    if (!url.password().isEmpty())
        refuse(QStringLiteral("Zet geen wachtwoord in het adres van de database: het zou te zien zijn in de "
                              "proceslijst en in logbestanden. Geef het via PGPASSWORD of ~/.pgpass."));
    Server server;
    server.host = url.host();
    server.port = url.port(5432);
    server.user = url.userName();
    server.database = url.path().mid(1);
    if (server.database.isEmpty() || server.database.contains(QLatin1Char('/')))
        refuse(QStringLiteral("Het adres van de database noemt geen database: postgresql://gebruiker@server:poort/database."));
    QStringList options;
    const QUrlQuery query(url);
    for (const auto &[key, value] : query.queryItems(QUrl::FullyDecoded)) {
        if (key == QStringLiteral("password"))
            refuse(QStringLiteral("Zet geen wachtwoord in het adres van de database: het zou te zien zijn in de "
                                  "proceslijst en in logbestanden. Geef het via PGPASSWORD of ~/.pgpass."));
        if (!knownOption(key))
            refuse(QStringLiteral("De optie %1 in het adres van de database wordt niet ondersteund.").arg(key));
        if (value.contains(QLatin1Char(';')) || value.contains(QLatin1Char(' ')) || value.contains(QLatin1Char('\'')))
            refuse(QStringLiteral("De optie %1 in het adres van de database heeft een ongeldige waarde.").arg(key));
        if (key == QStringLiteral("host"))
            server.host = value;
        else
            options << key + QLatin1Char('=') + value;
    }
    server.options = options.join(QLatin1Char(';'));
    server.caseName = url.fragment(QUrl::FullyDecoded);
    return server;
}

QString ofCase(const QString &databaseUrl, const QString &name)
{
    QUrl url(databaseUrl, QUrl::StrictMode);
    parse(databaseUrl);
    if (name.trimmed().isEmpty())
        refuse(QStringLiteral("Geef het dossier een naam."));
    if (name.size() > MaxNameLength)
        refuse(QStringLiteral("De naam van het dossier is te lang (%1 tekens, ten hoogste %2).").arg(name.size()).arg(MaxNameLength));
    for (const QChar c : name)
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            refuse(QStringLiteral("De naam van het dossier bevat een teken dat niet kan worden getypt."));
    url.setFragment(name, QUrl::DecodedMode);
    return url.toString(QUrl::FullyEncoded);
}

} // namespace Zarnoveld::CaseAddress
