// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/instrclass.h"

#include <memory>
#include <QString>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

struct EditorContext;
struct LoadedStore;

/// Writes the characters & < > " ' ? as entities.
QString EscapeXmlValue(const QString &text);

/// The first instrument of that number; null when there is none.
/// @param xml of the element `instruments`; the document's store when it is empty
/// @param sort whether the p-fields are brought into order; the user is told where they cannot be
/// @throws RunTimeError for an attribute that does not convert, and for a p-field that is there twice
std::unique_ptr<InstrClass> LoadInstrument(EditorContext &editor, qint32 number, const QString &xml,
                                           bool sort);

/// Adds all instruments of the document's store. An error is shown and ends it; those before it stay.
/// @return what there is to know of the store when it is written again
LoadedStore LoadInstruments(EditorContext &editor, Instruments &instruments);

/// The element `instr`, with the values escaped once more than XML asks for: FormatXmlNode, which writes them
/// as they read, takes that back.
QString InstrToXml(const InstrClass &instrument);
/// The element `instruments`, without line ends. The p-fields are sorted before; of those that cannot be the
/// user is told, and they are written as they stand.
QString InstrumentsToXml(Instruments &instruments, Desktop &desktop);

/// The offset from 0 of the line behind the first "instr" of that number in the text; -1 when there is none,
/// or no line behind it. Comments count as text.
qint32 FindInstrStatement(QStringView text, qint32 number);

/// The assignments of an instrument's p-fields to their variables, a line each, with a line end before them
/// and a semicolon behind. Empty when the store has no such instrument. Line ends are CR LF.
/// @param comments whether name and description follow
/// @param ask for the variables that are missing, from p3 on; the answers are not stored
QString GenerateVariableCode(EditorContext &editor, qint32 number, bool comments, bool ask);

} // namespace zelvane
