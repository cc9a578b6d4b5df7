// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "player/fileproperties.h"

#include <QDialog>
#include <QString>
#include <vector>

class QPushButton;

namespace zelvane
{

/// What the system knows of a file, for desktops that have no such view. The texts can be selected and
/// copied.
class frmProperties : public QDialog
{
    Q_OBJECT

public:
    frmProperties(const QString &name, const std::vector<FileProperty> &properties,
                  QWidget *parent = nullptr);

private:
    QPushButton *cmdClose;
};

} // namespace zelvane
