// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/frmconsole.h"

#include "console/consolekeys.h"
#include "console/exitwords.h"
#include "console/scoreprogress.h"
#include "console/ui/consoleview.h"
#include "platform/parameters.h"
#include "platform/runtimeerror.h"
#include "platform/ui/plaincaption.h"
#include "platform/ui/withinscreen.h"
#include "platform/windowstate.h"
#include "shell/editorkeys.h"
#include "shell/lineends.h"
#include "shell/settings.h"

#include <algorithm>
#include <limits>
#include <QCheckBox>
#include <QCloseEvent>
#include <QColor>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEvent>
#include <QFont>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPaintEvent>
#include <QPalette>
#include <QPushButton>
#include <QSize>
#include <QStringList>
#include <QStyle>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int TickMs = 200;
constexpr int NewsMs = 33;
/// How long the end of a good run stands on the screen.
constexpr int LeaveMs = 1200;
constexpr int WidthCharacters = 100;
constexpr int HeightLines = 26;
constexpr float HintOpacity = 0.6F;
constexpr size_t MostErrorLines = 50;

QString CommandText(const ConsoleRun &run)
{
    QStringList words{QuoteFile(run.program)};
    for (const QString &argument : run.arguments)
        words.append(argument.isEmpty() ? u"\"\""_s : QuoteFile(argument));
    return words.join(u' ');
}

/// A text of any length, cut at its end where there is no room for it.
class CutLabel : public QLabel
{
public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        Q_UNUSED(event);
        QPainter painter(this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
        style()->drawItemText(&painter, contentsRect(), int(Qt::AlignLeading | Qt::AlignVCenter), palette(),
                              isEnabled(), shown, foregroundRole());
    }
};

template <typename Widget> Widget *Called(Widget *widget, const QString &name, const QString &spoken)
{
    widget->setObjectName(name);
    widget->setAccessibleName(spoken);
    return widget;
}

} // namespace

frmConsole::frmConsole(const ConsoleOptions &options, Services services, QWidget *parent)
    : QWidget(parent),
      m_options(options),
      m_services(std::move(services)),
      m_reader([this](StyledLine line) { TakeLine(std::move(line)); }),
      m_log(m_services.logFolder, options.run.title, QDateTime::currentDateTime()),
      m_process({.output = [this](QByteArrayView bytes) { TakeOutput(bytes); },
                 .ended = [this](const ProgramEnd &end) { Ended(end); },
                 .lastOutput = [this](QByteArrayView bytes) { m_log.Write(bytes); },
                 .stopped =
                     [this](const std::optional<StopSignal> &last) {
                         if (last)
                             m_log.Write((u'\n' + LostWindowWords(*last) + u'\n').toUtf8());
                         m_log.Finish();
                     }})
{
    setObjectName(u"frmConsole"_s);
    setWindowTitle(PlainCaption(options.run.title));
    BuildWindow();
    ApplyLook();
    m_tick.setInterval(TickMs);
    connect(&m_tick, &QTimer::timeout, this, &frmConsole::Tick);
    m_news.setSingleShot(true);
    m_news.setInterval(NewsMs);
    connect(&m_news, &QTimer::timeout, this, &frmConsole::ShowNews);
    m_leave.setSingleShot(true);
    m_leave.setInterval(LeaveMs);
    connect(&m_leave, &QTimer::timeout, this, &frmConsole::CloseNow);
    QCoreApplication::instance()->installEventFilter(this);
}

frmConsole::~frmConsole()
{
    QCoreApplication::instance()->removeEventFilter(this);
}

