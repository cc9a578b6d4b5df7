// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>
#include <vector>

namespace zelvane
{

class ElidedLabel;
struct pClass;

/// The status of the dialog: what is said of one p-field.
class StatementPanes : public QWidget
{
    Q_OBJECT

public:
    explicit StatementPanes(QWidget *parent);

    void ShowTexts(const QString &description, const QString &field, const QString &variable,
                   const QString &format);
    /// @param position from 1
    void ShowField(const pClass &field, qsizetype position);

private:
    std::vector<ElidedLabel *> lblStatus;
};

} // namespace zelvane
