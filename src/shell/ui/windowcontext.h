// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace zelvane
{

class Appearance;
class BandBar;
class Commands;
class DocumentLifecycle;
class DocumentView;
class LayoutParts;
class Menus;
class SidePanel;
class TextControl;
class WindowSteps;
struct DocumentSteps;
struct EditorContext;

/// What a room plugs into: it binds its commands, puts its controls into the band bar and the side panel,
/// shows its dialogs over the window, takes its places in the steps of a document and of the window, keeps
/// its parts of the layout, and adds what follows the settings. What is here outlives every room.
struct WindowContext {
    EditorContext &editor;
    TextControl &text;
    DocumentLifecycle &documents;
    DocumentView &view;
    DocumentSteps &steps;
    Commands &commands;
    Menus &menus;
    QWidget *window; ///< the parent of dialogs and of what lives as long as the window
    BandBar &bands;
    SidePanel &panel;
    Appearance &appearance;
    WindowSteps &windowSteps;
    LayoutParts &layout;
};

} // namespace zelvane
