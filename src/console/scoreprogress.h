// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QStringView>

namespace zelvane
{

/// How far a render has come, where a line of Csound's output tells it ("B 0.000 .. 3.000 T 3.000 TT 3.000
/// M: 0.2"; no blank stands before a long number). @return seconds of sound since the start of the score
std::optional<double> ScoreProgress(QStringView line);

} // namespace zelvane
