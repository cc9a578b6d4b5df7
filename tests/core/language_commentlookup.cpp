// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/commentlookup.h"

#include "language/blockcomments.h"
#include "shell/textops.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(CommentLookup, AnswersAsIsCommentedInAnyOrder)
{
    RandomText random({u"/*"_s, u"*/"_s, u"/"_s, u"*"_s, u";"_s, u"\n"_s, u"\r"_s, u"a"_s}, 16);
    for (int i = 0; i < 20000; ++i) {
        const QString text = random.Next();
        const auto comments = ParseCommentRanges(text);
        CommentLookup rising(text, comments);
        for (qsizetype at = 0; at < text.size(); ++at)
            ASSERT_EQ(rising.IsCommented(at), IsCommented(text, at, comments))
                << ::testing::PrintToString(text) << ' ' << at;
        CommentLookup any(text, comments);
        for (int asked = 0; asked < 20 && !text.isEmpty(); ++asked) {
            const int at = random.Number(0, int(text.size()) - 1);
            ASSERT_EQ(any.IsCommented(at), IsCommented(text, at, comments))
                << ::testing::PrintToString(text) << ' ' << at;
        }
    }
}

} // namespace zelvane::test
