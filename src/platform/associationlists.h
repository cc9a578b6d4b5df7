// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace zelvane
{

// The texts of the desktop's lists of associations: which program opens which type of files. Readers do not
// agree on a group or a type that stands there twice: all its lines count here, and one is left.

/// A list in which `entries` stand first for each of the types, before what stood there. All other lines stay
/// as they are.
/// @param group "Default Applications" or "Added Associations"
QByteArray WithAssociations(const QByteArray &list, const QByteArray &group, const QByteArrayList &types,
                            const QByteArrayList &entries);
/// A list in which `entries` stand for none of the types.
QByteArray WithoutAssociations(const QByteArray &list, const QByteArray &group, const QByteArrayList &types,
                               const QByteArrayList &entries);
/// The types among `types` that a group of the list says something of.
QByteArrayList TypesIn(const QByteArray &list, const QByteArray &group, const QByteArrayList &types);

} // namespace zelvane
