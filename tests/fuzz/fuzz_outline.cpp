// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/outlineoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "language/outline.h"
#include "shell/document.h"

#include <vector>

using namespace zelvane;
namespace oracle = zelvane::test::oracle;

namespace
{

/// Every node is found by its key, and stands among its parent's children at its row.
void CheckTree(const Outline &outline, const QString &text)
{
    qsizetype below = outline.ChildCount(-1);
    for (qsizetype place = 0; place < outline.Count(); ++place) {
        const OutlineNode node = outline.At(place);
        fuzz::ExpectSame("found by its key", outline.Find(outline.Key(place)), place, text);
        fuzz::Expect("parent before its children", node.parent < place, text, place);
        const qsizetype row = outline.Row(place);
        fuzz::Expect("row", row >= 0 && row < outline.ChildCount(node.parent), text, place);
        fuzz::ExpectSame("child", outline.Child(node.parent, row), place, text);
        below += outline.ChildCount(place);
    }
    fuzz::ExpectSame("each node once", below, outline.Count(), text);
}

/// The places in the order of a walk through the tree.
std::vector<qsizetype> Walk(const Outline &outline)
{
    std::vector<qsizetype> walked, open{-1};
    while (!open.empty()) {
        const qsizetype place = open.back();
        open.pop_back();
        if (place >= 0)
            walked.push_back(place);
        for (qsizetype row = outline.ChildCount(place); row > 0; --row)
            open.push_back(outline.Child(place, row - 1));
    }
    return walked;
}

} // namespace

/// The outline of any text, node by node, beside its loops.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr qsizetype longest = 160; // the loops look at each character for each word

    fuzz::Input input(data, size);
    const FileKind kinds[] = {FileKind::Orchestra, FileKind::Score, FileKind::Unified, FileKind::Other};
    const FileKind kind = kinds[input.Number(0, 3)];
    const QString text = fuzz::WithoutHalves(input.Text()).left(longest);

    oracle::OutlineLoops loops;
    loops.BuildOutline(text, int(kind));
    const Outline outline = ScanOutline(text, kind);
    fuzz::ExpectSame("nodes", outline.Count(), qsizetype(loops.tree.size()), text, int(kind));
    const std::vector<qsizetype> walked = Walk(outline);
    fuzz::ExpectSame("reached", qsizetype(walked.size()), outline.Count(), text, int(kind));
    for (qsizetype at = 0; at < outline.Count(); ++at) {
        const qsizetype place = walked[size_t(at)];
        const OutlineNode node = outline.At(place);
        const oracle::TreeNode &expected = loops.tree[at];
        fuzz::ExpectSame("key", outline.Key(place), expected.key, text, int(kind));
        fuzz::ExpectSame("parent", node.parent < 0 ? QString() : outline.Key(node.parent), expected.parent,
                         text, int(kind));
        fuzz::ExpectSame("caption", outline.Caption(place), expected.caption, text, int(kind));
        fuzz::ExpectSame("image", QString(ImageOfKind(node.kind)), expected.image, text, int(kind));
        fuzz::ExpectSame("tag", node.isRoot ? QString() : QString::number(node.tag), expected.tag, text,
                         int(kind));
        fuzz::ExpectSame("commented", node.isCommented, expected.grey, text, int(kind));
    }
    for (qsizetype n = 1; n < loops.instrStart.size(); ++n)
        fuzz::Expect("instrument", outline.Instrument(n) == TextSpan{loops.instrStart[n], loops.instrEnd[n]},
                     text, n);
    CheckTree(outline, text);
    return 0;
}
