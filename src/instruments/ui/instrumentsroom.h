// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace zelvane
{

struct WindowContext;

/// The descriptions of instruments in the window, and the dialogs that build on them.
class InstrumentsRoom
{
public:
    explicit InstrumentsRoom(const WindowContext &context);
};

} // namespace zelvane
