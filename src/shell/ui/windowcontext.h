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
class Menus;
class SidePanel;
class TextControl;
struct DocumentSteps;
struct EditorContext;

/// What a room plugs into: it binds its commands, puts its controls into the band bar and the side panel,
/// shows its dialogs over the window, takes its places in the steps of a document, and adds what
/// follows the settings. The parts outlive
/// every room.
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
};

} // namespace zelvane