void frmConsole::BuildWindow()
{
    txtCommand = Called(new QLineEdit(CommandText(m_options.run), this), u"txtCommand"_s, u"Command"_s);
    txtCommand->setReadOnly(true);
    txtCommand->setToolTip(txtCommand->text());
    txtCommand->setCursorPosition(0);
    m_view = Called(new ConsoleView(m_store, this), u"ConsoleView"_s, u"Output"_s);
    txtInput = Called(new QLineEdit(this), u"txtInput"_s, u"Input"_s);
    txtInput->setPlaceholderText(u"Input for the program"_s);
    txtInput->setMaxLength(std::numeric_limits<int>::max()); // a paste is not cut
    lblState = Called(new CutLabel(this), u"lblState"_s, u"State"_s);
    lblState->setTextFormat(Qt::PlainText);
    lblProgress = Called(new QLabel(this), u"lblProgress"_s, u"Progress"_s);
    lblTime = Called(new QLabel(this), u"lblTime"_s, u"Time"_s);
    chkKeepOpen = Called(new QCheckBox(u"&Keep open"_s, this), u"chkKeepOpen"_s, u"Keep open"_s);
    chkKeepOpen->setToolTip(u"This window stays after a run without errors."_s);
    chkKeepOpen->setChecked(m_services.settings.Flag(Keys::ConsoleKeepOpen));
    cmdStop = Called(new QPushButton(u"&Stop"_s, this), u"cmdStop"_s, u"Stop"_s);
    cmdStop->setToolTip(u"Stop the program (Ctrl+C); once more if it does not listen"_s);
    cmdStop->setEnabled(false);

    auto *row = new QHBoxLayout;
    row->addWidget(lblState, 1);
    row->addWidget(lblProgress);
    row->addWidget(lblTime);
    row->addWidget(chkKeepOpen);
    row->addWidget(cmdStop);
    auto *column = new QVBoxLayout(this);
    column->addWidget(txtCommand);
    column->addWidget(m_view, 1);
    column->addWidget(txtInput);
    column->addLayout(row);
    m_view->setFocus();

    connect(m_view, &ConsoleView::LineActivated, this, &frmConsole::Activate);
    connect(txtInput, &QLineEdit::returnPressed, this, &frmConsole::SendLine);
    connect(cmdStop, &QPushButton::clicked, this, &frmConsole::Stop);
    connect(chkKeepOpen, &QCheckBox::toggled, this, [this](bool keep) {
        try {
            m_services.settings.SaveFlag(Keys::ConsoleKeepOpen, keep);
        } catch (const RunTimeError &) {
            // It holds for this window: a failure to remember it must not end the program that runs.
        }
        UpdateLeaving();
    });
}

void frmConsole::ApplyLook()
{
    const SettingsStore &settings = m_services.settings;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (const QString family = settings.Text(Keys::Font, QString()); !family.isEmpty())
        font.setFamily(family);
    font.setBold(settings.Flag(Keys::FontBold, font.bold()));
    font.setItalic(settings.Flag(Keys::FontItalic, font.italic()));
    if (const double points = settings.Number(Keys::FontSize, font.pointSizeF()); points > 0)
        font.setPointSizeF(points);
    m_view->setFont(font);
    const QFontMetrics metrics(font);
    const QSize usual(metrics.averageCharWidth() * WidthCharacters, metrics.lineSpacing() * HeightLines);
    resize(WithinScreen(*this, usual));
    ApplyHintColour();
}

void frmConsole::ApplyHintColour()
{
    // Dark desktops tell no colour for it: the toolkit's own is black.
    QPalette colours = txtInput->palette();
    QColor hint = palette().color(QPalette::Text);
    hint.setAlphaF(HintOpacity);
    colours.setColor(QPalette::PlaceholderText, hint);
    txtInput->setPalette(colours);
}

void frmConsole::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && txtInput)
        ApplyHintColour();
}

void frmConsole::ShowAs(WindowState showState)
{
    switch (showState) {
    case WindowState::Hidden:
        break; // the log is written all the same
    case WindowState::Minimized:
        showMinimized();
        break;
    case WindowState::Maximized:
        showMaximized();
        break;
    case WindowState::Normal:
        show();
        break;
    }
}

void frmConsole::Run()
{
    m_log.Write((CommandText(m_options.run) + u'\n').toUtf8());
    m_clock.start();
    const bool started =
        m_process.Start({m_options.run.program, m_options.run.arguments, m_options.run.folder});
    if (!started) {
        TakeLine({.text = u"error: Cannot start '"_s + m_options.run.program + u"': "_s + m_process.Error()});
        TellWaiting(m_options.notify, ProgramNews::Ended);
        m_options.notify = -1;
        ShowEnd(u"Not started."_s);
        ShowAs(m_options.run.showState == WindowState::Hidden ? WindowState::Normal
                                                              : m_options.run.showState);
        return;
    }
    m_running = true;
    TellWaiting(m_options.notify, ProgramNews::Started);
    SetState(u"Running..."_s);
    cmdStop->setEnabled(true);
    m_tick.start();
    ShowAs(m_options.run.showState);
}

