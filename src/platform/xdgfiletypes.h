// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/filetypes.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringList>

namespace zelvane
{

class WorkProgress;

/// Where it is told which program opens which file.
struct XdgPlace {
    QString data;                  ///< folder of the user
    QString config;                ///< the same
    QStringList desktops = {};     ///< names of the running desktop, those of XDG_CURRENT_DESKTOP
    QStringList systemConfig = {}; ///< folders of all users

    /// The place of the user whose program this is.
    static XdgPlace OfUser();
};

/// The registration by the files of the free desktops, all of them the user's own: types and icon, a desktop
/// entry for each verb (an entry's actions are given no file), and the defaults. Each file is replaced in one
/// step, and what it names is there before it: a failure leaves no default without its program.
class XdgFileTypes : public FileTypeRegistry
{
public:
    static constexpr int ToolPatienceMs = 20000; ///< for each tool of the desktop

    /// @param progress shows that a tool takes long, and lets the user stop it; may be null
    /// @param toolPatience milliseconds
    explicit XdgFileTypes(const XdgPlace &place = XdgPlace::OfUser(), WorkProgress *progress = nullptr,
                          int toolPatience = ToolPatienceMs)
        : m_place(place), m_progress(progress), m_toolPatience(toolPatience)
    {
    }

    void Register(const ProgramFiles &files) override;

private:
    void WriteTypes(const ProgramFiles &files) const;
    /// @return the names of the entries
    QByteArrayList WriteEntries(const ProgramFiles &files) const;
    void WriteLists(const QByteArrayList &types, const QByteArrayList &entries) const;
    /// @return whether a tool has done its work on a folder. @throws RunTimeError when the user has stopped
    /// it
    bool RunTool(const QString &tool, const QString &folder) const;

    XdgPlace m_place;
    WorkProgress *m_progress;
    int m_toolPatience;
};

/// Follows a program that has moved: where the user's entry of a verb names a program that is not there any
/// more, it names this one from now on. All else that stands in it stays, and no entry is made.
/// @throws RunTimeError
void FollowProgram(const ProgramFiles &files, const XdgPlace &place = XdgPlace::OfUser());

// The texts of those files

/// The name of a verb's desktop entry: "zelvane.desktop" for the default verb, else "zelvane-KEY.desktop".
QString EntryName(const ProgramFiles &files, const FileVerb &verb);
/// The desktop entry of a verb; but the first one is shown for files only, and has the actions.
QString EntryText(const ProgramFiles &files, const FileVerb &verb);
/// The description of the types. An extension belongs to the first type that has it.
/// @param weight of the names, where others describe the same: 50 is usual
QString MimePackageText(const ProgramFiles &files, int weight);

} // namespace zelvane
