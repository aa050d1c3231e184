// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Writing a file so that a failure never costs the file that was there: the new content goes to a
// temporary file in the same folder, is flushed to disk, and only then takes the target's name.

#include <QByteArray>
#include <QString>

namespace Zarnoveld {

class SafeFile
{
public:
    enum class Existing {
        Refuse,    // an existing target is left alone and the write fails with a Dutch message
        Replace,   // an existing regular file is replaced in one step
    };

    // Writes data to path with the given permission bits (personal data: 0600). A symlink, a
    // device or a folder as target is refused. On any failure the target is as it was, no
    // temporary file is left, and HostError(StoreFailed) carries a Dutch description naming the
    // file. The folder must exist.
    static void write(const QString &path, const QByteArray &data, Existing existing,
                      unsigned mode = 0600);

    // Creates the folder and any missing parents with mode 0700 (an existing folder keeps its mode).
    // Returns false when it cannot be made.
    static bool makePrivateDir(const QString &path);

    // Takes group and other permissions off a file that exists; a read-only file stays read-only.
    static void makePrivate(const QString &path);

    // Flushes a folder's entries (a rename or a new file in it) to disk.
    static void syncDir(const QString &dir);

    // The reason for the last failed system call, in Dutch where it matters to a user.
    static QString reason(int error);
};

} // namespace Zarnoveld
