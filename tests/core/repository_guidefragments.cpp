// SPDX-License-Identifier: GPL-3.0-or-later
// The repository file that the guide shows, and the shipped fragment.

#include "repository/coderepository.h"
#include "support/guidepages.h"
#include "support/printers.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

TEST(GuideFragments, AreReadAsTheyStand)
{
    const QStringList shown = GuideBlocks(u"fragments"_s);
    ASSERT_EQ(shown.size(), 1);
    TestContext context;
    const QString file = context.WriteFile(u"jo.csr"_s, shown[0].toUtf8());
    CodeRepository repository(context.editor, context.folder.path());
    StoredFragment fragment = repository.Read({file, u"Tone"_s});
    fragment.fields.code.remove(u'\r');
    EXPECT_TRUE(fragment.found);
    EXPECT_EQ(fragment.fields, (FragmentFields{.code = u"instr 1\n\tout oscil(.1, 440)\nendin"_s,
                                               .author = u"jo"_s,
                                               .comments = u"i 1 0 1"_s,
                                               .category = u"Instruments"_s}));
}

TEST(GuideFragments, TheShippedOneIsShownAsItIs)
{
    const QString page = GuidePage(u"fragments"_s);
    const QStringList orchestras = FencedBlocks(page, u"csound-orc"_s);
    ASSERT_EQ(orchestras.size(), 1);
    TestContext context;
    CodeRepository repository(context.editor, QStringLiteral(ZELVANE_SOURCE_DIR "/data"));
    const StoredFragment fragment =
        repository.Read({QStringLiteral(ZELVANE_SOURCE_DIR "/data/zelvane.csr"), u"Plucked string"_s});
    EXPECT_EQ(fragment.fields.code.simplified(), orchestras[0].simplified());
    EXPECT_TRUE(fragment.fields.comments.contains(FencedBlocks(page, u"csound-sco"_s)[0].trimmed()));
}

} // namespace zelvane::test
