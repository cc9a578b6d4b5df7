// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/presetbuttons.h"

#include "platform/numbers.h"
#include "run/macroexpansion.h"
#include "run/presetkeys.h"
#include "shell/editorcontext.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

PresetImage ImageOf(const QString &stored)
{
    if (stored.isEmpty())
        return {};
    if (const auto number = ParseNumber(stored)) {
        // A number beyond all images is one of an image that is not there.
        const bool fits = *number >= 0 && *number <= 65535;
        return {.form = PresetImage::Form::BuiltIn, .number = fits ? int(RoundHalfEven(*number)) : 0};
    }
    return {.form = PresetImage::Form::File, .file = stored};
}

QString PresetLabel(const QString &name)
{
    if (name.size() <= 10)
        return name;
    const bool half = name[6].isHighSurrogate();
    return name.first(half ? 6 : 7) + u"..."_s;
}

std::optional<PresetButton> ButtonOf(const PresetKey &key, const RunContext &context)
{
    const PresetStore store(context.editor.settings);
    if (store.StoredText(key, PresetKeys::CreateButton) == u"0")
        return std::nullopt;
    return PresetButton{.key = key,
                        .newGroup = store.Flag(key, PresetKeys::NewGroup),
                        .label = PresetLabel(store.Text(key, PresetKeys::Name, key)),
                        .tooltip = store.Text(key, PresetKeys::Tooltip, key),
                        .image = ImageOf(store.Text(key, PresetKeys::Image)),
                        .command = ExpandStaticMacros(store.Text(key, PresetKeys::Command), context)};
}

QString PresetShortcut(int row)
{
    if (row < 0 || row > 19)
        return {};
    const QString digit = QString::number((row + 1) % 10);
    return (row < 10 ? u"\tCtrl+"_s : u"\tAlt+"_s) + digit;
}

QString PresetMenuCaption(const PresetKey &key, int row)
{
    return u'&' + key + PresetShortcut(row);
}

int PresetRowOfDigit(int digit, bool ctrl, bool alt)
{
    if (digit < 0 || digit > 9 || ctrl == alt)
        return -1;
    const int row = digit == 0 ? 9 : digit - 1;
    return ctrl ? row : row + 10;
}

QStringList PresetPopupCaptions(const PresetKey &key)
{
    return {key + u"\tClick"_s, key + u" (Confirm macros)\tCtrl+Click"_s, u"&Edit...\tAlt+Click"_s};
}

} // namespace zelvane
