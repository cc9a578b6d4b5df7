// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/reformatteroracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzdesktop.h"
#include "fuzz/fuzzinput.h"
#include "texttools/reformatter.h"

using namespace zelvane;

/// The whitespace algorithms, beside their loops, on any text and on a selection.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr int shippedTabSpaces = 8;

    fuzz::Input input(data, size);
    const int algorithm = input.Number(0, int(FormattingAlgorithm::RemoveBlankLines));
    const int tabSpaces = input.Number(1, 300);
    const quint8 first = input.Byte(), last = input.Byte();
    const QString text = input.Text();
    const std::optional<QString> result = Reformat(FormattingAlgorithm(algorithm), text, tabSpaces);
    fuzz::ExpectSame("reformatted", result.value(), oracle::Reformatter::Run(algorithm, text, tabSpaces),
                     text, algorithm, tabSpaces);

    static SettingsStore settings(fuzz::WorkFolder() + QStringLiteral("/settings"));
    fuzz::Editor editor(settings);
    editor.text.SetText(text);
    const QString whole = editor.text.text;
    qsizetype start = fuzz::Place(first, whole.size());
    qsizetype end = start + fuzz::Place(last, whole.size() - start);
    editor.text.SetSelection(start, end);
    const bool goOn = ReformatSelection(editor.context, FormattingAlgorithm(algorithm), [] { return false; });
    if (!goOn) {
        fuzz::ExpectSame("stopped", editor.text.text, whole, algorithm);
        ReformatSelection(editor.context, FormattingAlgorithm(algorithm));
    }
    if (start == end) {
        start = 0;
        end = whole.size();
    }
    const QString expected =
        oracle::Reformatter::Run(algorithm, whole.mid(start, end - start), shippedTabSpaces);
    fuzz::ExpectSame("text", editor.text.text, whole.left(start) + expected + whole.mid(end), whole, start,
                     end, algorithm);
    fuzz::ExpectSame("selection", editor.text.SelectedText(), expected, whole, start, end, algorithm);
    return 0;
}
