// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "writing/manualsynopsis.h"
#include "writing/opcodearguments.h"
#include "writing/synopsis.h"
#include "writing/ui/boundcommands.h"
#include "writing/ui/writingaid.h"

#include <memory>
#include <optional>
#include <QObject>
#include <QString>
#include <vector>

namespace zelvane
{

class HintTip;
class NameKeeper;
class OpcodeList;
struct OpcodeCall;

/// `ArgumentHint`: a tip with the forms of the opcode at the caret, the argument that the caret is in in
/// bold. It comes on command and while arguments are typed, follows the caret, and goes when the caret leaves
/// the call, the text is scrolled or another window takes over, and with Esc.
class ArgumentHintAid : public QObject, public WritingAid
{
    Q_OBJECT

public:
    explicit ArgumentHintAid(const WritingContext &context);
    ~ArgumentHintAid() override;

    void SettingsApplied() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// A call and where its opcode stands in the text.
    struct Place;

    std::optional<Place> FindPlace();
    std::vector<Synopsis> Forms(const OpcodeCall &call);
    bool IsOpcode(QStringView name);
    /// Shows the tip of the call at the caret, or hides it.
    void Show();
    void Hide();
    void FollowCaret();

    WindowContext m_context;
    std::shared_ptr<NameKeeper> m_names;
    const OpcodeList &m_opcodes;
    OpcodeArguments m_arguments;
    ManualSynopses m_manual;
    std::unique_ptr<HintTip> m_tip;
    bool m_typed = false; ///< what begins an argument has been typed, and the text has not told it yet
    BoundCommands m_commands;
};

} // namespace zelvane
