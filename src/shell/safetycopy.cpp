// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/safetycopy.h"

#include "platform/runtimeerror.h"
#include "platform/textbuffer.h"
#include "platform/worker.h"
#include "shell/documentkeys.h"
#include "shell/editorcontext.h"
#include "shell/settings.h"

#include <algorithm>
#include <functional>
#include <mutex>
#include <new>
#include <QFileInfo>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

const QString NotKept = u"No copy of the unsaved text can be kept: "_s;

} // namespace

void CopyTimes::Edited(Clock::time_point now, qsizetype size)
{
    if (!m_first)
        m_first = now;
    m_due = std::min(now + AfterEdit, *m_first + (size > Large ? AtLatest : WhileTyping));
}

void CopyTimes::Failed(Clock::time_point now)
{
    if (m_due)
        return; // edited meanwhile
    m_first = now;
    m_due = now + AtLatest;
}

/// What the thread does, in the order in which it is asked for.
class SafetyCopy::Writer
{
public:
    /// Both are told on the thread. @param written how each writing has ended: empty, or why it failed
    /// @param lost why a text that is gone could not be kept
    Writer(std::function<void(const QString &)> written, std::function<void(const QString &)> lost)
        : m_written(std::move(written)), m_lost(std::move(lost))
    {
    }

    void Write(CopyInfo info, QByteArray bytes)
    {
        if (m_next) {
            // A disk that is slower than the user gets the newest text only.
            const std::lock_guard lock(m_next->mutex);
            if (!m_next->taken) {
                m_next->info = std::move(info);
                m_next->bytes = std::move(bytes);
                return;
            }
        }
        m_next = std::make_shared<Request>();
        m_next->info = std::move(info);
        m_next->bytes = std::move(bytes);
        m_worker.Do([this, request = m_next] { WriteNow(*request); });
    }

    void Remove()
    {
        if (m_next) {
            const std::lock_guard lock(m_next->mutex);
            m_next->taken = true;
            m_next->bytes.clear();
        }
        m_next.reset();
        m_worker.Do([this] {
            m_upToDate = false;
            m_failure.clear();
            m_copy.Remove();
            m_adopted.Remove();
        });
    }

    void RemoveOwn()
    {
        m_next.reset();
        m_worker.Do([this] {
            m_upToDate = false;
            m_failure.clear();
            m_copy.Remove();
        });
    }

    void Keep()
    {
        m_next.reset();
        m_worker.Do([this] {
            m_upToDate = false;
            if (m_copy.Stands())
                m_adopted.Remove();
            m_copy.Keep();
            m_adopted.Keep();
            if (const QString why = std::exchange(m_failure, {}); !why.isEmpty())
                m_lost(why);
        });
    }

    void Adopt(UnsavedCopy copy)
    {
        m_next.reset();
        m_worker.Do([this, adopted = std::make_shared<UnsavedCopy>(std::move(copy))] {
            m_adopted.Keep();
            m_adopted = std::move(*adopted);
            m_upToDate = true;
        });
    }

    /// @return whether what stands is the newest text that was handed over
    bool Finish()
    {
        m_worker.Finish();
        return m_upToDate;
    }

private:
    struct Request {
        std::mutex mutex;
        CopyInfo info;
        QByteArray bytes;
        bool taken = false;
    };

    void WriteNow(Request &request)
    {
        CopyInfo info;
        QByteArray bytes;
        {
            const std::lock_guard lock(request.mutex);
            if (std::exchange(request.taken, true))
                return;
            info = std::exchange(request.info, {});
            bytes = std::exchange(request.bytes, {});
        }
        m_upToDate = false;
        try {
            m_copy.Write(info, bytes);
            m_upToDate = true;
            m_failure.clear();
            m_adopted.Remove();
        } catch (const RunTimeError &error) {
            m_failure = error.Description();
        } catch (const std::bad_alloc &) {
            m_failure = OutOfMemoryText();
        }
        m_written(m_failure);
    }

    std::function<void(const QString &)> m_written;
    std::function<void(const QString &)> m_lost;
    std::shared_ptr<Request> m_next; ///< the newest writing, while no other work has come behind it
    UnsavedCopy m_copy;              ///< this and what follows belong to the thread
    UnsavedCopy m_adopted;
    bool m_upToDate = false;
    QString m_failure; ///< why the newest text is not in the copy
    Worker m_worker;   // ends first
};

