// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/inserts.h"

#include "platform/filenamecase.h"
#include "platform/numbers.h"
#include "platform/runtimeerror.h"
#include "platform/withoutblanks.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"
#include "texttools/insertkeys.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <QDir>
#include <QStringList>
#include <QStringView>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr double LargestExact =
    9007199254740992.0; ///< beyond it a 64-bit float has no digits behind the point

constexpr int WidestSeparator = 32767; ///< of a store that was edited by hand, in characters

QString Repeated(const QString &character, qint64 times)
{
    return times > 0 ? character.repeated(times) : QString();
}

/// The largest divisor of `number`, which is not 0, up to `limit`, which is at least 1.
qint64 DivisorUpTo(qint64 number, qint64 limit)
{
    number = std::abs(number);
    qint64 found = 1;
    for (qint64 one = 1; one * one <= number; ++one) {
        if (number % one != 0)
            continue;
        if (one <= limit)
            found = std::max(found, one);
        if (number / one <= limit)
            found = std::max(found, number / one);
    }
    return found;
}

/// The smallest divisor of `number` from `limit`, which is at least 1 and not above the number.
qint64 DivisorFrom(qint64 number, qint64 limit)
{
    qint64 found = number;
    for (qint64 one = 1; one * one <= number; ++one) {
        if (number % one != 0)
            continue;
        if (one >= limit)
            found = std::min(found, one);
        if (number / one >= limit)
            found = std::min(found, number / one);
    }
    return found;
}

bool IsSeparator(QChar c)
{
    return c == u'/' || c == u'\\';
}

bool GoesBack(QStringView path)
{
    static const QString back = u".."_s;
    for (qsizetype at = path.indexOf(back); at >= 0; at = path.indexOf(back, at + 1)) {
        const qsizetype end = at + back.size();
        if ((at == 0 || IsSeparator(path[at - 1])) && (end == path.size() || IsSeparator(path[end])))
            return true;
    }
    return false;
}

} // namespace

QString DateAndTime(const QDateTime &now, const QLocale &locale)
{
    return locale.toString(now.date(), QLocale::ShortFormat) + u' ' +
           locale.toString(now.time(), QLocale::ShortFormat);
}

bool IsControlRate(qint32 sampleRate, qint32 controlRate)
{
    if (controlRate == 0)
        throw RunTimeError(ErrorNumber::DivisionByZero, u"Division by zero"_s);
    return qint64(sampleRate) % controlRate == 0;
}

qint32 NextControlRate(qint32 sampleRate, qint32 controlRate, int direction)
{
    const qint64 rate = sampleRate;
    const qint64 next = qint64(controlRate) + direction;
    qint64 found = 0;
    if (direction < 0) {
        const qint64 start = std::max<qint64>(next, 1);
        found = rate == 0 ? start : DivisorUpTo(rate, start);
    } else if (next == 0) {
        throw RunTimeError(ErrorNumber::DivisionByZero, u"Division by zero"_s);
    } else if (next >= rate) {
        found = rate; // the last divisor, and the end of the way for all that lies beyond
    } else if (next > 0) {
        found = DivisorFrom(rate, next);
    } else {
        found = rate == 0 ? next : -DivisorUpTo(rate, -next);
    }
    return ToInteger<qint32>(double(found));
}

QString HeaderText(qint32 sampleRate, qint32 controlRate, const QString &channels)
{
    return u"sr = "_s + QString::number(sampleRate) + u"\r\nkr = "_s + QString::number(controlRate) +
           u"\r\nksmps = "_s + QString::number(qint64(sampleRate) / controlRate) + u"\r\nnchnls = "_s +
           channels + u"\r\n"_s;
}

QString RandomNumber(double random, double min, double max, int digits)
{
    if (digits < 0)
        throw RunTimeError(ErrorNumber::InvalidCall, u"Invalid procedure call or argument"_s);
    const double number = random * (max - min) + min;
    const double scale = std::pow(10.0, std::min(digits, 15));
    const double scaled = number * scale;
    return NumberText(std::abs(scaled) < LargestExact ? RoundHalfEven(scaled) / scale : number);
}

