// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "safefile.h"

#include "hosterror.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Zarnoveld {

using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

namespace {

[[noreturn]] void fail(const QString &text)
{
    throw HostError(Code::StoreFailed, text, QStringLiteral("Zarnoveld"));
}

QByteArray native(const QString &path)
{
    return QFile::encodeName(path);
}

// Closes a descriptor and removes the temporary file unless it was handed over.
struct TempFile
{
    int fd = -1;
    QByteArray path;
    bool keep = false;
    ~TempFile()
    {
        if (fd >= 0)
            ::close(fd);
        if (!keep && !path.isEmpty())
            ::unlink(path.constData());
    }
};

} // namespace

QString SafeFile::reason(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return QStringLiteral("de schijf is vol");
    case EFBIG:
        return QStringLiteral("het bestand wordt groter dan is toegestaan");
    case EACCES:
    case EPERM:
        return QStringLiteral("geen toestemming");
    case EROFS:
        return QStringLiteral("de schijf is alleen-lezen");
    case ENOENT:
        return QStringLiteral("de map bestaat niet");
    case EIO:
        return QStringLiteral("leesfout of schrijffout op de schijf");
    default:
        return QString::fromLocal8Bit(std::strerror(error));
    }
}

void SafeFile::write(const QString &path, const QByteArray &data, Existing existing, unsigned mode)
{
    const QString shown = QDir::toNativeSeparators(path);
    const QByteArray target = native(path);
    struct stat st {};
    if (::lstat(target.constData(), &st) == 0) {
        if (S_ISLNK(st.st_mode))
            fail(QStringLiteral("%1 is een snelkoppeling (symbolische link); Zarnoveld schrijft niet via een "
                                "snelkoppeling. Kies het bestand zelf of een andere naam.").arg(shown));
        if (!S_ISREG(st.st_mode))
            fail(QStringLiteral("%1 is geen gewoon bestand en wordt niet overschreven.").arg(shown));
        if (existing == Existing::Refuse)
            fail(QStringLiteral("%1 bestaat al en wordt niet overschreven.").arg(shown));
    } else if (errno != ENOENT) {
        fail(QStringLiteral("%1 kan niet worden geschreven: %2.").arg(shown, reason(errno)));
    }

    const QFileInfo info(path);
    const QString dir = info.absolutePath();
    TempFile temp;
    // Hidden, in the same folder (a rename never crosses a file system), and never an existing name.
    for (int attempt = 0; attempt < 16 && temp.fd < 0; ++attempt) {
        const QString name = QStringLiteral("%1/.%2.%3.tmp")
                                 .arg(dir, info.fileName())
                                 .arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'));
        const QByteArray candidate = native(name);
        temp.fd = ::open(candidate.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode & 07777);
        if (temp.fd >= 0)
            temp.path = candidate;
        else if (errno != EEXIST)
            fail(QStringLiteral("%1 kan niet worden geschreven: %2.").arg(shown, reason(errno)));
    }
    if (temp.fd < 0)
        fail(QStringLiteral("%1 kan niet worden geschreven: geen vrije tijdelijke naam.").arg(shown));
    // The umask must not widen or narrow what the caller asked for.
    ::fchmod(temp.fd, mode & 07777);

    const char *p = data.constData();
    qsizetype left = data.size();
    while (left > 0) {
        const ssize_t n = ::write(temp.fd, p, static_cast<size_t>(left));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            fail(QStringLiteral("%1 kan niet worden geschreven: %2. Het bestaande bestand is ongewijzigd.")
                     .arg(shown, reason(n < 0 ? errno : ENOSPC)));
        p += n;
        left -= n;
    }
    if (::fsync(temp.fd) != 0)
        fail(QStringLiteral("%1 kan niet worden geschreven: %2. Het bestaande bestand is ongewijzigd.").arg(shown, reason(errno)));
    const int fd = temp.fd;
    temp.fd = -1;
    if (::close(fd) != 0)
        fail(QStringLiteral("%1 kan niet worden geschreven: %2. Het bestaande bestand is ongewijzigd.").arg(shown, reason(errno)));

    if (existing == Existing::Refuse) {
        // Refused in one step, so a file that appeared meanwhile is kept; a file system without
        // that rename refuses an existing name through link().
        int done = ::renameat2(AT_FDCWD, temp.path.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE);
        if (done == 0)
            temp.keep = true;
        else if (errno == EINVAL || errno == ENOSYS)
            done = ::link(temp.path.constData(), target.constData());
        if (done != 0) {
            if (errno == EEXIST)
                fail(QStringLiteral("%1 bestaat al en wordt niet overschreven.").arg(shown));
            fail(QStringLiteral("%1 kan niet worden geschreven: %2.").arg(shown, reason(errno)));
        }
    } else {
        // A symlink put in place since the check above is replaced itself, never followed.
        if (::rename(temp.path.constData(), target.constData()) != 0)
            fail(QStringLiteral("%1 kan niet worden geschreven: %2. Het bestaande bestand is ongewijzigd.").arg(shown, reason(errno)));
        temp.keep = true;
    }
    syncDir(dir);
}

bool SafeFile::makePrivateDir(const QString &path)
{
    const QString absolute = QDir(path).absolutePath();
    struct stat st {};
    if (::stat(native(absolute).constData(), &st) == 0)
        return S_ISDIR(st.st_mode);
    const QString parent = QFileInfo(absolute).path();
    if (parent != absolute && !makePrivateDir(parent))
        return false;
    if (::mkdir(native(absolute).constData(), 0700) != 0 && errno != EEXIST)
        return false;
    return true;
}

void SafeFile::makePrivate(const QString &path)
{
    struct stat st {};
    const QByteArray name = native(path);
    if (::lstat(name.constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return;
    if ((st.st_mode & 077) != 0)
        ::chmod(name.constData(), st.st_mode & 0700);
}

void SafeFile::syncDir(const QString &dir)
{
    const int fd = ::open(native(dir).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

} // namespace Zarnoveld
