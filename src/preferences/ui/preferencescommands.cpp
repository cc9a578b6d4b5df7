// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/preferencescommands.h"

#include "platform/ui/progressbox.h"
#include "platform/ui/textcontrol.h"
#include "platform/xdgfiletypes.h"
#include "preferences/ui/frmoptions.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/settings.h"
#include "shell/ui/appearance.h"
#include "shell/ui/commands.h"
#include "shell/ui/keyedcontrols.h"

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

/// Nothing is shown where the settings cannot be read: what is not known must not be written over.
void Show(const OptionsContext &context, QWidget *owner)
{
    if (Guarded(context.desktop, [&] { KeyedControls(context.settings).RequireReadable(); }))
        frmOptions(context, owner).exec();
}

} // namespace

void BindPreferences(const WindowContext &context)
{
    context.commands.Bind(Cmd::mnuPreferences, [context] {
        const EditorContext &editor = context.editor;
        ProgressBox progress(context.window);
        XdgFileTypes fileTypes(XdgPlace::OfUser(), &progress);
        Show({editor.settings, editor.desktop, context.appearance, context.text, fileTypes},
             Owner(context.window));
    });
}

void ShowPreferencesAlone(SettingsStore &settings, Desktop &desktop)
{
    TextControl unseen(desktop);
    Appearance looks(settings);
    AddTextLooks(looks, unseen);
    looks.Apply(Look::Font);
    const TextFont before = unseen.CurrentFont();
    QWidget *window = QApplication::activeWindow();
    ProgressBox progress(window);
    XdgFileTypes fileTypes(XdgPlace::OfUser(), &progress);
    Show({settings, desktop, looks, unseen, fileTypes}, Owner(window));
    if (!(unseen.CurrentFont() == before))
        Guarded(desktop, [&] { SaveTextFont(unseen, settings); });
}

} // namespace zelvane