bool frmConsole::IsFinished() const
{
    return !m_running && !m_process.AnyRuns();
}

void frmConsole::GiveWay()
{
    if (IsFinished())
        CloseNow();
}

void frmConsole::TakeOutput(QByteArrayView bytes)
{
    m_log.Write(bytes);
    m_reader.Read(bytes);
    if (!m_news.isActive())
        m_news.start();
}

void frmConsole::TakeLine(StyledLine line)
{
    if (const auto progress = ScoreProgress(line.text))
        m_progress = progress;
    const qint64 number = m_store.End();
    const LineMark mark = m_messages.Take(number, line.text);
    KeepFirstError(number, line);
    m_store.Append(std::move(line));
    m_store.Mark(number, mark);
}

void frmConsole::KeepFirstError(qint64 number, const StyledLine &line)
{
    // How many lines it has is known later.
    const std::optional<RunMessage> &error = m_messages.FirstError();
    if (error && number == error->first + qint64(m_firstError.size()) && m_firstError.size() < MostErrorLines)
        m_firstError.push_back(line);
}

void frmConsole::BringBackFirstError()
{
    const std::optional<RunMessage> &error = m_messages.FirstError();
    if (!error || std::max(error->first, m_broughtBack - 1) >= m_store.First())
        return; // it is there
    const qint64 kept =
        std::min(std::min(error->last + 1, m_store.First()) - error->first, qint64(m_firstError.size()));
    std::vector<StoredLine> lines;
    for (qint64 i = 0; i < kept; ++i)
        lines.push_back({.line = m_firstError[size_t(i)], .mark = i == 0 ? error->mark : LineMark::None});
    m_broughtBack = m_store.First();
    if (const qint64 gone = m_store.First() - error->first - kept; gone > 0) {
        lines.push_back({.line = {.text = u'[' + QString::number(gone) + u" lines are left out here]"_s}});
        --m_broughtBack;
    }
    m_store.PutFirst(std::move(lines));
}

void frmConsole::ShowNews()
{
    m_view->UpdateLines(m_reader.Unfinished());
    if (m_progress)
        lblProgress->setText(u"Score: "_s + QString::number(*m_progress, 'f', 1) + u" s"_s);
}

void frmConsole::Tick()
{
    if (m_running)
        lblTime->setText(DurationText(m_clock.elapsed()));
    if (IsFinished()) {
        AllEnded();
        return;
    }
    if (const auto signal = m_ladder.Due(m_clock.elapsed()))
        Send(*signal);
}

void frmConsole::Send(StopSignal signal)
{
    if (m_process.Stop(signal)) {
        SetState(StopWords(signal));
        return;
    }
    SetState(u"It runs with another user's rights: only an interrupt could be sent, as a key."_s);
    m_ladder = {};     // the user may ask once more
    m_closing = false; // the window stays as long as it runs
}

void frmConsole::Stop()
{
    if (!m_process.AnyRuns())
        return;
    if (const auto signal = m_ladder.Press(m_clock.elapsed()))
        Send(*signal);
}

void frmConsole::Ended(const ProgramEnd &end)
{
    m_running = false;
    TellWaiting(m_options.notify, ProgramNews::Ended);
    m_options.notify = -1;
    m_reader.Finish();
    const QString words = ExitWords(end, m_ladder.Last());
    m_endStop = m_ladder.Last();
    m_log.Write((u'\n' + words + u'\n').toUtf8());
    m_endedWell = end.IsSuccess() && !m_messages.FirstError();
    ShowEnd(words);
    if (IsFinished())
        AllEnded();
    else
        SetEndState(u"What it has started still runs."_s);
}

