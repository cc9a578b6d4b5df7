// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/editorwindow.h"
#include "support/modaldriver.h"

#include <functional>
#include <QAction>
#include <QString>
#include <QTest>

namespace zelvane::test
{

/// A main window, and a script for a dialog that one of its menu rows opens.
template <typename Dialog> struct DialogWindow : EditorWindow {
    ModalDriver driver;
    Dialog *dialog = nullptr; ///< while it is open

    /// Opens the dialog by its menu row; `script` has to end it.
    template <typename Shown = Dialog> void ShowBy(const QString &row, const std::function<void()> &script)
    {
        driver.Expect<Shown>([this, script](Shown &shown) {
            dialog = &shown;
            QVERIFY(dialog->isModal());
            script();
        });
        QVERIFY(Row(row).isEnabled());
        Row(row).trigger();
        dialog = nullptr;
    }
};

} // namespace zelvane::test