SafetyCopy::SafetyCopy(const DocumentRecord &document, const TextBuffer &text, const SettingsStore &settings,
                       StatusLine &status)
    : m_document(document),
      m_text(text),
      m_settings(settings),
      m_status(status),
      m_writer(std::make_unique<Writer>(
          [this](const QString &failure) {
              QMetaObject::invokeMethod(
                  this,
                  [this, failure] {
                      if (!failure.isEmpty())
                          Failed(failure);
                  },
                  Qt::QueuedConnection);
          },
          [this](const QString &failure) { TellLater(failure); }))
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::CoarseTimer);
    connect(&m_timer, &QTimer::timeout, this, &SafetyCopy::Look);
}

SafetyCopy::~SafetyCopy()
{
    m_writer.reset();
}

void SafetyCopy::Edited()
{
    const auto now = CopyTimes::Clock::now();
    m_unsaved = true;
    m_times.Edited(now, m_size);
    // Keys put it off, which is seen to when it rings. Behind a failure they make it come sooner.
    if (!m_timer.isActive() || *m_times.Due() < m_rings)
        Wait(now);
}

void SafetyCopy::Wait(CopyTimes::Clock::time_point now)
{
    const auto due = m_times.Due();
    if (!due)
        return;
    m_rings = *due;
    m_timer.start(
        std::max(std::chrono::milliseconds(1), std::chrono::ceil<std::chrono::milliseconds>(*due - now)));
}

void SafetyCopy::Look()
{
    const auto due = m_times.Due();
    if (!due)
        return;
    // Keys that came while it waited have put it off.
    if (const auto now = CopyTimes::Clock::now(); now < *due)
        Wait(now);
    else
        Take();
}

void SafetyCopy::Take()
{
    m_times.Taken();
    if (!m_settings.Flag(Keys::SafetyCopy)) {
        m_taken = true;
        m_writer->RemoveOwn();
        return;
    }
    m_taken = false;
    try {
        QByteArray text = m_text.Utf8();
        m_size = text.size();
        const QString &name =
            m_document.CurrentFile.isEmpty() ? m_document.OfferedName : m_document.CurrentFile;
        m_writer->Write({.name = name.isEmpty() ? QString() : QFileInfo(name).absoluteFilePath(),
                         .kind = int(m_document.DocumentKind),
                         .encoding = m_document.Encoding},
                        std::move(text));
        m_taken = true;
    } catch (const std::bad_alloc &) {
        Failed(OutOfMemoryText());
    }
}

void SafetyCopy::TellLater(const QString &failure)
{
    // Whoever discards a text has more to show in the status line first.
    QMetaObject::invokeMethod(
        this, [this, failure] { m_status.Show(NotKept + failure); }, Qt::QueuedConnection);
}

void SafetyCopy::Failed(const QString &why)
{
    if (!m_unsaved)
        return;
    const auto now = CopyTimes::Clock::now();
    m_times.Failed(now);
    if (!m_timer.isActive())
        Wait(now);
    // Each time: other texts soon stand in the status line, and the text is in danger all the while.
    m_status.Show(NotKept + why);
}

void SafetyCopy::Secure()
{
    if (m_unsaved && m_times.Due())
        Take();
}

void SafetyCopy::Saved()
{
    m_timer.stop();
    m_times.Taken();
    m_taken = true;
    if (std::exchange(m_unsaved, false))
        m_writer->Remove();
}

void SafetyCopy::Discarded()
{
    m_timer.stop();
    m_times.Taken();
    if (!std::exchange(m_unsaved, false))
        return;
    m_writer->Keep();
    if (!std::exchange(m_taken, true))
        TellLater(OutOfMemoryText());
}

void SafetyCopy::Adopt(UnsavedCopy copy)
{
    m_unsaved = true;
    m_writer->Adopt(std::move(copy));
}

bool SafetyCopy::Finish()
{
    Secure();
    return m_writer->Finish() || !m_unsaved;
}

} // namespace zelvane
