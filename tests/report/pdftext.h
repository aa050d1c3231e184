// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Reading a PDF back as a person would read the paper: the text of all or one page
// (pdftotext -layout) and the page count (pdfinfo), both from poppler-utils.

#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace PdfText {

inline QString run(const QString &program, const QStringList &arguments, bool *ok = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    const bool finished = process.waitForFinished(60000);
    if (ok)
        *ok = finished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return QString::fromUtf8(process.readAllStandardOutput());
}

// The whole document; page N only when page > 0. Empty when pdftotext fails.
inline QString text(const QString &pdf, int page = 0)
{
    QStringList arguments{QStringLiteral("-layout"), QStringLiteral("-enc"), QStringLiteral("UTF-8")};
    if (page > 0)
        arguments << QStringLiteral("-f") << QString::number(page) << QStringLiteral("-l") << QString::number(page);
    arguments << pdf << QStringLiteral("-");
    bool ok = false;
    const QString out = run(QStringLiteral("pdftotext"), arguments, &ok);
    return ok ? out : QString();
}

// -1 when pdfinfo cannot read the file.
inline int pageCount(const QString &pdf)
{
    bool ok = false;
    const QString info = run(QStringLiteral("pdfinfo"), {pdf}, &ok);
    const QRegularExpressionMatch m = QRegularExpression(QStringLiteral("^Pages:\\s+(\\d+)"),
                                                         QRegularExpression::MultilineOption).match(info);
    return ok && m.hasMatch() ? m.captured(1).toInt() : -1;
}

inline QString pageSize(const QString &pdf)
{
    const QString info = run(QStringLiteral("pdfinfo"), {pdf});
    const QRegularExpressionMatch m = QRegularExpression(QStringLiteral("^Page size:\\s+(.*)$"),
                                                         QRegularExpression::MultilineOption).match(info);
    return m.captured(1).trimmed();
}

// Runs of spaces collapse to one: a table's columns are far apart in the layout text.
inline QString squeezed(const QString &text)
{
    return QString(text).replace(QRegularExpression(QStringLiteral("[ \\t]+")), QStringLiteral(" "));
}

} // namespace PdfText
