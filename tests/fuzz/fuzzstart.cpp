// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/fuzzstart.h"

#include <clocale>
#include <cstdio>
#include <QByteArray>
#include <QCoreApplication>
#include <QTemporaryDir>

namespace zelvane::fuzz
{

const QString &WorkFolder()
{
    static const QTemporaryDir folder;
    static const QString path = folder.path();
    return path;
}

} // namespace zelvane::fuzz

/// Every target runs in the C locale, with home, configuration, data and runtime folders of its own.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    const QByteArray folder = zelvane::fuzz::WorkFolder().toUtf8();
    for (const char *name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "ZELVANE_HOME"})
        qputenv(name, folder);
    for (const char *name : {"SFDIR", "SSDIR", "SADIR", "INCDIR"})
        qunsetenv(name);
    qputenv("LC_ALL", "C.UTF-8");
    static int count = 1;
    static QCoreApplication application(count, *argv);
    Q_UNUSED(argc);
    std::setlocale(LC_NUMERIC, "C");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type == QtFatalMsg) // a failed assertion; warnings would be the slowest part of a run
            std::fprintf(stderr, "%s\n", text.toUtf8().constData());
    });
    return 0;
}
