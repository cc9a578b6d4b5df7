// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/instrclass.h"
#include "platform/textbuffer.h"

#include <memory>
#include <optional>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace zelvane
{

struct DocumentSteps;
struct EditorContext;

// A score statement of the document as p-fields, and back.

/// The statement that the caret was in, and its instrument, whose p-fields hold the statement's values.
struct StatementFields {
    std::unique_ptr<InstrClass> instrument; ///< its p-fields are in order, p1 first
    TextSpan range;                         ///< of the statement in the document
    QString text;                           ///< in that range
};

/// Reads the statement at the caret. A token without a stored p-field gets one of its own.
/// @return nothing when there is no statement, or its instrument is not in order: the user has been told of
/// that; also when the statement has no token that something follows
/// @throws RunTimeError for data that does not convert, and for more than 32767 tokens
std::optional<StatementFields> ReadStatement(EditorContext &editor);

/// Puts the values into the statement, as one edit, and colours it.
void RewriteStatement(EditorContext &editor, const DocumentSteps &steps, const StatementFields &fields);

/// The groups of an instrument's p-fields in their order, each once; NoGroup for those without.
QStringList GroupsOf(const InstrClass &instrument);
/// The row of the groups that stands for none.
QString NoGroup();
/// The row of a p-field's group.
QString GroupRow(const pClass &field);

/// What stands before a p-field's row, with a mark before its key. @param position from 1
QString FieldCaption(const pClass &field, qsizetype position);
/// @param position from 1
QString FieldHint(const pClass &field, qsizetype position);
QString SliderHint(const pClass &field);
/// "p" and the position, which counts from 1.
QString FieldName(qsizetype position);
/// The word for what a value is.
QString FormatWord(PFormat format);

} // namespace zelvane
