// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "texttools/ui/insertdialog.h"

#include <QtGlobal>

class QCheckBox;
class QComboBox;

namespace zelvane
{

/// The dialog of the orchestra header. The arrows of the control rate walk through the divisors of the sample
/// rate.
class frmHeader : public InsertDialog
{
    Q_OBJECT

public:
    frmHeader(EditorContext &editor, const DocumentSteps &steps, QWidget *parent);

private:
    void Insert() override;
    void KeepFields(qint32 sampleRate, qint32 controlRate);
    /// @throws RunTimeError for a number beyond 32 bits
    qint32 SampleRate() const;

    QComboBox *cmbSr;
    QLineEdit *txtKR;
    QLineEdit *txtChannels;
    QCheckBox *chkStartofFile;
};

} // namespace zelvane
