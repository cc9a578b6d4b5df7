// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/keptclassesoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "platform/keptclasses.h"
#include "shell/textops.h"

using namespace zelvane;

namespace
{

void Check(const QString &oldText, const QByteArray &classes, const QString &newText)
{
    const QByteArray kept = KeptClasses(oldText, classes, newText, '9');
    const auto before = oracle::ClassedCharactersOf(oldText, classes);
    const auto after = oracle::ClassedCharactersOf(newText, QByteArray(newText.size(), '0'));
    const bool same = before.characters == after.characters && !newText.isEmpty();
    fuzz::ExpectSame("kept at all", !kept.isEmpty(), same, oldText, newText);
    const QByteArray bytes =
        KeptClasses(oldText.toUtf8(), oracle::ClassesOfBytes(oldText, classes), newText.toUtf8(), '9');
    fuzz::ExpectSame("size in bytes", bytes.size(), same ? newText.toUtf8().size() : 0, oldText, newText);
    if (!same)
        return;
    fuzz::ExpectSame("size", kept.size(), newText.size(), oldText, newText);
    fuzz::ExpectSame("classes", oracle::ClassedCharactersOf(newText, kept).classes, before.classes, oldText,
                     newText);
    // In bytes too each character keeps its class; a mark may take that of another neighbour.
    QByteArray narrow;
    for (qsizetype i = 0, at = 0; i < newText.size(); ++i) {
        narrow += newText[i].isLowSurrogate() ? narrow.back() : bytes[at];
        if (!newText[i].isLowSurrogate())
            at += newText.mid(i, newText[i].isHighSurrogate() ? 2 : 1).toUtf8().size();
    }
    fuzz::ExpectSame("classes of bytes", oracle::ClassedCharactersOf(newText, narrow).classes, before.classes,
                     oldText, newText);
}

} // namespace

/// The classes of a text that a command makes of another, and of any two.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const quint8 seed = input.Byte();
    const QString text = fuzz::WithoutHalves(input.Text());
    const QString other = fuzz::WithoutHalves(input.Text());
    QByteArray classes;
    for (qsizetype i = 0; i < text.size(); ++i)
        classes += text[i].isLowSurrogate() ? classes.back() : char('0' + (i * seed) % 7);
    Check(text, classes, other);
    Check(text, classes, CommentText(text, seed & 1));
    Check(text, classes, UncommentText(text));
    Check(text, classes, IndentText(text, QStringLiteral("\t")));
    Check(text, classes, UnindentText(text, QStringLiteral("\t")));
    return 0;
}
