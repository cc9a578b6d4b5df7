// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

enum class FileOperation; // shell/command.h

// What other rooms do while a document is opened or made, or with a file that another room shows: one
// interface for each step. A method that a room does not have does nothing.

/// Colouring.
class ColourStep
{
public:
    virtual ~ColourStep() = default;
    /// Colours the whole document, quietly and without a trace in the undo buffer.
    virtual void performSyntaxHighlight() {}
    /// Colours a stretch that was put into the text, for what it is at its place. Undo stays as it is.
    /// @param start, end offsets from 0, end exclusive
    virtual void HighlightInserted(qsizetype /*start*/, qsizetype /*end*/) {}
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

/// What the shell does with any file, whether it is the document or not.
class FileStep
{
public:
    virtual ~FileStep() = default;
    /// Whether a room is there for it.
    virtual bool ServesFiles() const { return false; }
    /// Lets the user pick the program that opens the file.
    virtual void OpenWith(const QString & /*path*/) {}
    /// Asks what there is to ask, and tells of failures.
    /// @return whether files came, went or have other names now
    virtual bool RunFileOperation(FileOperation /*operation*/, const QString & /*path*/) { return false; }
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

/// The places of the steps that other rooms take.
struct DocumentSteps {
    StepPlace<ColourStep> colour;
    StepPlace<OutlineStep> outline;
    StepPlace<RelatedFilesStep> relatedFiles;
    StepPlace<HistoryStep> history;
    StepPlace<SoundStep> sound;
    StepPlace<FileStep> files;
};

} // namespace zelvane