void frmConsole::AllEnded()
{
    m_tick.stop();
    m_process.ReadRest();
    m_reader.Finish();
    QStringList more;
    if (const QString left = LeftoverWords(m_ladder.Last());
        m_ladder.Last() != m_endStop && !left.isEmpty()) {
        more.append(left);
        m_log.Write((u'\n' + left + u'\n').toUtf8());
    }
    m_log.Finish();
    BringBackFirstError(); // once more, where what was left running has written much
    if (!m_log.IsWhole())
        more.append(u"The log could not be written."_s);
    cmdStop->setEnabled(false);
    ShowNews();
    SetEndState(more.join(u' '));
    if (m_question)
        m_question->reject(); // it is out of date
    else if (m_closing || !isVisible())
        CloseNow();
    else
        UpdateLeaving();
}

void frmConsole::UpdateLeaving()
{
    if (!m_endedWell || m_touched || chkKeepOpen->isChecked() || !IsFinished())
        m_leave.stop();
    else if (!m_leave.isActive())
        m_leave.start();
}

void frmConsole::Touch()
{
    m_touched = true;
    UpdateLeaving();
}

void frmConsole::ShowEnd(const QString &words)
{
    lblTime->setText(DurationText(m_clock.elapsed()));
    const std::optional<RunMessage> &error = m_messages.FirstError();
    m_end = words;
    SetEndState();
    if (focusWidget() == cmdStop)
        m_view->setFocus(); // before the control that has it goes grey
    // It keeps the focus: an Enter that was meant for the program leads nowhere else. What has been typed can
    // still be copied.
    txtInput->setReadOnly(true);
    txtInput->setPlaceholderText(u"The program has ended"_s);
    BringBackFirstError();
    ShowNews();
    if (error && !m_touched)
        m_view->GoToLine(std::max(error->first, m_store.First()));
}

void frmConsole::SetEndState(const QString &more)
{
    QStringList words{m_end};
    if (!more.isEmpty())
        words.append(more);
    if (const std::optional<RunMessage> &error = m_messages.FirstError())
        words.append(error->text);
    SetState(words.join(u' '));
}

void frmConsole::SetState(const QString &words)
{
    m_state = words;
    lblState->setText(words);
    lblState->setToolTip(words);
}

