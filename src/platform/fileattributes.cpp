// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/fileattributes.h"

#include <cerrno>
#include <cstring>
#include <sys/xattr.h>

namespace zelvane::native
{

namespace
{

constexpr qsizetype MostBytes = 64 * 1024; ///< of a list of names, and of a value: the system has no more

} // namespace

std::optional<std::set<QByteArray>> AttributeNames(int descriptor)
{
    std::set<QByteArray> names;
    QByteArray list(MostBytes, Qt::Uninitialized);
    const ssize_t length = ::flistxattr(descriptor, list.data(), size_t(list.size()));
    if (length < 0)
        return errno == ENOTSUP ? std::optional(names) : std::nullopt;
    for (const char *name = list.constData(); name < list.constData() + length; name += std::strlen(name) + 1)
        names.insert(name);
    return names;
}

bool IsLabel(const QByteArray &attribute)
{
    return attribute.startsWith("security.") || attribute.startsWith("trusted.");
}

bool CopyAttribute(int from, int to, const QByteArray &attribute)
{
    QByteArray value(MostBytes, Qt::Uninitialized);
    const ssize_t size = ::fgetxattr(from, attribute.constData(), value.data(), size_t(value.size()));
    return size >= 0 && ::fsetxattr(to, attribute.constData(), value.constData(), size_t(size), 0) == 0;
}

} // namespace zelvane::native