QString InstrumentText(const QString &number, const QString &name)
{
    return u"instr "_s + number + (name.isEmpty() ? QString() : u" ; "_s + name) +
           u"\r\n\r\n;instrument body\r\n\r\nendin"_s;
}

QString MacroText(const QString &name, const QString &arguments, const QString &replacement)
{
    QStringList parts;
    const QStringList typed = arguments.split(u'\'');
    for (const QString &part : typed) {
        if (const QStringView argument = WithoutBlanks(part); !argument.isEmpty())
            parts.append(argument.toString());
    }
    return u"#define "_s + name + (arguments.isEmpty() ? QString() : u'(' + parts.join(u'\'') + u')') +
           u" #"_s + (replacement.isEmpty() ? u";Replacement text here"_s : replacement) + u'#';
}

QString RelativeTo(const QString &folder, const QString &path)
{
    qsizetype start = folder.size();
    if (folder.isEmpty() || path.size() <= start || !IsSeparator(path[start]) ||
        path.first(start).compare(folder, FileNameCase) != 0)
        return path;
    while (start < path.size() && IsSeparator(path[start]))
        ++start;
    // What goes back may lead out of the folder.
    return start < path.size() && !GoesBack(path.sliced(start)) ? path.sliced(start) : path;
}

QString IncludeName(const QString &file, const QString &folder, bool qualified)
{
    if (file.isEmpty() || folder.isEmpty())
        return file;
    if (!qualified)
        return RelativeTo(folder, file);
    return QDir::isRelativePath(file) ? folder + QDir::separator() + file : file;
}

QString IncludeText(const QString &name)
{
    return u"#include \""_s + name + u'"';
}

void InsertFilename(EditorContext &editor)
{
    const QString folder = SplitPath(PathPart::Folder, editor.document.CurrentFile);
    const FileDialogAnswer answer =
        editor.desktop.OpenFileDialog({.title = u"Select a filename"_s, .folder = folder});
    if (!answer.path.isEmpty())
        editor.text.ReplaceSelection(RelativeTo(folder, answer.path).replace(u'\\', u'/'));
}

QString StyleCharacter(const QString &style)
{
    if (style.isEmpty())
        return u" "_s;
    return style.first(style.size() > 1 && style[0].isHighSurrogate() && style[1].isLowSurrogate() ? 2 : 1);
}

QString SeparatorLine(const QString &character, int width, const QString &text)
{
    if (text.isEmpty())
        return Repeated(character, width);
    const QString middle = u' ' + text + u' ';
    const qint64 room = width - middle.size();
    const QString side = Repeated(character, room > 0 ? qint64(RoundHalfEven(double(room) / 2)) : 3);
    return side + middle + side;
}

void InsertLineSeparation(EditorContext &editor, LineStyle style)
{
    TextBuffer &text = editor.text;
    const bool first = style == LineStyle::First;
    const QString character =
        StyleCharacter(editor.settings.Text(first ? Keys::LineStyle1 : Keys::LineStyle2));
    const int width = std::min(editor.settings.Integer(Keys::LineWidth), WidestSeparator);
    QString words;
    if (editor.desktop.IsKeyDown(KeyCode::Ctrl)) {
        words = editor.desktop.InputBox(u"Line Separation"_s, u"Type line text."_s, {}).value_or(QString());
        if (words.isEmpty())
            return;
    }
    const qsizetype below = text.LineOfOffset(text.Selection().start) + 1;
    const qsizetype place = below < text.LineCount() ? text.LineStart(below) : text.Length();
    text.SetSelection(place, place);
    text.ReplaceSelection(u';' + SeparatorLine(character, width, words) + u"\r\n"_s);
}

} // namespace zelvane
