// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/runtimeerror.h"
#include "shell/settings.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <QString>
#include <QTemporaryDir>
#include <vector>

namespace zelvane::test
{

/// A store in a folder of its own.
struct SettingsFixture : ::testing::Test {
    QTemporaryDir folder;
    SettingsStore store{folder.filePath(QStringLiteral("settings"))};

    /// What the store has noted; a test failure when it is not one value.
    ErrorNumber Noted()
    {
        const std::vector<UnreadableSetting> noted = store.TakeUnreadable();
        EXPECT_EQ(noted.size(), 1u);
        if (noted.empty())
            return ErrorNumber::InvalidCall;
        const RunTimeError &error = noted.front().error;
        EXPECT_EQ(error.Description(), error.Number() == ErrorNumber::Overflow
                                           ? QStringLiteral("Overflow")
                                           : QStringLiteral("Type mismatch"));
        return error.Number();
    }
};

} // namespace zelvane::test
