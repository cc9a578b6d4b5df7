// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/documentsteps.h"
#include "shell/documentview.h"

#include <functional>
#include <map>

namespace zelvane::test
{

/// The window and the rooms of the core tests: they write down what is done to them, in order.
struct RecordingView : DocumentView, ColourStep, OutlineStep, RelatedFilesStep, HistoryStep, SoundStep {
    DocumentSteps steps; ///< every place is taken by this object
    QStringList calls;
    QString caption;
    bool busy = false;
    bool textShown = true;
    bool saveEnabled = false;
    std::map<Command, bool> enabled; ///< as EnableCommand left the commands
    QStringList recentFiles;
    FileKind chosenKind = FileKind::Cancelled;
    bool outlineShown = false;
    bool relatedFilesShown = false;
    std::function<void()> duringHighlight;

    RecordingView()
    {
        steps.colour.Take(*this);
        steps.outline.Take(*this);
        steps.relatedFiles.Take(*this);
        steps.history.Take(*this);
        steps.sound.Take(*this);
    }

    void ShowCaption(const QString &newCaption) override
    {
        caption = newCaption;
        calls.append(QStringLiteral("caption ") + newCaption);
    }
    void SetBusy(bool newBusy) override
    {
        busy = newBusy;
        calls.append(newBusy ? QStringLiteral("busy") : QStringLiteral("ready"));
    }
    void HideText() override
    {
        textShown = false;
        calls.append(QStringLiteral("hide"));
    }
    void ShowText() override
    {
        textShown = true;
        calls.append(QStringLiteral("show"));
    }
    void FocusText() override { calls.append(QStringLiteral("focus")); }
    void ApplyTextColours() override { calls.append(QStringLiteral("colours")); }
    void EnableSaveButton(bool newEnabled) override
    {
        saveEnabled = newEnabled;
        calls.append(newEnabled ? QStringLiteral("save on") : QStringLiteral("save off"));
    }
    void EnableCommand(Command command, bool newEnabled) override
    {
        if (enabled.empty())
            calls.append(QStringLiteral("enable"));
        enabled[command] = newEnabled;
    }
    void ShowRecentFiles(const QStringList &files) override
    {
        recentFiles = files;
        calls.append(QStringLiteral("recent"));
    }
    FileKind ChooseNewKind() override
    {
        calls.append(QStringLiteral("choose"));
        return chosenKind;
    }
    void SelectionChanged() override { calls.append(QStringLiteral("selection")); }
    void navBeforeOpen() override { calls.append(QStringLiteral("before")); }
    void performSyntaxHighlight() override
    {
        calls.append(QStringLiteral("highlight"));
        if (duringHighlight)
            duringHighlight();
    }
    void ApplySingleSelection() override { calls.append(QStringLiteral("single")); }
    bool OutlineShown() const override { return outlineShown; }
    void BuildOutline() override { calls.append(QStringLiteral("outline")); }
    bool RelatedFilesShown() const override { return relatedFilesShown; }
    void BuildRelatedFiles() override { calls.append(QStringLiteral("related")); }
    void ClearRelatedFiles() override { calls.append(QStringLiteral("clear related")); }
    void SearchSoundFile() override { calls.append(QStringLiteral("sound")); }
    void navAfterOpen() override { calls.append(QStringLiteral("after")); }
};

} // namespace zelvane::test
