// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/helpviewer.h"
#include "writing/synopsis.h"

#include <optional>
#include <QHash>
#include <QString>
#include <QStringView>
#include <vector>

namespace zelvane
{

/// The forms of an opcode that a page of a manual shows: what its `<pre class="synopsis">` hold.
std::vector<Synopsis> ReadManualPage(const QString &html, const QString &opcode);

/// The forms of opcodes as the manual on this machine's disk has them. Each page is read once.
class ManualSynopses
{
public:
    /// @param helpFile names the manual; empty for none. Another one than before takes its place.
    void SetHelpFile(const QString &helpFile);
    /// Empty where the manual has no page of the opcode, or lies elsewhere.
    const std::vector<Synopsis> &Forms(const QString &opcode);

private:
    QString m_helpFile;
    std::optional<Manual> m_manual;
    QHash<QString, std::vector<Synopsis>> m_read;
};

} // namespace zelvane
