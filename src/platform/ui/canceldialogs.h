// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QObject;

namespace zelvane
{

/// A dialog that keeps what the user has typed in no other place.
class KeepsWork
{
public:
    virtual ~KeepsWork() = default;
    /// Asks what is to become of it, if there is any. @return whether the dialog may be cancelled
    virtual bool MayCancel() = 0;
};

/// Closes every open menu and cancels every modal dialog, the innermost first: the system ends the session or
/// the process. Only a dialog that KeepsWork is asked. The commands that showed them have not come to their
/// end when this returns.
/// @return false when a dialog stays, and when it is being asked already: then nothing more is closed
bool CancelDialogs();

/// Cancels what is open, and does `then` when the commands that had shown it have come to their end; not when
/// a dialog stays. @param owner when it goes before that, nothing is done
void CancelDialogs(QObject &owner, std::function<void()> then);

} // namespace zelvane
