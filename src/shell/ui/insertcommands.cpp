// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/insertcommands.h"

#include "shell/editorkeys.h"
#include "shell/helplinks.h"
#include "shell/ui/commands.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qsizetype CaptionLength = 16;

/// A row of the style's character; only the first one of the setting counts.
QString LineCaption(const QString &style)
{
    return QString(CaptionLength, style.isEmpty() ? u' ' : style[0]).replace(u'&', u"&&"_s);
}

} // namespace

InsertCommands::InsertCommands(EditorContext &editor, Commands &commands, QObject *parent) : QObject(parent)
{
    commands.Bind(u"mnuDate"_s,
                  [&editor](int) { editor.text.ReplaceSelection(DateAndTime(editor.desktop.Now())); });
    commands.OnMenuOpening(u"mnuInsert"_s, [&editor, &commands] {
        const TextKey *const styles[] = {&Keys::LineStyle1, &Keys::LineStyle2};
        for (int entry = 0; entry < 2; ++entry)
            commands.Action(u"mnuLineSeparation"_s, entry)
                ->setText(LineCaption(editor.settings.Text(*styles[entry])));
    });
}

} // namespace zelvane
