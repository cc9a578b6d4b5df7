// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/preferencescommands.h"

#include "platform/ui/textcontrol.h"
#include "platform/xdgfiletypes.h"
#include "preferences/ui/frmoptions.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/settings.h"
#include "shell/ui/appearance.h"
#include "shell/ui/commands.h"

#include <QApplication>
#include <QWidget>

namespace zelvane
{

namespace
{

/// What a dialog may stand over: a hidden or minimized window would take the dialog out of sight with it.
QWidget *Owner(QWidget *window)
{
    QWidget *modal = QApplication::activeModalWidget();
    QWidget *owner = modal ? modal : window;
    return owner && owner->isVisible() && !owner->isMinimized() ? owner : nullptr;
}

} // namespace

void BindPreferences(const WindowContext &context)
{
    context.commands.Bind(Cmd::mnuPreferences, [context] {
        const EditorContext &editor = context.editor;
        XdgFileTypes fileTypes;
        frmOptions({editor.settings, editor.desktop, context.appearance, context.text, fileTypes},
                   Owner(context.window))
            .exec();
    });
}

void ShowPreferencesAlone(SettingsStore &settings, Desktop &desktop)
{
    TextControl unseen(desktop);
    Appearance looks(settings);
    AddTextLooks(looks, unseen);
    looks.Apply(Look::Font);
    const TextFont before = unseen.CurrentFont();
    XdgFileTypes fileTypes;
    frmOptions({settings, desktop, looks, unseen, fileTypes}, Owner(QApplication::activeWindow())).exec();
    if (!(unseen.CurrentFont() == before))
        SaveTextFont(unseen, settings);
}

} // namespace zelvane
