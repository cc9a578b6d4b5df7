// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/ui/boundcommands.h"
#include "writing/ui/writingaid.h"

#include <QObject>
#include <QPointer>

class QEvent;

namespace zelvane
{

class frmFindInFiles;

/// Finds in the files of a folder: the command and its dialog.
class FileFinder : public QObject, public WritingAid
{
    Q_OBJECT

public:
    explicit FileFinder(const WritingContext &context);
    ~FileFinder() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ShowDialog();

    const WindowContext &m_window;
    BoundCommands m_commands;
    QPointer<frmFindInFiles> m_dialog;
};

} // namespace zelvane
