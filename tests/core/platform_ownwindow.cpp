// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ownwindow.h"

#include <gtest/gtest.h>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

struct HasOwnWindowTest : testing::Test {
    QTemporaryDir folder;
    QByteArray oldData = qgetenv("XDG_DATA_HOME");
    QByteArray oldPath = qgetenv("PATH");

    void SetUp() override
    {
        qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
        qputenv("PATH", folder.path().toLocal8Bit() + ":" + oldPath);
        QDir(folder.path()).mkpath(u"applications/more"_s);
    }
    void TearDown() override
    {
        qputenv("XDG_DATA_HOME", oldData);
        qputenv("PATH", oldPath);
    }
    QString Program(const QString &name) const { return Write(name, "#!/bin/sh\nexit 0\n"); }
    QString Write(const QString &name, const QByteArray &text) const
    {
        const QString path = folder.path() + u'/' + name;
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            return {};
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
};

} // namespace

TEST_F(HasOwnWindowTest, IsToldByDesktopEntries)
{
    const QString window = Program(u"window"_s);
    const QString quoted = Program(u"with blank"_s);
    const QString plain = Program(u"plain"_s);
    const QString terminal = Program(u"terminal"_s);
    const QString set = Program(u"set"_s);
    Write(u"applications/t.desktop"_s,
          "[Desktop Entry]\nType=Application\nExec=env A=b \"C=d e\" -i set %f\n");
    Write(u"applications/u.desktop"_s, "[Desktop Entry]\nType=Application\nExec=env\n");
    Write(u"applications/a.desktop"_s, "[Desktop Entry]\nType=Application\nExec=window --new %f\n");
    Write(u"applications/more/b.desktop"_s,
          "[Desktop Entry]\nType=Application\nNoDisplay=true\nExec=\"" + quoted.toUtf8() + "\" %U\n");
    Write(u"applications/c.desktop"_s, "[Desktop Entry]\nType=Application\nTerminal=true\nExec=terminal\n");
    Write(u"applications/d.desktop"_s,
          "[Desktop Entry]\nType=Application\nExec=/bin/sh -c plain\n[Desktop Action x]\nExec=plain\n");
    EXPECT_TRUE(HasOwnWindow(window));
    EXPECT_TRUE(HasOwnWindow(quoted));
    EXPECT_TRUE(HasOwnWindow(set)) << "behind its variables";
    EXPECT_FALSE(HasOwnWindow(plain));
    EXPECT_FALSE(HasOwnWindow(terminal));
    EXPECT_FALSE(HasOwnWindow(u"/bin/sh"_s)) << "an interpreter";
    const QString link = folder.path() + u"/link"_s;
    ASSERT_TRUE(QFile::link(window, link));
    EXPECT_TRUE(HasOwnWindow(link));
}

TEST_F(HasOwnWindowTest, WhatHandsAFileOverNeedsNoConsole)
{
    EXPECT_TRUE(HasOwnWindow(Program(u"xdg-open"_s)));
    EXPECT_FALSE(HasOwnWindow(Program(u"xdg-open-all"_s)));
}

TEST_F(HasOwnWindowTest, AnotherProgramOfTheSameNameIsNotMeant)
{
    const QString window = Program(u"window"_s);
    QDir(folder.path()).mkpath(u"other"_s);
    const QString other = Program(u"other/window"_s);
    Write(u"applications/a.desktop"_s, "[Desktop Entry]\nType=Application\nExec=window\n");
    EXPECT_FALSE(HasOwnWindow(other));
}
