// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ui/qtdesktop.h"
#include "shell/commandline.h"
#include "shell/documentkeys.h"
#include "shell/layoutkeys.h"
#include "shell/settings.h"
#include "uibench.h"
#include "window/ui/frmeditor.h"

#include <algorithm>
#include <memory>
#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

namespace zelvane::bench
{

/// Folders of its own for the process, and no screen; to be made before the application object.
struct OwnHome {
    QTemporaryDir home;

    OwnHome()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        for (const char *name :
             {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "XDG_STATE_HOME"})
            qputenv(name, home.path().toUtf8());
    }
};

/// Nobody sits before it: every question is answered No.
struct NobodysDesktop : QtDesktop {
    BoxAnswer MessageBox(const MessageBoxRequest &) override { return BoxAnswer::No; }
};

/// The window over a store and a folder of its own.
struct Program {
    QTemporaryDir folder;
    SettingsStore settings{folder.filePath(QStringLiteral("settings"))};
    NobodysDesktop desktop;
    std::unique_ptr<frmEditor> window;

    Program()
    {
        qputenv("ZELVANE_HOME", QFile::encodeName(QCoreApplication::applicationDirPath()));
        settings.SaveNumber(Keys::Used, 2);
        settings.SaveNumber(Keys::Startup, 2);
        window = std::make_unique<frmEditor>(settings, desktop, CommandLine({}));
        window->show();
        window->Init();
        QApplication::processEvents();
    }

    /// An orchestra file of about so many bytes, made once; written piece by piece so that little memory is
    /// touched.
    QString File(qsizetype size, bool accents = false) const
    {
        const QString name =
            folder.filePath(QStringLiteral("%1%2.orc").arg(accents ? u"accents" : u"").arg(size));
        QFile file(name);
        if (file.exists())
            return name;
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", qPrintable(name));
        const qsizetype pieceSize = std::min<qsizetype>(size, 1'000'000);
        const QByteArray piece = Orchestra(pieceSize - 1, accents) + '\n';
        for (qsizetype written = 0; written < size; written += pieceSize)
            file.write(piece);
        return name;
    }

    double OpenSeconds(qsizetype size)
    {
        const QString name = File(size);
        return Seconds([&] { window->Documents().OpenFile(name); });
    }
};

} // namespace zelvane::bench
