// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace zelvane
{

/// Brings a window to the front, out of the task bar too, and gives it the keyboard: the user has asked for
/// it by opening a file from elsewhere, so the window manager is not to hold it back.
void RaiseWindow(QWidget &window);

/// Makes a window an owned one of another: it stays above it, and the window manager is told at once, which
/// the toolkit by itself does only when it shows a window. To be called before the owner is shown, so that it
/// never comes above the window, and again after.
void KeepAbove(QWidget &window, QWidget &owner);

/// Waits until a window that has just been shown stands on the screen, half a second at most, and paints it:
/// before long work, in which nothing is painted. The user's input waits.
void PaintOnScreen(QWidget &window);

/// Hands what has been asked of the window system over to it, without serving an event: for use before a
/// wait.
void FlushWindowSystem();

} // namespace zelvane
