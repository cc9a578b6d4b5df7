// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/mappingoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzdesktop.h"
#include "fuzz/fuzzinput.h"
#include "fuzz/fuzzstart.h"
#include "instruments/instrgui.h"
#include "instruments/mapping.h"
#include "platform/runtimeerror.h"
#include "shell/documentsteps.h"
#include "shell/settings.h"

#include <QString>

using namespace zelvane;

namespace
{

/// The text with tags, which bytes alone would hardly ever make.
QString WithTags(QString text)
{
    return text.replace(u'\v', QStringLiteral("<ZelvaneParameterMapping>"))
        .replace(u'\f', QStringLiteral("</ZelvaneParameterMapping>"));
}

} // namespace

/// The block of the parameter mapping in any text, beside its steps.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static SettingsStore settings(fuzz::WorkFolder() + QStringLiteral("/settings"));
    static const DocumentSteps steps;
    fuzz::Input input(data, size);
    const bool comments = input.Bit(), ask = input.Bit();
    const int number = input.Number(1, 2);
    fuzz::Editor editor(settings);
    editor.desktop.input = input.Text();
    editor.document.DocumentKind = FileKind::Unified;
    editor.text.SetText(WithTags(fuzz::WithoutHalves(input.Text())) +
                        QStringLiteral("<Zelvane><instruments><instr number=\"1\"><p number=\"3\" "
                                       "name=\"N\" variable=\"idur\"/><p number=\"4\"/></instr>"
                                       "<instr number=\"2\"/></instruments></Zelvane>"));
    const QString before = editor.text.text;

    const QString code = GenerateVariableCode(editor.context, number, comments, ask);
    const qint32 pos = FindInstrStatement(before, number);
    try {
        const MappingResult result =
            MapParameters(editor.context, steps, {QString::number(number), comments, ask});
        fuzz::ExpectSame("finished", result == MappingResult::Finished, !code.isEmpty(), before);
        if (code.isEmpty()) {
            fuzz::ExpectSame("untouched", editor.text.text, before);
            return 0;
        }
        fuzz::Expect("an instrument", pos > 0, before);
        QString lines = code;
        lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
        fuzz::ExpectSame("text", editor.text.text, test::oracle::MapParameters(before, lines, pos), before);
    } catch (const RunTimeError &) {
        fuzz::ExpectSame("no instrument", pos, -1, before);
        fuzz::ExpectSame("as it was", editor.text.text, before);
    }
    return 0;
}
