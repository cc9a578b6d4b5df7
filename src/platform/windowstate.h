// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace zelvane
{

/// How the window of a started program is shown. The numbers, from 0, are those of the settings store and of
/// the console's command line.
enum class WindowState { Hidden, Normal, Minimized, Maximized };

/// The state of a stored or given number; normal for a number that no state has.
constexpr WindowState WindowStateOf(int number)
{
    return number >= 0 && number <= int(WindowState::Maximized) ? WindowState(number) : WindowState::Normal;
}

} // namespace zelvane
