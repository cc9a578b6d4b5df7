// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/instrumentsoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzdesktop.h"
#include "fuzz/fuzzinput.h"
#include "fuzz/fuzzstart.h"
#include "instruments/instrclass.h"
#include "instruments/instrgui.h"
#include "instruments/zelvanedata.h"
#include "platform/runtimeerror.h"
#include "shell/settings.h"

#include <QString>

using namespace zelvane;

namespace
{

/// What a store is after its instruments have been read and kept once more.
QString KeptAgain(fuzz::Editor &editor)
{
    Instruments instruments;
    LoadInstruments(editor.context, instruments);
    try {
        StoreDataSection(editor.context, InstrumentsToXml(instruments, editor.desktop), false);
    } catch (const RunTimeError &) {
        // The store holds another element.
    }
    return editor.text.text;
}

} // namespace

/// Any text as the store of a unified file: once it has been kept it stays as it is. The search for an
/// instrument, beside its loop.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const qint32 number = input.Byte();
    const QString text = input.Text();

    static SettingsStore settings(fuzz::WorkFolder() + QStringLiteral("/settings"));
    fuzz::Editor editor(settings);
    editor.document.DocumentKind = FileKind::Unified;
    editor.text.SetText(QStringLiteral("<Zelvane>") + text + QStringLiteral("</Zelvane>"));
    const QString once = KeptAgain(editor);
    fuzz::ExpectSame("kept again", KeptAgain(editor), once, text);

    try {
        const qint32 told = oracle::FindInstrStatement(text, number);
        fuzz::Expect("statement", FindInstrStatement(text, number) == told, text, number, told);
    } catch (const RunTimeError &) {
        // The loop knows no number of so many digits.
    }
    return 0;
}