void frmConsole::TellFailure(const QString &text)
{
    if (m_closed) {
        QMessageBox box(QMessageBox::Warning, m_options.run.title, text, QMessageBox::Ok);
        box.setObjectName(u"MessageBox"_s);
        box.setTextFormat(Qt::PlainText);
        m_lastFailure = &box;
        box.exec();
        m_lastFailure = nullptr;
        return;
    }
    auto *box = new QMessageBox(QMessageBox::Warning, m_options.run.title, text, QMessageBox::Ok, this);
    box->setObjectName(u"MessageBox"_s);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void frmConsole::SendLine()
{
    if (!m_running)
        return;
    const QStringList lines = ToLineFeeds(txtInput->text()).split(u'\n'); // a paste may hold several
    const auto isTooLong = [](const QString &line) {
        return line.toUtf8().size() > TerminalProcess::LongestLine;
    };
    if (std::any_of(lines.begin(), lines.end(), isTooLong)) {
        lblState->setText(
            u"The line is too long: a program can take %1 bytes at a time. Nothing was sent."_s.arg(
                TerminalProcess::LongestLine));
        return;
    }
    for (const QString &line : lines) {
        m_process.Write((line + u'\n').toUtf8());
        TakeOutput((u"> "_s + line + u'\n').toUtf8());
    }
    txtInput->clear();
}

const RunMessage *frmConsole::MessageAt(qint64 line) const
{
    return line < m_broughtBack ? &*m_messages.FirstError() : m_messages.At(line);
}

void frmConsole::GoToMessage(int step)
{
    const qint64 here = m_view->CurrentLine();
    const qint64 from = here >= 0 ? here : step > 0 ? -1 : m_store.End();
    // The first error of a run is in view, and nobody has been led to it yet.
    const bool stays = here >= m_store.First() && !m_hasVisited && MessageAt(here);
    const std::optional<qint64> next = stays ? here : m_store.NextMarked(from, step);
    if (next)
        m_view->GoToLine(*next);
    Activate(next.value_or(here));
}

void frmConsole::Activate(qint64 line)
{
    const RunMessage *message = MessageAt(line);
    if (!message)
        return;
    m_hasVisited = true;
    const QString folder = m_options.run.folder.isEmpty() ? QDir::currentPath() : m_options.run.folder;
    const QStringList included =
        qEnvironmentVariable("INCDIR").split(QDir::listSeparator(), Qt::SkipEmptyParts);
    const PlaceSources sources{
        .folder = folder, .folders = included, .documents = DocumentsOf(m_options.run.arguments)};
    const auto place = FindPlace(*message, sources);
    lblState->setText(place ? m_state : u"This message names no file that is there, and no line."_s);
    if (place)
        m_services.openPlace(*place);
}

void frmConsole::closeEvent(QCloseEvent *event)
{
    if (m_closed || IsFinished()) {
        event->accept();
        CloseNow();
        return;
    }
    event->ignore();
    if (m_closing)
        return;
    const QString asks = m_running ? u" is still running. Stop it?"_s
                                   : u" has ended, but what it has started still runs. Stop that?"_s;
    QMessageBox box(QMessageBox::Question, m_options.run.title, m_options.run.title + asks,
                    QMessageBox::Yes | QMessageBox::No, this);
    box.setObjectName(u"MessageBox"_s);
    box.setTextFormat(Qt::PlainText);
    m_question = &box;
    const int answer = box.exec();
    m_question = nullptr;
    if (IsFinished()) { // meanwhile
        if (m_endedWell || m_closing)
            CloseNow();
        return;
    }
    if (answer == QMessageBox::Yes)
        StopAndClose();
    else
        Touch();
}

void frmConsole::StopAndClose()
{
    m_closing = true;
    if (m_lastFailure)
        m_lastFailure->reject();
    if (IsFinished())
        CloseNow();
    else if (!m_ladder.HasBegun())
        Stop();
}

void frmConsole::CloseNow()
{
    if (std::exchange(m_closed, true))
        return;
    hide();
    Q_EMIT Closed();
}

void frmConsole::TouchBy(const QObject *watched, const QEvent &event)
{
    // What checks the box says by itself whether the window stays. A key that is held for another window's
    // sake, or on the way to one, says nothing.
    if (watched == chkKeepOpen && event.type() != QEvent::Wheel)
        return;
    if (event.type() == QEvent::KeyPress) {
        const int key = static_cast<const QKeyEvent &>(event).key();
        if ((key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr ||
            key == Qt::Key_Super_L || key == Qt::Key_Super_R)
            return;
    }
    Touch();
}

bool frmConsole::HandleKey(QObject *watched, const QKeyEvent &press)
{
    const int key = press.key();
    const Qt::KeyboardModifiers modifiers = press.modifiers();
    // Ctrl with Alt is what some keyboards type characters with.
    const bool ctrl = modifiers.testFlag(Qt::ControlModifier) && !modifiers.testFlag(Qt::AltModifier);
    const bool shift = modifiers.testFlag(Qt::ShiftModifier);
    if (key == Qt::Key_F4 && !ctrl && !modifiers.testFlag(Qt::AltModifier)) {
        GoToMessage(shift ? -1 : 1);
        return true;
    }
    if (key == Qt::Key_Escape && IsFinished()) {
        CloseNow();
        return true;
    }
    if (!ctrl)
        return false;
    if (key == Qt::Key_C && shift) {
        m_view->CopySelected();
        return true;
    }
    if (key == Qt::Key_C) {
        // In a field with a selection it copies, as everywhere.
        const auto *field = qobject_cast<QLineEdit *>(watched);
        if (field && field->hasSelectedText())
            return false;
        if (!press.isAutoRepeat()) // a key held down is one wish
            Stop();
        return true;
    }
    if (key == Qt::Key_A && watched == m_view) {
        m_view->SelectAll();
        return true;
    }
    if (key == Qt::Key_D && m_running) {
        m_process.WriteEnd();
        return true;
    }
    return false;
}

bool frmConsole::eventFilter(QObject *watched, QEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget || widget->window() != this)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
        TouchBy(watched, *event);
        break;
    case QEvent::KeyPress: {
        TouchBy(watched, *event);
        if (HandleKey(watched, *static_cast<QKeyEvent *>(event)))
            return true;
        break;
    }
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace zelvane
