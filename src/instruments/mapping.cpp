// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/mapping.h"

#include "instruments/instrgui.h"
#include "instruments/texttags.h"
#include "platform/desktop.h"
#include "platform/numbers.h"
#include "platform/textbuffer.h"
#include "shell/editorcontext.h"
#include "shell/insertcoloured.h"

#include <optional>
#include <QtGlobal>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

const QString &BlockTag()
{
    static const QString tag = u"ZelvaneParameterMapping"_s;
    return tag;
}

} // namespace

MappingResult MapParameters(EditorContext &editor, const DocumentSteps &steps, const MappingRequest &request)
{
    if (!IsNumeric(request.number)) {
        editor.desktop.MessageBox(
            {.text = u"Specify an instrument number or press Cancel."_s, .icon = BoxIcon::Warning});
        return MappingResult::NumberIsMissing;
    }
    const auto number = ToInteger<qint16>(ToNumber(request.number));
    const QString code = GenerateVariableCode(editor, number, request.comments, request.ask);
    if (code.isEmpty()) {
        editor.desktop.MessageBox({.text = u"Cannot find instrument data. Use the Instrument Properties "
                                           u"dialog box before running this command."_s,
                                   .icon = BoxIcon::Warning});
        return MappingResult::DataIsMissing;
    }
    const qint32 pos = FindInstrStatement(editor.text.Text(), number);
    // Without the instrument the search fails already, and the general report takes the message's place.
    std::optional<TextSpan> block = SetTagText(editor, BlockTag(), code, pos);
    if (!block) {
        if (pos == -1) {
            editor.desktop.MessageBox({.text = u"Cannot find instr statement."_s, .icon = BoxIcon::Critical});
            return MappingResult::Finished;
        }
        editor.text.SetSelection(pos, pos);
        editor.text.ReplaceSelection(u";<"_s + BlockTag() + u">\r\n;</"_s + BlockTag() + u">\r\n"_s);
        block = SetTagText(editor, BlockTag(), code, pos);
    }
    // With the lines of its tags.
    if (block)
        ColourLines(editor, steps, *block);
    return MappingResult::Finished;
}

} // namespace zelvane
