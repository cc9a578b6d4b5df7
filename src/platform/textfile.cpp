// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/textfile.h"

#include "platform/nativefile.h"
#include "platform/readfile.h"
#include "platform/replacefile.h"
#include "platform/runtimeerror.h"
#include "platform/textencoding.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QByteArray ReadFileBytes(const QString &name, FileStamp *stamp)
{
    const NativeFile file = OpenRegularFile(name);
    if (stamp)
        *stamp = StampOf(file);
    return ReadWhole(file, name);
}

void WriteFileBytes(const QString &name, const QByteArray &bytes)
{
    if (name.isEmpty())
        throw RunTimeError(ErrorNumber::PathFileAccess, u"The file has no name"_s);
    ReplaceFile(name, bytes);
}

QString ReadTextFile(const QString &name)
{
    return name.isEmpty() ? QString() : DecodeText(ReadFileBytes(name)).text;
}

bool WriteTextFile(const QString &name, const QString &text)
{
    if (name.isEmpty())
        return false;
    TextEncoding encoding;
    WriteFileBytes(name, EncodeText(text, encoding));
    return true;
}

} // namespace zelvane
