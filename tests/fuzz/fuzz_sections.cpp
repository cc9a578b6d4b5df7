// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/sectionsoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "language/links.h"
#include "language/sections.h"
#include "platform/runtimeerror.h"

#include <optional>

using namespace zelvane;

namespace
{

std::optional<QString> Extracted(const QString &text, const QString &tag)
{
    try {
        return ExtractTag(text, tag);
    } catch (const RunTimeError &) {
        return std::nullopt;
    }
}

} // namespace

/// The halves of a unified file and the addresses of links, beside their loops.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const quint8 start = input.Byte(), end = input.Byte();
    const QString text = input.Text();
    const QString tag = input.Text();
    for (const QString &name : {QStringLiteral("CsInstruments"), QStringLiteral("CsScore"), tag})
        fuzz::Expect("between tags", Extracted(text, name) == oracle::ExtractTag(text, name), text, name,
                     Extracted(text, name).value_or(QStringLiteral("failed")));
    const QString unified = UnifiedText(text, tag);
    fuzz::ExpectSame("unified", unified, oracle::UnifiedText(text, tag), text, tag);
    if (!text.contains(u'<') && !tag.contains(u'<')) {
        fuzz::ExpectSame("orchestra", Extracted(unified, QStringLiteral("CsInstruments")).value_or(QString()),
                         u'\n' + text + u'\n');
        fuzz::ExpectSame("score", Extracted(unified, QStringLiteral("CsScore")).value_or(QString()),
                         u'\n' + tag + u'\n');
    }
    fuzz::ExpectSame("link", LinkAddress(text, start, end), oracle::Characters(text, start, end + 1), text,
                     start, end);
    return 0;
}
