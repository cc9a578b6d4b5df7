// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/insertcommands.h"

#include "shell/command.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"
#include "shell/ui/menuname.h"
#include "texttools/insertkeys.h"
#include "texttools/inserts.h"
#include "texttools/ui/frmheader.h"
#include "texttools/ui/frmnewinclude.h"
#include "texttools/ui/frmnewinstr.h"
#include "texttools/ui/frmnewmacro.h"
#include "texttools/ui/frmrndnum.h"

#include <QAction>
#include <QDialog>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qsizetype CaptionLength = 16;

/// A row of the style's character; only the first one of the setting counts.
QString LineCaption(const QString &style)
{
    return StyleCharacter(style).repeated(CaptionLength).replace(u'&', u"&&"_s);
}

/// A command that shows a dialog. What it has put into the text is where the user goes on.
template <typename Dialog> void BindDialog(const WindowContext &context, Command command)
{
    context.commands.Bind(command, [&editor = context.editor, &steps = context.steps, &view = context.view,
                                    window = context.window] {
        if (Dialog(editor, steps, window).exec() == QDialog::Accepted)
            view.FocusText();
    });
}

} // namespace

void BindInsertCommands(const WindowContext &context)
{
    Commands &commands = context.commands;
    EditorContext &editor = context.editor;
    commands.Bind(Cmd::mnuDate,
                  [&editor] { editor.text.ReplaceSelection(DateAndTime(editor.desktop.Now())); });
    BindDialog<frmRndNum>(context, Cmd::mnuRandom);
    BindDialog<frmHeader>(context, Cmd::mnuHeader);
    BindDialog<frmNewInstr>(context, Cmd::mnuNewInstr);
    BindDialog<frmNewMacro>(context, Cmd::mnuNewMacro);
    BindDialog<frmNewInclude>(context, Cmd::mnuNewInclude);
    commands.Bind(Cmd::mnuInsertFilename, [&editor] { InsertFilename(editor); });
    commands.Bind(Cmd::mnuLineSeparation,
                  [&editor](LineStyle style) { InsertLineSeparation(editor, style); });
    commands.OnMenuOpening(Menu::mnuInsert, [&editor, &commands] {
        const auto show = [&](LineStyle line, const QString &style) {
            commands.Action(Cmd::mnuLineSeparation[line])->setText(LineCaption(style));
        };
        show(LineStyle::First, editor.settings.Text(Keys::LineStyle1));
        show(LineStyle::Second, editor.settings.Text(Keys::LineStyle2));
    });
}

} // namespace zelvane
