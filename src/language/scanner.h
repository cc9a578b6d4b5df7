// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/opcodelist.h"
#include "platform/stylerun.h"

#include <QStringView>
#include <vector>

namespace zelvane
{

/// What a scan looks for. Any other number scans nothing.
enum class ScanMode { None = 0, Orchestra = 1, Score = 2, Tags = 3 };

/// What a scan found. Runs are in rising order and do not overlap; the last may reach beyond the range, as a
/// comment is not bounded by it.
struct ScanResult {
    StyleRuns runs;
    /// A macro name ran to the very last character of the text, which ends the scan as a failure; the runs
    /// are those found before it.
    bool ranOffText = false;
};

/// The coloured stretches of [start, end) of the text; offsets from 0. An `end` of 0 means the end of the
/// text. A range beyond the text is cut to it.
ScanResult ScanRange(QStringView text, qsizetype start, qsizetype end, ScanMode mode,
                     const OpcodeList &opcodes);

/// The coloured stretches of a unified document: its tags, and over them what the orchestra scan finds
/// between the first CsInstruments tag and its closing one and the score scan between those of CsScore. The
/// result of scanning one after the other on the same text, each resetting its range.
StyleRuns ScanUnified(QStringView text, const OpcodeList &opcodes);

/// A stretch of a unified document that is scanned by itself; offsets from 0, end exclusive.
struct ScannedSection {
    qsizetype start = 0;
    qsizetype end = 0;
    ScanMode mode = ScanMode::None;
};

/// What stands between the first CsInstruments tag and its closing one, then the same of CsScore. A section
/// that lacks a tag is left out.
std::vector<ScannedSection> FindScannedSections(QStringView text);

} // namespace zelvane
