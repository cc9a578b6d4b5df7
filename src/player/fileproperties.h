// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

namespace zelvane
{

class Desktop;

struct FileProperty {
    QString caption;
    QString value;

    bool operator==(const FileProperty &) const = default;
};

/// What the system knows of a file: path, kind, size, times, owner and permissions, and of a link where it
/// leads. Of a file that is not there it knows the path alone.
std::vector<FileProperty> FileProperties(const QString &path, const Desktop &desktop);

} // namespace zelvane
