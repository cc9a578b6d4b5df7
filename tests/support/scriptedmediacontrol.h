// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/mediacontrol.h"

#include <map>
#include <QString>
#include <QStringList>
#include <utility>

namespace zelvane::test
{

/// A media control service that writes down its commands and gives the answers it was given; a command
/// without an answer succeeds with an empty one.
class ScriptedMediaControl : public MediaControl
{
public:
    QStringList commands; ///< to the letter, in order
    std::map<QString, MediaAnswer> answers;
    std::map<int, QString> errorTexts;

    MediaAnswer Send(const QString &command) override
    {
        commands.append(command);
        const auto answer = answers.find(command);
        return answer == answers.end() ? MediaAnswer() : answer->second;
    }
    QString ErrorText(int code) const override
    {
        const auto text = errorTexts.find(code);
        return text == errorTexts.end() ? QString() : text->second;
    }

    void Answer(const QString &command, const QString &text) { answers[command] = {0, text}; }
    void Fail(const QString &command, int code) { answers[command] = {code, {}}; }
    /// What came since the last call.
    QStringList TakeCommands() { return std::exchange(commands, {}); }
    /// A "play ... notify" ends.
    void End(int notice = MediaNotice::Successful) { Notify(notice); }
};

} // namespace zelvane::test
