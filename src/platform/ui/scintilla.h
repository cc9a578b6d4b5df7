// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The header of QScintilla needs the two keywords that this program is built without.
#include <QObject>
#define signals Q_SIGNALS
#define slots Q_SLOTS
#include <Qsci/qsciscintillabase.h>
#undef signals
#undef slots
