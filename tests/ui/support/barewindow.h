// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ui/textcontrol.h"
#include "shell/bands.h"
#include "shell/documentlifecycle.h"
#include "shell/documentsteps.h"
#include "shell/ui/appearance.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "shell/ui/layoutparts.h"
#include "shell/ui/menutable.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/windowcontext.h"
#include "shell/windowsteps.h"
#include "support/recordingview.h"
#include "support/testcontext.h"

#include <QFile>
#include <QMainWindow>
#include <QMenuBar>
#include <QString>

namespace zelvane::test
{

/// A window without any room: each test plugs in the one that it looks at.
struct BareWindow : TestContext {
    QMainWindow window;
    TextControl control{desktop, &window};
    RecordingView view;
    DocumentSteps steps;
    DocumentLifecycle documents{document, control, settings, desktop, status, view, steps};
    EditorContext withControl{document, control, settings, desktop, status, windows, documents};
    Commands commands{desktop, &window};
    Menus menus{window.menuBar(), &window, commands};
    BandBar bands{&window};
    SidePanel panel{&window};
    Appearance appearance{settings};
    WindowSteps windowSteps;
    LayoutParts layout{settings, commands};
    WindowContext context{withControl, control, documents, view,       steps,       commands, menus,
                          &window,     bands,   panel,     appearance, windowSteps, layout};

    BareWindow()
    {
        WriteFile(QStringLiteral("opcodes.txt"), "oscil outs linen oscil\n");
        qputenv("ZELVANE_HOME", QFile::encodeName(folder.path()));
    }

    template <typename Widget> Widget &Find(const QString &name)
    {
        auto *found = window.findChild<Widget *>(name);
        if (!found)
            qFatal("no child named %s", qPrintable(name));
        return *found;
    }
    bool Has(WindowBand band) const { return bands.IsBandVisible(band); }
};

} // namespace zelvane::test
