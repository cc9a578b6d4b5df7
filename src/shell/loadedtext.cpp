// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/loadedtext.h"

#include "platform/nativefile.h"
#include "platform/runtimeerror.h"
#include "platform/textfile.h"
#include "shell/lineends.h"

#include <limits>
#include <new>
#include <QByteArray>
#include <QFileInfo>
#include <QtGlobal>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// In bytes: offsets in the text are 32-bit numbers in many places.
constexpr qint64 LargestFile = std::numeric_limits<qint32>::max();

} // namespace

LoadedText LoadTextFile(const QString &name)
{
    // The raw bytes are gone when the text is converted: of a large file little is held twice.
    try {
        if (QFileInfo(name).size() > LargestFile)
            throw std::bad_alloc();
        LoadedText loaded;
        DecodedText decoded = [&] {
            FileStamp stamp;
            const QByteArray bytes = ReadFileBytes(name, &stamp);
            loaded.picture = DiskPicture::Of(bytes, stamp);
            return DecodeText(bytes);
        }();
        loaded.encoding = decoded.encoding;
        loaded.form = DetectPlatform(decoded.text);
        loaded.holdsNul = decoded.text.contains(QChar(0));
        loaded.text = FromLineEnds(std::move(decoded.text), loaded.form);
        return loaded;
    } catch (const std::bad_alloc &) {
        throw OutOfMemory(name);
    }
}

} // namespace zelvane
