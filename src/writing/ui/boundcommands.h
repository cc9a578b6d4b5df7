// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/ui/commands.h"

#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

namespace zelvane
{

/// The commands of an aid: bound as long as the object lives.
class BoundCommands
{
public:
    explicit BoundCommands(Commands &commands) : m_commands(commands) {}
    ~BoundCommands()
    {
        for (const std::function<void()> &unbind : m_unbind)
            unbind();
    }
    BoundCommands(const BoundCommands &) = delete;
    BoundCommands &operator=(const BoundCommands &) = delete;

    void Bind(Command command, std::function<void()> handler)
    {
        m_commands.Bind(command, std::move(handler));
        m_unbind.emplace_back([this, command] { m_commands.Unbind(command); });
    }
    template <typename Entry>
    void Bind(CommandArray<Entry> array, std::type_identity_t<std::function<void(Entry)>> handler)
    {
        m_commands.Bind(array, std::move(handler));
        m_unbind.emplace_back([this, array] { m_commands.Unbind(array); });
    }

private:
    Commands &m_commands;
    std::vector<std::function<void()>> m_unbind;
};

} // namespace zelvane
