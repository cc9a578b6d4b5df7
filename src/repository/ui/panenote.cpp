// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/ui/panenote.h"

namespace zelvane
{

PaneNote::PaneNote(QWidget *parent) : QLabel(parent)
{
    setWordWrap(true);
    hide();
}

void PaneNote::Tell(const QString &text)
{
    setText(text);
    setVisible(!text.isEmpty());
}

} // namespace zelvane
