// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

struct DocumentSteps;
struct EditorContext;

/// What the user asks for: the assignments of an instrument's p-fields to its variables.
struct MappingRequest {
    QString number; ///< of the instrument, as it was typed
    bool comments = false;
    bool ask = false; ///< for variables that are missing
};

enum class MappingResult {
    Finished,
    NumberIsMissing, ///< the user has been told, and may type one
    DataIsMissing,   ///< the user has been told
};

/// Writes the assignments into the first mapping block behind the line of the instrument, be it another
/// instrument's, or into a new one right below that line.
/// @throws RunTimeError 6 "Overflow" for a number beyond 16 bits, 5 where the text has no such instrument
MappingResult MapParameters(EditorContext &editor, const DocumentSteps &steps, const MappingRequest &request);

} // namespace zelvane
