// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/command.h"

namespace zelvane
{

QString Command::RowName() const
{
    const QString name = QStringView(m_name).toString();
    return m_entry == Single ? name : name + u'_' + QString::number(m_entry);
}

} // namespace zelvane
