// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/nativefile.h"

#include <QByteArray>
#include <QtGlobal>
#include <sys/types.h>
#include <utility>

namespace zelvane
{

/// Removes what killed processes have left of TemporaryFiles in a folder; those whose writers live stay.
void RemoveLeftTemporaries(const QByteArray &folder);

/// A new file in a target's folder. Where the system can, it has no name while it is being written, so that a
/// killed process leaves nothing behind. Its name is removed again unless it was renamed; while it is open it
/// is locked, so that others see that its writer lives. For platform/ alone: paths are as the system takes
/// them.
class TemporaryFile
{
public:
    /// @param mode the rights that the file has from its first moment on, less those of the process's umask
    TemporaryFile(const QByteArray &folder, mode_t mode);
    ~TemporaryFile();
    Q_DISABLE_COPY_MOVE(TemporaryFile)

    /// 0, or why there is no file.
    int Error() const { return m_error; }
    int Descriptor() const { return m_file.Descriptor(); }

    /// Puts the file in the place of the target. @return 0 or the error
    int RenameTo(const QByteArray &target);
    /// The same for a target that was not there: nothing that a kill leaves ever has a name of its own where
    /// the system can do so. @return 0 or the error
    int Become(const QByteArray &target);
    /// The same, but what stands there by now is not replaced. @return 0 or the error, EEXIST in that case
    int BecomeNew(const QByteArray &target);

    /// The file, open, locked and with the name that it was given.
    NativeFile Take() { return std::move(m_file); }

private:
    int GiveName();
    bool Link(const char *path);
    template <typename Make> int FindName(Make make);

    QByteArray m_folder;
    QByteArray m_path; // empty while the file has no name
    NativeFile m_file;
    int m_error = 0;
};

} // namespace zelvane
