// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ansireader.h"
#include "console/linestore.h"
#include "fuzz/fuzzcheck.h"

#include <cstddef>
#include <cstdint>
#include <QByteArrayView>
#include <QString>
#include <utility>

using namespace zelvane;

namespace
{

QString Shown(const LineStore &store)
{
    QString shown;
    for (qint64 i = store.First(); i < store.End(); ++i) {
        const StyledLine &line = store.At(i).line;
        shown += line.text + u'\n';
        for (const StyleSpan &span : line.spans)
            shown += QStringLiteral("%1 %2 %3 %4\n")
                         .arg(span.start)
                         .arg(span.length)
                         .arg(span.style.colour)
                         .arg(span.style.bold);
    }
    return shown;
}

QString Read(QByteArrayView bytes, qsizetype cut)
{
    LineStore store({.lines = 50, .characters = 100'000});
    AnsiReader reader([&](StyledLine line) {
        if (line.text.size() > AnsiReader::LongestLine)
            fuzz::ExpectSame("length", line.text.size(), AnsiReader::LongestLine, line.text);
        int end = 0;
        for (const StyleSpan &span : line.spans) {
            fuzz::ExpectSame("span", span.start >= end && span.length > 0, true, line.text);
            end = span.start + span.length;
        }
        fuzz::ExpectSame("end", end <= line.text.size(), true, line.text);
        store.Append(std::move(line));
    });
    reader.Read(bytes.first(cut));
    reader.Unfinished();
    reader.Read(bytes.sliced(cut));
    reader.Finish();
    return Shown(store);
}

} // namespace

/// A program's output, whole and cut in two.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArrayView bytes(data + 1, qsizetype(size) - 1);
    const qsizetype cut = bytes.isEmpty() ? 0 : data[0] % bytes.size();
    const QString whole = Read(bytes, 0);
    fuzz::ExpectSame("cut", Read(bytes, cut), whole, whole);
    return 0;
}
