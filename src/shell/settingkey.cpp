// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/settingkey.h"

namespace zelvane
{

QString SettingKey::Name() const
{
    QString name = QStringView(stem).toString();
    if (number > 0)
        name += QString::number(number);
    return name;
}

} // namespace zelvane
