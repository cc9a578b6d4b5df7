// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/fileassociations.h"

#include "platform/desktop.h"
#include "platform/programinfo.h"
#include "platform/runtimeerror.h"
#include "platform/xdgfiletypes.h"
#include "shell/documentkind.h"

#include <QCoreApplication>
#include <QFile>
#include <QIODevice>
#include <QtGlobal>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// The windows bring the icon along; without them there is none.
QByteArray ProgramIcon()
{
    QFile file(u":/zelvane/icons/zelvane.svg"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

ProgramFiles CsoundFiles(const ExtensionFields &fields, const QString &executable, const QByteArray &icon)
{
    const QString title = ApplicationTitle();
    ProgramFiles files{
        .title = title,
        .kind = u"Csound Editor"_s,
        .summary = u"Write, render and hear Csound pieces"_s,
        .keywords = {u"csound"_s, u"music"_s, u"composition"_s, u"synthesis"_s, u"orchestra"_s, u"score"_s,
                     u"csd"_s},
        .description = u"Csound Document"_s,
        .executable = executable,
        .icon = icon,
        .types = {},
        .verbs = {{.caption = title},
                  {.key = u"runcsound"_s, .caption = u"Run &Csound"_s, .parameters = u"/r"_s},
                  {.key = u"preset"_s, .caption = u"Run "_s + title + u" &Preset"_s, .parameters = u"/p"_s}},
        .actions = {{.key = u"new-window"_s, .caption = u"New Window"_s, .parameters = u"/i"_s}}};
    const auto add = [&](const QString &name, const QString &extensions, const QStringList &beginnings = {}) {
        if (const QStringList list = SplitExtensions(extensions); !list.isEmpty())
            files.types.push_back({name, list, beginnings});
    };
    add(u"text/x-csound-orc"_s, fields.orchestra);
    add(u"text/x-csound-sco"_s, fields.score);
    // Csound takes the tag in any case, and in two spellings.
    add(u"text/x-csound-csd"_s, fields.unified,
        {u"<CsoundSynthesi"_s, u"<csoundsynthesi"_s, u"<CSOUNDSYNTHESI"_s});
    return files;
}

void AssociateExtensions(const ExtensionFields &fields, Desktop &desktop, FileTypeRegistry &registry)
{
    const QString title = ApplicationTitle();
    const QStringList names =
        SplitExtensions(fields.orchestra) + SplitExtensions(fields.score) + SplitExtensions(fields.unified);
    const MessageBoxRequest question{
        .text = title + u" will register the following file extensions: \n"_s + names.join(u' ') +
                u"\nYou'll be able to use the Run Csound dialog and the Presets directly from the shell "
                "(really cool!). Do you want to continue?"_s,
        .icon = BoxIcon::Question,
        .buttons = BoxButtons::YesNo,
        .title = u"Associate extensions"_s};
    if (desktop.MessageBox(question) != BoxAnswer::Yes)
        return;
    try {
        registry.Register(CsoundFiles(fields, QCoreApplication::applicationFilePath(), ProgramIcon()));
    } catch (const RunTimeError &error) {
        qWarning("%s", error.what());
        desktop.MessageBox({.text = u"An error has occured while trying to write on the registry."_s,
                            .icon = BoxIcon::Critical});
        return;
    }
    desktop.MessageBox({.text = u"Extensions have been succesfully associated with "_s + title,
                        .icon = BoxIcon::Information});
}

void FollowMovedProgram()
{
    try {
        FollowProgram(CsoundFiles({}, QCoreApplication::applicationFilePath(), {}));
    } catch (const RunTimeError &error) {
        qWarning("%s", error.what()); // nobody has asked for it
    }
}

} // namespace zelvane
