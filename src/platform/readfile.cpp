// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/readfile.h"

#include "platform/nativecalls.h"
#include "platform/nativefile.h"
#include "platform/runtimeerror.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

using namespace native;

namespace
{

/// Beyond this a text cannot be held as UTF-16 by the string class and the text control.
constexpr qint64 MaxFileSize = 1'000'000'000;
/// Of one call to the system, in bytes.
constexpr qsizetype MostAtOnce = 1024 * 1024;

} // namespace

std::optional<QByteArray> ReadWhile(const NativeFile &file, const QString &name,
                                    const std::function<bool(qint64)> &goOn)
{
    struct stat info = {};
    if (::fstat(file.Descriptor(), &info) != 0)
        Fail(errno, name);
    const auto refuseLarge = [&](qint64 size) {
        if (size > MaxFileSize)
            throw RunTimeError(ErrorNumber::PathFileAccess, u"The file is too large"_s, name);
    };
    refuseLarge(info.st_size);
    if (!goOn(info.st_size))
        return {};
    // One byte more than the size, so that the end shows without growing; a file may be longer than it says.
    QByteArray bytes(info.st_size + 1, Qt::Uninitialized);
    qsizetype done = 0;
    for (;;) {
        if (done == bytes.size()) {
            refuseLarge(done);
            bytes.resize(done + done / 2 + 4096);
        }
        if (!goOn(done))
            return {};
        const ssize_t count = Retry([&] {
            return ::pread(file.Descriptor(), bytes.data() + done,
                           size_t(std::min(bytes.size() - done, MostAtOnce)), done);
        });
        if (count < 0)
            Fail(errno, name);
        if (count == 0)
            break;
        done += count;
    }
    bytes.truncate(done);
    return bytes;
}

QByteArray ReadWhole(const NativeFile &file, const QString &name)
{
    return *ReadWhile(file, name, [](qint64) { return true; });
}

} // namespace zelvane
