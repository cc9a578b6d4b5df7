// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

#include <QObject>
#include <QPointer>

namespace zelvane
{

class frmFind;

/// Binds the commands of the Edit and Search menus that transform and search the text, and answers the text
/// control's keys. Each is one step of undo.
class TextCommands : public QObject
{
    Q_OBJECT

public:
    explicit TextCommands(const WindowContext &context);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void RemoveCommentsQuietly();
    void ShowFind(bool replace);

    WindowContext m_context;
    QPointer<frmFind> m_find;
};

} // namespace zelvane
