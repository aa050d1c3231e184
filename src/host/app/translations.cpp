// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace Zarnoveld {

bool installDutchTranslations(QCoreApplication *app)
{
    auto *translator = new QTranslator(app);
    // "qt" is Qt's meta catalogue: loading it loads qtbase and the other modules' catalogues.
    if (!translator->load(QLocale(QLocale::Dutch, QLocale::Netherlands), QStringLiteral("qt"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete translator;
        return false;
    }
    return QCoreApplication::installTranslator(translator);
}

} // namespace Zarnoveld
