// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

// What other rooms do while a document is opened or made: one interface for each step. A method that a room
// does not have does nothing.

/// Colouring.
class ColourStep
{
public:
    virtual ~ColourStep() = default;
    /// Colours the whole document, quietly and without a trace in the undo buffer.
    virtual void performSyntaxHighlight() {}
};

/// The code outline.
class OutlineStep
{
public:
    virtual ~OutlineStep() = default;
    /// Brings the tree's selection mode in line with the setting.
    virtual void ApplySingleSelection() {}
    virtual bool OutlineShown() const { return false; }
    virtual void BuildOutline() {}
};

/// The list of related files.
class RelatedFilesStep
{
public:
    virtual ~RelatedFilesStep() = default;
    virtual bool RelatedFilesShown() const { return false; }
    virtual void BuildRelatedFiles() {}
    virtual void ClearRelatedFiles() {}
};

/// The history of documents behind the buttons back and next.
class HistoryStep
{
public:
    virtual ~HistoryStep() = default;
    virtual void navBeforeOpen() {}
    virtual void navAfterOpen() {}
};

/// The sound that belongs to the document, and the player of any other.
class SoundStep
{
public:
    virtual ~SoundStep() = default;
    virtual void SearchSoundFile() {}
    /// Plays a sound file; a failure is shown.
    virtual void MCIopen(const QString & /*path*/) {}
};

/// The place of a step. Until a room takes it, a step stands there that does nothing, so that a list of steps
/// asks no questions.
template <typename Step> class StepPlace
{
public:
    StepPlace() = default;
    StepPlace(const StepPlace &) = delete;
    StepPlace &operator=(const StepPlace &) = delete;

    /// @param step has to outlive the last document that is opened
    void Take(Step &step) { m_step = &step; }
    Step *operator->() const { return m_step; }

private:
    Step m_nothing;
    Step *m_step = &m_nothing;
};

/// The places of the steps that other rooms take in opening and making a document.
struct DocumentSteps {
    StepPlace<ColourStep> colour;
    StepPlace<OutlineStep> outline;
    StepPlace<RelatedFilesStep> relatedFiles;
    StepPlace<HistoryStep> history;
    StepPlace<SoundStep> sound;
};

} // namespace zelvane
