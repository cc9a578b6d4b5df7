// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/textopsoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzdesktop.h"
#include "fuzz/fuzzinput.h"
#include "shell/findnext.h"
#include "shell/findtext.h"
#include "shell/lineends.h"

using namespace zelvane;

/// Searching and replacing, beside their loops.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const FindOptions options =
        (input.Bit() ? FindWholeWord : FindAnywhere) | (input.Bit() ? FindMatchCase : FindAnywhere);
    const quint8 first = input.Byte(), last = input.Byte();
    const QString needle = fuzz::WithoutHalves(input.Text());
    const QString with = ToLineFeeds(input.Text()); // as the text control takes it
    static SettingsStore settings(fuzz::WorkFolder() + QStringLiteral("/settings"));
    fuzz::Editor editor(settings);
    editor.text.SetText(fuzz::WithoutHalves(input.Text()));
    const QString text = editor.text.text;
    const qsizetype start = fuzz::Place(first, text.size());
    const qsizetype end = start + fuzz::Place(last, text.size() - start);

    fuzz::ExpectSame("find", FindText(text, needle, start, end, options),
                     oracle::Find(text, needle, start, end, options), text, needle, start, end, options);

    editor.text.SetSelection(start, end);
    const bool found = FindNextText(editor.context, needle, false, options);
    const qsizetype next = oracle::Find(text, needle, end, text.size(), options);
    fuzz::ExpectSame("found", found, next >= 0, text, needle, end, options);
    if (found)
        fuzz::ExpectSame("selection", editor.text.SelectedText(), text.mid(next, needle.size()), text,
                         needle);
    fuzz::ExpectSame("told", editor.desktop.messages, found ? 0 : 1);

    const auto hits = HitsToReplace(text, needle, with, start, end, options);
    editor.text.ReplaceEach(hits, needle.size(), with);
    // A needle that stands in its replacement makes the plain loop longer, not endless: it goes on behind.
    const auto [expected, count] = oracle::ReplaceAll(text, needle, with, start, end, options);
    fuzz::ExpectSame("hits", qsizetype(hits.size()), count, text, needle, with, start, end, options);
    fuzz::ExpectSame("replaced", editor.text.text, expected, text, needle, with, start, end, options);
    return 0;
}
