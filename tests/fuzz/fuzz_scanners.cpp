// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/scanoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "language/opcodelist.h"
#include "language/scanner.h"

#include <algorithm>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;
namespace oracle = zelvane::test::oracle;

namespace
{

QByteArray Paint(const QString &text, const StyleRuns &runs)
{
    QByteArray styles(text.size(), char(StyleClass::Text));
    qsizetype before = 0;
    for (const StyleRun &run : runs) {
        fuzz::Expect("runs rise", run.start >= before && run.length > 0, text);
        before = run.start + run.length;
        fuzz::Expect("runs end with the text", before <= text.size(), text);
        std::fill_n(styles.begin() + run.start, run.length, char(run.style));
    }
    return styles;
}

} // namespace

/// The opcode list and the colouring of any text by it, beside their loops.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr int unified = 4;

    fuzz::Input input(data, size);
    const int mode = input.Number(0, unified);
    const bool wholeText = input.Bit();
    const quint8 first = input.Byte(), last = input.Byte();
    const QString words = u"a1 oscil out instr define zz "_s + input.Text() + u" zz"_s;
    const QString text = input.Text();

    OpcodeList opcodes;
    opcodes.Add(words);
    const oracle::OpcodeWalkResult walked = oracle::WalkOpcodes(words);
    fuzz::ExpectSame("opcode words", opcodes.OpcodeWords(), walked.opcodeWords, words);
    fuzz::ExpectSame("opcodes", opcodes.Opcodes().sliced(1), walked.words, words);
    for (const QString &word : text.split(u' '))
        fuzz::ExpectSame("opcode", opcodes.Contains(word), oracle::IsOpcode(walked.opcodeWords, word), word,
                         words);

    oracle::Painting painting{QByteArray(text.size(), char(StyleClass::Text))};
    if (mode == unified) {
        oracle::HighlightUnified(text, walked.opcodeWords, painting);
        fuzz::ExpectSame("unified", Paint(text, ScanUnified(text, opcodes)), painting.styles, text, words);
        return 0;
    }
    const qsizetype start = wholeText ? 0 : fuzz::Place(first, text.size());
    const qsizetype end = wholeText ? 0 : start + fuzz::Place(last, text.size() - start);
    oracle::HighlightRange(text, start, end, mode, walked.opcodeWords, painting);
    const ScanResult found = ScanRange(text, start, end, ScanMode(mode), opcodes);
    if (mode != 0) // no scan colours nothing, and resets nothing
        fuzz::ExpectSame("range", Paint(text, found.runs), painting.styles, text, words, mode, start, end);
    fuzz::ExpectSame("ran off", found.ranOffText, painting.failed, text, words, mode, start, end);
    return 0;
}
