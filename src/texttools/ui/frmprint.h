// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/printing.h"
#include "platform/ui/progressbox.h"

#include <memory>
#include <QString>

class QPrinter;
class QWidget;

namespace zelvane
{

/// The form of the print dialog, `cmPrint`, which is all that it shows. The printer stays as it was set for
/// as long as the form lives.
class frmPrint : public Printing
{
public:
    /// @param window that the dialog stands over
    explicit frmPrint(QWidget *window);
    ~frmPrint() override;

    PrintedPart ShowPrinter(const QString &title, bool selected) override;
    void Print(const StyledText &text) override;

private:
    QWidget *m_window;
    ProgressBox m_progress;
    QString m_title;
    std::unique_ptr<QPrinter> m_printer; ///< to look for printers takes time: not before the first dialog
};

} // namespace zelvane
