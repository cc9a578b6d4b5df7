// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/repositoryoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "fuzz/fuzzstart.h"
#include "platform/profilefile.h"
#include "repository/fragmenttext.h"
#include "repository/repositorytree.h"

#include <QFile>
#include <QSet>
#include <QString>
#include <QStringList>

using namespace zelvane;

namespace
{

/// What a line of the file can hold of a value.
QString OfOneLine(const QString &value)
{
    QString line = value.section(QLatin1Char('\n'), 0, 0);
    if (line.size() < value.size() && line.endsWith(QLatin1Char('\r')))
        line.chop(1);
    return line;
}

} // namespace

/// A repository file as somebody has sent it, and a fragment that is written into it: the tree holds each
/// fragment once below groups that end, what was written is read again, and what nobody has written over
/// stays.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QString path = fuzz::WorkFolder() + QStringLiteral("/fuzzed.csr");
    fuzz::Input input(data, size);
    const QString code = fuzz::WithoutHalves(input.Text());
    const QString escaped = EscapeFragment(code);
    fuzz::ExpectSame("escaped", escaped, test::EscapedByLoop(code), code);
    fuzz::ExpectSame("unescaped", UnescapeFragment(code), test::UnescapedByLoop(code), code);

    const QByteArray bytes = input.Bit() ? input.Text().toUtf8() : input.Rest();
    {
        QFile file(path);
        fuzz::Expect("file", file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    ProfileFile file(path, ProfileText::Plain);
    const QStringList names = file.SectionNames();
    for (int view = 0; view <= int(RepositoryView::AuthorCategory); ++view) {
        const RepositoryTree tree = BuildRepositoryTree({path}, RepositoryView(view));
        QStringList shown;
        for (const RepositoryNode &node : tree.nodes) {
            fuzz::Expect("a group stands before its children", node.parent < &node - tree.nodes.data(),
                         bytes);
            if (node.IsFragment())
                shown += node.text;
        }
        QStringList expected = names;
        expected.removeAll(QString());
        fuzz::ExpectSame("fragments", shown, expected.first(NamesWithinLimit(expected)), bytes);
    }

    const QString name = QStringLiteral("fuzzed fragment");
    file.SetValue(name, u"Code", escaped);
    fuzz::ExpectSame("code", file.Value(name, u"Code").value_or(QString()), OfOneLine(escaped), code, bytes);
    const ProfileEntries written = file.Entries(name);
    file.MoveSection(name, QStringLiteral("fuzzed and moved"));
    const ProfileFile again(path, ProfileText::Plain);
    fuzz::ExpectSame("moved", again.Entries(QStringLiteral("fuzzed and moved")), written, bytes);
    fuzz::ExpectSame("the old name", again.Entries(name), ProfileEntries(), bytes);
    return 0;
}
