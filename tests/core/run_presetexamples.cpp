// SPDX-License-Identifier: GPL-3.0-or-later

// What the documents tell to type: without its folder a preset puts the sound beside the command.

#include <gtest/gtest.h>
#include <QFile>
#include <QRegularExpression>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace
{

QString Document(const char *name)
{
    QFile file(QStringLiteral(ZELVANE_SOURCE_DIR "/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// How many examples the pattern finds; each that `command` names has to have as many of `folder`.
int Examples(const QString &text, const QString &pattern, const QString &command, const QString &folder)
{
    const QRegularExpression block(pattern, QRegularExpression::DotMatchesEverythingOption |
                                                QRegularExpression::MultilineOption);
    const QRegularExpression commands(command, QRegularExpression::MultilineOption);
    const QRegularExpression folders(folder, QRegularExpression::MultilineOption);
    int examples = 0;
    for (auto found = block.globalMatch(text); found.hasNext();) {
        const QString example = found.next().captured();
        const auto wanted = example.count(commands);
        examples += wanted > 0 ? 1 : 0;
        EXPECT_EQ(example.count(folders), wanted) << example.toStdString();
    }
    return examples;
}

} // namespace

TEST(PresetExamples, AllStartInTheDocumentsFolder)
{
    EXPECT_GE(Examples(Document("docs/guide/presets.md"), u"(^\\|[^\\n]*\\n)+"_s,
                       u"^\\| \\w+ action \\| Command \\|"_s,
                       u"^\\| \\w+ action \\| Initial Folder \\| `\\$DIR\\$` \\|$"_s),
              3);
    EXPECT_GE(Examples(Document("docs/guide/presets.md"), u"^\\| `[^\\n]*$"_s,
                       u"^\\| `[^|]*` \\| `[^|]*` \\|"_s, u"\\| `\\$DIR\\$` \\|$"_s),
              6);
    EXPECT_GE(Examples(Document("docs/guide/settings.md"), u"^\\[[^\\n]*\\n([^\\[`\\n][^\\n]*\\n)*"_s,
                       u"^Command="_s, u"^Folder=\\$DIR\\$$"_s),
              1);
    EXPECT_GE(Examples(Document("README.md"), u"^\\[[^\\n]*\\n([^\\[`\\n][^\\n]*\\n)*"_s, u"^Command="_s,
                       u"^Folder=\\$DIR\\$$"_s),
              1);
    EXPECT_EQ(Examples(Document("data/presets"), u"^\\[[^\\n]*\\n([^\\[\\n][^\\n]*\\n)*"_s,
                       u"^(2nd)?Command="_s, u"^(2nd)?Folder=\\$DIR\\$$"_s),
              4);
}
