// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/synopsis.h"

#include <QHash>
#include <QString>
#include <QStringView>
#include <utility>
#include <vector>

namespace zelvane
{

/// The arguments of the opcodes by their types, from a text with one form a line: name, types of what it
/// gives, types of what it takes, "-" for none. Any other line is passed over.
class OpcodeArguments
{
public:
    OpcodeArguments() = default;
    explicit OpcodeArguments(const QString &text);

    bool Contains(QStringView opcode) const { return m_forms.contains(opcode); }
    /// The forms of an opcode, those that differ in the rates of arguments alone as one. Empty for an unknown
    /// name.
    std::vector<Synopsis> Forms(QStringView opcode) const;

private:
    using Form = std::pair<QStringView, QStringView>;

    QString m_text;
    QHash<QStringView, std::vector<Form>> m_forms; ///< views of m_text
};

/// The list that the program brings along.
QString ShippedOpcodeArguments();

} // namespace zelvane
