// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/insertcommands.h"

#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"
#include "shell/ui/menuname.h"
#include "texttools/insertkeys.h"
#include "texttools/inserts.h"

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

void BindInsertCommands(const WindowContext &context)
{
    Commands &commands = context.commands;
    EditorContext &editor = context.editor;
    commands.Bind(Cmd::mnuDate,
                  [&editor] { editor.text.ReplaceSelection(DateAndTime(editor.desktop.Now())); });
    commands.OnMenuOpening(Menu::mnuInsert, [&editor, &commands] {
        const auto show = [&](LineStyle line, const QString &style) {
            commands.Action(Cmd::mnuLineSeparation[line])->setText(LineCaption(style));
        };
        show(LineStyle::First, editor.settings.Text(Keys::LineStyle1));
        show(LineStyle::Second, editor.settings.Text(Keys::LineStyle2));
    });
}

} // namespace zelvane
