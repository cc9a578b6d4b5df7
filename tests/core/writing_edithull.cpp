// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/edithull.h"

#include "platform/textbuffer.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

TEST(EditHull, CoversEachEdit)
{
    RandomText random({u"a"_s, u"b"_s, u"\n"_s}, 20);
    for (int i = 0; i < 5000; ++i) {
        const QString before = random.Next();
        QString text = before;
        EditHull hull;
        hull.Begin(text.size());
        ASSERT_TRUE(hull.IsEmpty());
        for (int n = random.Number(1, 4); n > 0; --n) {
            const int offset = random.Number(0, int(text.size()));
            const int removed = random.Number(0, int(text.size()) - offset);
            const QString added = random.Next().left(random.Number(0, 4));
            text.replace(offset, removed, added);
            hull.Add({offset, removed, added.size()});
        }
        const TextEdit all = hull.Hull();
        ASSERT_LE(all.offset + all.removed, before.size());
        ASSERT_GE(all.removed, 0);
        ASSERT_GE(all.added, 0);
        QString rebuilt = before;
        rebuilt.replace(all.offset, all.removed, text.sliced(all.offset, all.added));
        ASSERT_EQ(rebuilt, text);
    }
}

} // namespace

} // namespace zelvane::test
