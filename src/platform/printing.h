// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

struct StyledText;

/// What of a text is to be printed.
enum class PrintedPart { All, Selection };

/// The print dialog of the desktop, and the printer that was chosen in it.
class Printing
{
public:
    virtual ~Printing() = default;
    /// Shows the dialog.
    /// @param title of the print job
    /// @param selected whether there is a selection, which is then what is offered
    /// @throws RunTimeError DialogCancelled on Cancel
    virtual PrintedPart ShowPrinter(const QString &title, bool selected) = 0;
    /// Prints on the chosen printer, until the user stops it.
    /// @throws RunTimeError when the printer fails
    virtual void Print(const StyledText &text) = 0;
};

} // namespace zelvane
