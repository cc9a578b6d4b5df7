// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// Numeric editing.
#define ZELVANE_INSTRUMENT_KEYS(SETTING) SETTING(FlagKey, SliderNegative, false, KeyWriter::Preferences)

namespace zelvane::Keys
{
ZELVANE_INSTRUMENT_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
