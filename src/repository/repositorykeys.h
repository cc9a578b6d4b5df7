// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// The dialog of the code repository.
#define ZELVANE_REPOSITORY_KEYS(SETTING)                                                                     \
    SETTING(FlagKey, CodeRepositorySingleSel, false)                                                         \
    SETTING(NumberKey, CodeRepositorySort, 0)

namespace zelvane::Keys
{
ZELVANE_REPOSITORY_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
