// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "writing/caretplace.h"
#include "writing/manualsynopsis.h"
#include "writing/opcodearguments.h"
#include "writing/synopsis.h"
#include "writing/textnames.h"
#include "writing/wordlist.h"

#include <array>

using namespace zelvane;

namespace
{

const NameKinds AllKinds{NameKind::Opcode,     NameKind::UserOpcode, NameKind::Macro,
                         NameKind::Instrument, NameKind::Table,      NameKind::Word};

QString Small(QString text)
{
    for (QChar &c : text)
        c = c.toLower();
    return text;
}

/// The places of a synopsis lie in its text, in order.
void CheckPlaces(const Synopsis &form, const QString &opcode)
{
    fuzz::Expect("name", form.text.mid(form.name.start, form.name.Length()) == opcode, form.text, opcode);
    qsizetype from = form.name.end;
    for (const TextSpan &argument : form.arguments) {
        fuzz::Expect("argument", argument.start >= from && argument.start < argument.end, form.text, from);
        from = argument.end;
    }
    fuzz::Expect("end", from <= form.text.size(), form.text, from);
    for (int argument = -1; argument < 4; ++argument)
        fuzz::Expect("rich text", !form.RichText(argument).isEmpty(), form.text, argument);
}

} // namespace

/// The names of a text, the answers to a word, the call at a place, and files and pages with arguments.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const int chosen = input.Number(0, 65535);
    const QString text = input.Text();
    const QString typed = input.Text();
    const qsizetype place = fuzz::Place(chosen, text.size());

    const TextNames names = FindNames(text, chosen % 2 == 0);
    qsizetype from = 0;
    for (const TextSpan &comment : names.blockComments) {
        fuzz::Expect("comment", comment.start >= from && comment.end > comment.start, text, comment.start);
        from = comment.end;
    }
    fuzz::Expect("comments", from <= text.size(), text, from);
    const std::array<const WordList *, 2> lists = {&names.code, &names.comments};
    for (const Completion &completion : Complete(typed, WordList(), lists, AllKinds, 50))
        fuzz::Expect("completion", Small(completion.text).contains(Small(typed)), text, typed);

    const auto call = FindCall(text, place, [](QStringView name) { return name.size() % 2 == 1; });
    if (call)
        fuzz::Expect("call", call->opcode.size() % 2 == 1 && call->argument >= -1, text, place);
    if (const auto word = FindWord(text, place))
        fuzz::Expect("word", word->span.start <= place && word->span.end >= place, text, place);

    if (const auto form = ReadSynopsis(text, typed))
        CheckPlaces(*form, typed);
    for (const Synopsis &form : ReadManualPage(text, typed))
        CheckPlaces(form, typed);
    for (const Synopsis &form : OpcodeArguments(text).Forms(typed))
        CheckPlaces(form, typed);
    for (const UserOpcode &opcode : names.opcodes)
        CheckPlaces(SynopsisOf(opcode), opcode.name);
    return 0;
}
