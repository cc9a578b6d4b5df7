// SPDX-License-Identifier: GPL-3.0-or-later
#include <clocale>
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QTemporaryDir>

/// Every core test runs in the C locale, with home, configuration, data and runtime folders of its own.
int main(int argc, char **argv)
{
    QTemporaryDir home;
    for (const char *name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "ZELVANE_HOME"})
        qputenv(name, home.path().toUtf8());
    for (const char *name : {"SFDIR", "SSDIR", "SADIR", "INCDIR"})
        qunsetenv(name);
    qputenv("LC_ALL", "C.UTF-8");
    QCoreApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
