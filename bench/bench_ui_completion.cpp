// SPDX-License-Identifier: GPL-3.0-or-later

// How soon the list of completions is there in a large text, from the key to the painted list, and what a key
// costs while completion and argument hints are on and off. Processor time of the thread that handles keys;
// another one reads the text in the pauses.

#include "platform/ui/textcontrol.h"
#include "shell/ui/appearance.h"
#include "windowbench.h"
#include "writing/textnames.h"
#include "writing/writingkeys.h"

#include <cstdio>
#include <ctime>
#include <QKeyEvent>
#include <QListView>
#include <QThread>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

/// Processor seconds of this thread alone.
template <typename Work> double OwnSeconds(Work work)
{
#ifdef CLOCK_THREAD_CPUTIME_ID
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
    };
    const double start = now();
    work();
    return now() - start;
#else
    return Seconds(work);
#endif
}

constexpr int Runs = 15;
constexpr qsizetype Size = 10'000'000;

struct Typist {
    Program &program;
    TextControl &text = *program.window->findChild<TextControl *>(u"TxtEdit"_s);
    QListView *list = nullptr;

    void Key(int key, Qt::KeyboardModifiers modifiers = {}, const QString &typed = {})
    {
        QKeyEvent press(QEvent::KeyPress, key, modifiers, typed);
        QApplication::sendEvent(&text, &press);
        QKeyEvent release(QEvent::KeyRelease, key, modifiers, typed);
        QApplication::sendEvent(&text, &release);
        QApplication::processEvents();
        text.viewport()->repaint();
        if (list && list->isVisible())
            list->viewport()->repaint();
    }
    void Type(const QString &word)
    {
        for (const QChar c : word)
            Key(c.unicode(), {}, QString(c));
    }
    void Ask() { Key(Qt::Key_Space, Qt::ControlModifier, u" "_s); }

    /// Lets the thread read the text in a pause: until the word at its beginning is known at its end.
    void Rest()
    {
        Type(u"kFarAw"_s);
        for (int i = 0; i < 600; ++i) {
            QThread::msleep(100);
            QApplication::processEvents();
            Ask();
            if (list->isVisible())
                return;
        }
        qFatal("the names of the text are never known");
    }

    void Turn(bool on)
    {
        for (const FlagKey &key : {Keys::Completion, Keys::AutoComplete, Keys::ArgumentHint})
            program.settings.SaveFlag(key, on);
        program.window->Looks().ApplyAll();
        list = program.window->findChild<QListView *>(u"lstCompletion"_s);
    }

    void MeasureLetter(const QString &what)
    {
        Type(u" "_s);
        const double time = MedianMs(Runs, [&] {
            const double seconds = OwnSeconds([&] { Type(u"o"_s); });
            if (list)
                Key(Qt::Key_Escape);
            Type(u" "_s);
            return seconds;
        });
        Goal(qPrintable(what), time, 4);
    }

    void Measure(const QString &what)
    {
        text.ReplaceRange(0, 0, u"kFarAway = 1\n"_s);
        text.SetSelection(text.Length(), text.Length());
        Turn(false);
        MeasureLetter(what + u": a letter without the aids"_s);
        Turn(true);
        Type(u"\n "_s);
        Rest();
        Key(Qt::Key_Escape);
        for (const QString &word : {u""_s, u"a"_s, u"in"_s, u"osc"_s, u"kFar"_s, u"12"_s}) {
            Type(u' ' + word);
            Key(Qt::Key_Escape);
            double rows = 0;
            const double time = MedianMs(Runs, [&] {
                Key(Qt::Key_Escape);
                const double seconds = OwnSeconds([&] { Ask(); });
                rows = list && list->isVisible() ? list->model()->rowCount() : 0;
                return seconds;
            });
            Goal(qPrintable(u"%1: the list behind \"%2\", %3 rows"_s.arg(what, word).arg(rows)), time, 16);
        }
        Key(Qt::Key_Escape);
        MeasureLetter(what + u": a letter that brings no list"_s);
        const double open = MedianMs(Runs, [&] {
            Type(u" os"_s);
            const double seconds = OwnSeconds([&] { Type(u"c"_s); });
            Key(Qt::Key_Escape);
            return seconds;
        });
        Goal(qPrintable(what + u": the letter that brings the list"_s), open, 16);
        Type(u"\na1 oscil "_s);
        const double hint = MedianMs(Runs, [&] { return OwnSeconds([&] { Type(u"1"_s); }); });
        Goal(qPrintable(what + u": a letter while the hint stands"_s), hint, 4);
        Key(Qt::Key_Escape);
    }
};

} // namespace

int main(int argc, char **argv)
{
    const OwnHome home;
    QApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    Program program;
    Typist typist{program};

    program.window->Documents().OpenFile(program.File(Size));
    typist.Measure(u"10 MB"_s);

    // Every word is another one.
    const QString name = program.folder.filePath(u"words.orc"_s);
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(name));
    for (qint64 word = 0; file.size() < Size; ++word) {
        QByteArray piece;
        for (int i = 0; i < 1000; ++i, ++word)
            piece += "kosc" + QByteArray::number(word * 7919 % 100'000'000, 36) + " = 1\n";
        file.write(piece);
        file.flush();
    }
    file.close();
    program.window->Documents().OpenFile(name);
    typist.Measure(u"10 MB of different words"_s);

    const QString quick = QString::fromUtf8(Orchestra(64 * 1024));
    Goal("64 K characters read at once",
         MedianMs(Runs, [&] { return Seconds([&] { FindNames(quick, false); }); }), 4);
    return 0;
}
