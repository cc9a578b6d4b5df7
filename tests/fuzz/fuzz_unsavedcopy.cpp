// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "platform/textencoding.h"
#include "platform/unsavedcopy.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <QByteArray>
#include <QChar>
#include <QDir>
#include <QFile>
#include <QString>
#include <vector>

using namespace zelvane;

namespace
{

/// What is under a name in the lines above the first empty one; the last of several counts.
std::optional<QByteArray> Field(const QByteArray &head, const QByteArray &name)
{
    std::optional<QByteArray> found;
    qsizetype start = 0;
    while (start <= head.size()) {
        qsizetype end = head.indexOf('\n', start);
        if (end < 0)
            end = head.size();
        const QByteArray line = head.mid(start, end - start);
        if (line.startsWith(name + ": "))
            found = line.mid(name.size() + 2);
        start = end + 1;
    }
    return found;
}

/// A file that an editor, or anybody, has left: it is taken for a copy where it is a whole one, and what was
/// read is what stands there.
void CheckLeft(const QByteArray &bytes)
{
    QDir().mkpath(UnsavedCopy::Folder());
    {
        QFile file(UnsavedCopy::Folder() + QStringLiteral("/x.open"));
        fuzz::Expect("file", file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    std::vector<UnsavedCopy> left = UnsavedCopy::TakeLeft();
    fuzz::Expect("one is left", left.size() == 1, bytes);
    const std::optional<UnsavedCopy::Content> content = left.front().Read();
    const qsizetype end = bytes.indexOf("\n\n");
    const QByteArray head = bytes.first(end < 0 ? 0 : end);
    const QByteArray text = end < 0 ? QByteArray() : bytes.mid(end + 2);
    if (content) {
        fuzz::Expect("it says what it is", bytes.startsWith("Zelvane copy\n"), bytes);
        fuzz::ExpectSame("text", content->bytes, text, bytes);
        fuzz::Expect("size", Field(head, "Bytes").value_or("-1").toLongLong() == text.size(), bytes);
        fuzz::Expect("encoding", content->info.encoding.has_value() == Field(head, "Encoding").has_value(),
                     bytes);
    } else if (bytes.startsWith("Zelvane copy\n") && end >= 0 && !Field(head, "Encoding")) {
        fuzz::Expect("not whole", Field(head, "Bytes").value_or("-1").toLongLong() != text.size(), bytes);
    }
    left.front().Remove();
}

/// Whatever is written comes back.
void CheckWritten(fuzz::Input &input)
{
    using Form = TextEncoding::Form;
    CopyInfo info;
    // A full path, or none; no file's name holds a NUL character.
    if (input.Bit())
        info.name = u'/' + fuzz::WithoutHalves(input.Text()).remove(QChar(0));
    info.kind = input.Number(-1, 5);
    if (input.Bit())
        info.encoding = TextEncoding{Form(input.Number(int(Form::Utf8), int(Form::Utf16Big))), input.Bit()};
    if (input.Bit())
        info.replacedBy = ContentHash(input.Text().toUtf8());
    const QByteArray bytes = input.Rest();
    {
        UnsavedCopy copy;
        copy.Write(info, bytes);
    }
    std::vector<UnsavedCopy> left = UnsavedCopy::TakeLeft();
    fuzz::Expect("one is left", left.size() == 1, bytes);
    const std::optional<UnsavedCopy::Content> content = left.front().Read();
    fuzz::Expect("whole", content.has_value(), info.name, bytes);
    fuzz::Expect("what it is of", content->info == info, info.name, content->info.name, info.kind);
    fuzz::ExpectSame("bytes come back", content->bytes, bytes);
    left.front().Remove();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    switch (input.Number(0, 3)) {
    case 0:
        CheckLeft(input.Rest());
        break;
    case 1: {
        // A header that a person may have edited, over a text that may be whole.
        const QByteArray lines = input.Text().toUtf8();
        const qsizetype missing = input.Number(0, 1);
        const QByteArray text = input.Rest();
        CheckLeft("Zelvane copy\n" + lines + "\nBytes: " + QByteArray::number(text.size() + missing) +
                  "\n\n" + text);
        break;
    }
    default:
        CheckWritten(input);
        break;
    }
    return 0;
}
