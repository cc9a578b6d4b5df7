// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <QtGlobal>

class QPagedPaintDevice;
class QPrinter;
class QString;

namespace zelvane
{

class WorkProgress;
struct StyledText;

/// How a text comes on pages.
struct PageOrder {
    int first = 1;        ///< page, counted from 1
    int last = 0;         ///< page; 0 for the last one that there is
    bool inColour = true; ///< else in tones of grey
};

/// Paints a coloured text on pages, in its font and between the margins of the device; lines that are too
/// long go on in the next one. The number of the page stands in the bottom margin.
/// @param goOn asked on each page, with the characters that are done and all there are; false ends it
/// @return whether all was painted; a device that gets no page is not begun
/// @throws RunTimeError when the device fails
bool PaintPages(const StyledText &text, QPagedPaintDevice &device, const PageOrder &order,
                const std::function<bool(qint64 done, qint64 total)> &goOn = {});

/// Counts the pages that PaintPages makes, up to the last one asked for, and does not begin the device.
/// @return no value when `goOn` has ended it
/// @throws RunTimeError when the device has no room for text
std::optional<int> CountPages(const StyledText &text, QPagedPaintDevice &device, const PageOrder &order,
                              const std::function<bool(qint64 done, qint64 total)> &goOn = {});

/// Prints a coloured text as the printer was set in its dialog. A file that it goes to is written in one
/// step, when all pages are there. A printer gets its job only when the user can stop it no more; what
/// becomes of the job in the queue is not known here.
/// @param title of the job
/// @throws RunTimeError when the printer is gone, it or the file fails, or the text has no such pages
void PrintOn(QPrinter &printer, const StyledText &text, const QString &title, WorkProgress &progress);

} // namespace zelvane
