// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/leftwork.h"

#include "platform/replacefile.h"
#include "platform/runtimeerror.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "platform/unsavedcopy.h"
#include "shell/documentlifecycle.h"
#include "shell/editorcontext.h"
#include "shell/lineends.h"

#include <algorithm>
#include <optional>
#include <QDateTime>
#include <QStringDecoder>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// A copy, locked, with what it is of.
struct Left {
    UnsavedCopy copy;
    CopyInfo info;
};

/// Of an unsaved text its UTF-8, of a file that was being written its own bytes.
DecodedText TextOf(const UnsavedCopy::Content &content)
{
    if (content.info.encoding) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        return {decoder.decode(content.bytes), *content.info.encoding};
    }
    DecodedText decoded = DecodeText(content.bytes);
    decoded.text = DetectPlatform(decoded.text) == LineEndForm::Mac ? MacToUnix(std::move(decoded.text))
                                                                    : ToLineFeeds(std::move(decoded.text));
    return decoded;
}

/// The bytes of the file that a copy is of; no value where they cannot be had.
std::optional<QByteArray> BytesOnDisk(const CopyInfo &info)
{
    if (info.name.isEmpty())
        return {};
    try {
        return ReadFileBytes(info.name);
    } catch (const RunTimeError &) {
        return {};
    }
}

/// Whether anything would be lost without the copy.
bool IsNeeded(const UnsavedCopy::Content &content)
{
    const std::optional<QByteArray> onDisk = BytesOnDisk(content.info);
    if (!onDisk)
        return !content.bytes.isEmpty();
    if (!content.info.encoding)
        return ContentHash(*onDisk) != content.info.replacedBy && *onDisk != content.bytes;
    DecodedText text = TextOf(content);
    return EncodeText(ToPcLineEnds(text.text), text.encoding) != *onDisk;
}

/// What is to be asked about; first the texts, then the files.
std::vector<Left> TakeLeftWork()
{
    std::vector<Left> left;
    for (UnsavedCopy &copy : UnsavedCopy::TakeLeft()) {
        try {
            const std::optional<UnsavedCopy::Content> content = copy.Read();
            if (!content) {
                copy.Keep(); // not whole: for a person to look at
                continue;
            }
            if (!content->info.name.isEmpty())
                RemoveLeftBeside(content->info.name);
            if (IsNeeded(*content))
                left.push_back({std::move(copy), content->info});
            else
                copy.Remove();
        } catch (const RunTimeError &) {
            // It cannot be read today.
        }
    }
    std::stable_partition(left.begin(), left.end(),
                          [](const Left &one) { return one.copy.WhichKind() == UnsavedCopy::Kind::Unsaved; });
    return left;
}

QString NameOf(const CopyInfo &info)
{
    return info.name.isEmpty() ? u"Untitled"_s : info.name;
}

QString QuestionAbout(const Left &left)
{
    const QString name = NameOf(left.info);
    if (left.copy.WhichKind() == UnsavedCopy::Kind::Replaced)
        return name + u" was being written when its editor ended. Open what it held before?"_s;
    return name + u" was not saved when its editor ended. Open the copy of its text of "_s +
           left.copy.Written().toString(u"yyyy-MM-dd hh:mm"_s) + u'?';
}

/// Opens the copy in this window. @return false where another text stands here that must not go
bool OpenHere(Left left, DocumentLifecycle &documents, const EditorContext &editor)
{
    if (editor.document.Modified)
        return false;
    const std::optional<UnsavedCopy::Content> content = left.copy.Read();
    if (!content) {
        // Written to while the question stood; it is for a person to look at.
        const QString path = left.copy.Path();
        left.copy.Keep();
        editor.desktop.MessageBox(
            {.text = u"Unable to open "_s + path + u".\n\nIt is not whole"_s, .icon = BoxIcon::Warning});
        return true;
    }
    const DecodedText text = TextOf(*content);
    if (!documents.MayShowText(NameOf(content->info), text.text)) {
        left.copy.Keep();
        return true;
    }
    documents.OpenCopy(content->info, text.text, text.encoding, std::move(left.copy));
    return true;
}

} // namespace

void OfferLeftWork(DocumentLifecycle &documents, EditorContext &editor, const std::function<bool()> &mayAsk)
{
    UnsavedCopy::RemoveOld(editor.desktop.Now());
    std::vector<Left> left = TakeLeftWork();
    for (auto one = left.begin(); one != left.end(); ++one) {
        if (!mayAsk())
            return;
        const BoxAnswer answer = editor.desktop.MessageBox(
            {.text = QuestionAbout(*one), .icon = BoxIcon::Question, .buttons = BoxButtons::YesNo});
        if (!mayAsk())
            return;
        if (answer != BoxAnswer::Yes) {
            one->copy.Keep();
            continue;
        }
        const bool opened = OpenHere(std::move(*one), documents, editor);
        if (opened)
            ++one;
        const bool more = one != left.end();
        left.clear(); // from here on they are another editor's
        if (more)
            documents.NewInstance();
        return;
    }
}

} // namespace zelvane
