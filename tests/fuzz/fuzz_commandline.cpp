// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/commandlineoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "fuzz/fuzzstart.h"
#include "platform/parameters.h"
#include "shell/commandline.h"
#include "shell/consoleanswer.h"
#include "shell/splitpath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace zelvane;

namespace
{

/// A folder with files whose names look like switches.
QString FolderWithFiles()
{
    const QString folder = fuzz::WorkFolder() + QStringLiteral("/files");
    for (const QString &sub : {QString(), QStringLiteral("/p "), QStringLiteral("/r ")})
        QDir().mkpath(folder + sub);
    for (const QString &name : {QStringLiteral("x.orc"), QStringLiteral("x y.sco"), QStringLiteral("--help"),
                                QStringLiteral("p /z"), QStringLiteral("r /z")})
        QFile(folder + u'/' + name).open(QIODevice::WriteOnly);
    return QFileInfo(folder).canonicalFilePath();
}

bool NamesFile(const QString &argument)
{
    return !argument.isEmpty() && QFileInfo(argument).isFile();
}

/// The absolute path of the file that a text names, with or without quotes; nothing when there is none.
QString FileNamed(const QString &text)
{
    for (const QString &name : {text, DropOuterQuotes(text)})
        if (NamesFile(name))
            return QFileInfo(name).absoluteFilePath();
    return {};
}

void CheckCommandLine(const QStringList &arguments)
{
    const CommandLine found(arguments);
    const QString whole = FileNamed(arguments.join(u' '));
    bool anyFile = !whole.isEmpty();
    if (anyFile) {
        fuzz::ExpectSame("file", found.Document(), whole, arguments);
        fuzz::ExpectSame("form", int(found.Form()), int(StartForm::Document), arguments);
    }
    // The end of the options, and addresses, are no text of the line.
    bool asItStands = !arguments.contains(QStringLiteral("--"));
    for (const QString &argument : arguments) {
        asItStands = asItStands && !argument.startsWith(QStringLiteral("file:/"), Qt::CaseInsensitive);
        const QString file = FileNamed(argument);
        if (file.isEmpty())
            continue;
        // A switch that stands in a file's name is none, and the name goes through whole. Of several
        // documents one is opened.
        if (found.Form() == StartForm::Document && !found.Text().startsWith(QStringLiteral("/i ")))
            fuzz::Expect("file opened", NamesFile(found.Document()), arguments);
        else
            fuzz::Expect("file named", found.Text().contains(file), arguments);
        anyFile = true;
    }
    if (!anyFile && asItStands) {
        // Empty arguments at the start leave no blank.
        QString text;
        for (const QString &argument : arguments)
            text = text.isEmpty() ? argument : text + u' ' + argument;
        const oracle::CommandLineEnd expected = oracle::CutCommandLine(text);
        fuzz::ExpectSame("text", found.Text(), expected.text, arguments);
        fuzz::ExpectSame("form", int(found.Form()), int(expected.form), arguments);
        const QString file = FileNamed(expected.document); // what is left of the line may name one
        fuzz::ExpectSame("document", found.Document(), file.isEmpty() ? expected.document : file, arguments);
    }
    // A start that hands its line over to a running editor means the same there.
    if (found.Form() == StartForm::Document && !anyFile && asItStands) {
        const CommandLine again(QStringList{found.Text()});
        fuzz::ExpectSame("handed over", again.Document(), found.Document(), arguments);
    }
    const auto answer = AnswerOnConsole(arguments);
    if (answer) {
        fuzz::Expect("console", arguments[0].startsWith(u'-') && !NamesFile(arguments[0]), arguments);
        fuzz::Expect("whole lines", answer->text.endsWith(u'\n'), arguments);
    }
}

void CheckParameters(const QString &text)
{
    fuzz::ExpectSame("split", SplitParameters(text), oracle::SplitParameters(text), text);
    const QString quoted = QuoteFile(text);
    fuzz::ExpectSame("unquoted", UnquoteFile(quoted), text);
    if (!text.isEmpty())
        fuzz::ExpectSame("quoted", SplitParameters(QStringLiteral("-o ") + quoted + QStringLiteral(" z")),
                         QStringList({QStringLiteral("-o"), text, QStringLiteral("z")}), text);
    for (const PathPart part : {PathPart::WithoutExtension, PathPart::Folder, PathPart::BaseName,
                                PathPart::Quoted, PathPart::Extension})
        SplitPath(part, text);
    fuzz::ExpectSame("bare name", BareFileName(text), text.last(BareFileName(text).size()), text);
}

} // namespace

/// The command line of the program, and the parameters of those that it starts, beside their steps.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QString folder = FolderWithFiles();
    static const QString before = QDir::currentPath();
    fuzz::Input input(data, size);
    QStringList arguments;
    for (int left = input.Number(0, 4); left > 0; --left)
        arguments.append(input.Text());
    QDir::setCurrent(folder);
    CheckCommandLine(arguments);
    QDir::setCurrent(before);
    CheckParameters(arguments.join(u' '));
    return 0;
}
