// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/filetypes.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace zelvane
{

/// The registration by the files of the free desktops, all of them the user's own: types and icon, a desktop
/// entry for each verb (an entry's actions are given no file), and the defaults. Each file is replaced in one
/// step, and what it names is there before it: a failure leaves no default without its program.
class XdgFileTypes : public FileTypeRegistry
{
public:
    /// The folders of the user whose program this is.
    XdgFileTypes();
    /// @param desktops names of the running desktop, those of XDG_CURRENT_DESKTOP
    XdgFileTypes(const QString &dataFolder, const QString &configFolder, const QStringList &desktops = {});

    void Register(const ProgramFiles &files) override;

private:
    QString m_dataFolder;
    QString m_configFolder;
    QStringList m_desktops;
};

// The texts of those files

/// The name of a verb's desktop entry: "zelvane.desktop" for the default verb, else "zelvane-KEY.desktop".
QString EntryName(const ProgramFiles &files, const FileVerb &verb);
/// The desktop entry of a verb; but the first one is shown for files only, and has the actions.
QString EntryText(const ProgramFiles &files, const FileVerb &verb);
/// The description of the types. An extension belongs to the first type that has it.
/// @param weight of the names, where others describe the same: 50 is usual
QString MimePackageText(const ProgramFiles &files, int weight);

/// A list of associations in which `entries` stand first for each of the types, before what stood there. All
/// other lines stay as they are.
/// @param group "Default Applications" or "Added Associations"
QByteArray WithAssociations(const QByteArray &list, const QByteArray &group, const QByteArrayList &types,
                            const QByteArrayList &entries);
/// A list of associations in which `entries` stand for none of the types.
QByteArray WithoutAssociations(const QByteArray &list, const QByteArray &group, const QByteArrayList &types,
                               const QByteArrayList &entries);
/// The types among `types` that a group of the list says something of.
QByteArrayList TypesIn(const QByteArray &list, const QByteArray &group, const QByteArrayList &types);

} // namespace zelvane
