// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/gpointer.h"

#include "base/usertext.h"
// GLib's headers come first, because they use Qt's word `signals` for a member.
#include "mounts/mountrequest.h"
#include "mounts/owncontext.h"

#include <chrono>
#include <optional>
#include <thread>

namespace luma {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds mountLimit{60};
constexpr std::chrono::seconds unmountLimit{10};
constexpr guint pollMilliseconds = 100;
constexpr int unmountAttempts = 5;

// One request on its own main context. Waits for the answer, and gives up when that takes too long or the
// request is no longer wanted.
class Request final
{
public:
    Request(std::function<bool()> isWanted, Clock::duration limit)
        : m_isWanted(std::move(isWanted)), m_limit(limit), m_deadline(Clock::now() + limit)
    {}

    [[nodiscard]] GCancellable* cancellable() const { return m_cancellable.get(); }
    // Why the request was given up; nothing when it was not.
    [[nodiscard]] const std::optional<Error>& failure() const { return m_failure; }

    void waitForAnswer()
    {
        const GPointer<GSource> poll(g_timeout_source_new(pollMilliseconds));
        g_source_set_callback(
            poll.get(),
            [](gpointer self) -> gboolean {
                static_cast<Request*>(self)->giveUpWhenDue();
                return G_SOURCE_CONTINUE;
            },
            this, nullptr);
        g_source_attach(poll.get(), m_context.get());
        while (!m_isAnswered)
            g_main_context_iteration(m_context.get(), TRUE);
    }
    void setAnswered() { m_isAnswered = true; }

private:
    void giveUpWhenDue()
    {
        if (m_failure)
            return;
        if (m_isWanted && !m_isWanted())
            m_failure =
                Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "stopped")), std::errc::operation_canceled};
        else if (Clock::now() >= m_deadline)
            m_failure = Error{userText(
                QT_TRANSLATE_NOOP("luma::Engines", "the server did not answer within %1 seconds"),
                {std::to_string(std::chrono::duration_cast<std::chrono::seconds>(m_limit).count())})};
        if (m_failure)
            g_cancellable_cancel(m_cancellable.get());
    }

    OwnContext m_context;
    GPointer<GCancellable> m_cancellable{g_cancellable_new()};
    std::function<bool()> m_isWanted;
    Clock::duration m_limit;
    Clock::time_point m_deadline;
    std::optional<Error> m_failure;
    bool m_isAnswered = false;
};

// Answers a mount's questions without a user.
class Answers final
{
public:
    Answers(const std::string& user, const std::string& password) : m_user(user), m_password(password)
    {
        g_signal_connect(m_operation.get(), "ask-password", G_CALLBACK(onAskPassword), this);
        g_signal_connect(m_operation.get(), "ask-question", G_CALLBACK(onAskQuestion), this);
        g_signal_connect(m_operation.get(), "show-processes", G_CALLBACK(onShowProcesses), this);
    }
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;
    // GIO may keep the operation longer than this object lives.
    ~Answers() { g_signal_handlers_disconnect_by_data(m_operation.get(), this); }

    [[nodiscard]] GMountOperation* operation() const { return m_operation.get(); }
    // Why the mount was aborted; empty when it was not.
    [[nodiscard]] const std::string& refusal() const { return m_refusal; }

private:
    static void onAskPassword(GMountOperation* operation, const char* /*message*/,
                              const char* /*defaultUser*/, const char* /*defaultDomain*/,
                              GAskPasswordFlags /*flags*/, gpointer self)
    {
        static_cast<Answers*>(self)->givePassword(operation);
    }

    static void onAskQuestion(GMountOperation* operation, const char* /*message*/, const char** /*choices*/,
                              gpointer self)
    {
        // The only question of gvfs is whether to trust a server that it can't identify.
        static_cast<Answers*>(self)->m_refusal =
            "the server's identity is not known; connect to it once with "
            "the remote-login set-up or the file manager";
        g_mount_operation_reply(operation, G_MOUNT_OPERATION_ABORTED);
    }

    static void onShowProcesses(GMountOperation* operation, const char* /*message*/, GArray* /*processes*/,
                                const char** /*choices*/, gpointer self)
    {
        static_cast<Answers*>(self)->m_refusal = "the volume is in use";
        g_mount_operation_reply(operation, G_MOUNT_OPERATION_ABORTED);
    }

    void givePassword(GMountOperation* operation)
    {
        if (m_isPasswordGiven) {
            m_refusal = "the server refused the user or the password";
            g_mount_operation_reply(operation, G_MOUNT_OPERATION_ABORTED);
            return;
        }
        m_isPasswordGiven = true;
        const std::size_t backslash = m_user.find('\\');
        if (backslash != std::string::npos)
            g_mount_operation_set_domain(operation, m_user.substr(0, backslash).c_str());
        g_mount_operation_set_username(operation, m_user.substr(backslash + 1).c_str());
        g_mount_operation_set_password(operation, m_password.c_str());
        g_mount_operation_set_anonymous(operation, FALSE);
        g_mount_operation_set_password_save(operation, G_PASSWORD_SAVE_NEVER);
        g_mount_operation_reply(operation, G_MOUNT_OPERATION_HANDLED);
    }

    GPointer<GMountOperation> m_operation{g_mount_operation_new()};
    const std::string& m_user;
    const std::string& m_password;
    bool m_isPasswordGiven = false;
    std::string m_refusal;
};

struct PendingMount
{
    Request request;
    GPointer<GError> error;
};

void onMountAnswer(GObject* file, GAsyncResult* result, gpointer pending)
{
    auto* mount = static_cast<PendingMount*>(pending);
    GError* error = nullptr;
    g_file_mount_enclosing_volume_finish(G_FILE(file), result, &error);
    mount->error.reset(error);
    mount->request.setAnswered();
}

struct PendingUnmount
{
    Request request;
    bool isDone = false;
};

void onUnmountAnswer(GObject* mount, GAsyncResult* result, gpointer pending)
{
    auto* unmount = static_cast<PendingUnmount*>(pending);
    unmount->isDone = g_mount_unmount_with_operation_finish(G_MOUNT(mount), result, nullptr) != FALSE;
    unmount->request.setAnswered();
}

// True when the volume that encloses `file` is unmounted, or was not mounted.
bool unmountEnclosing(GFile* file)
{
    PendingUnmount pending{Request({}, unmountLimit)};
    const std::string none;
    const Answers answers(none, none);
    GError* rawError = nullptr;
    const GPointer<GMount> mount(g_file_find_enclosing_mount(file, pending.request.cancellable(), &rawError));
    const GPointer<GError> error(rawError);
    if (!mount)
        return error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_NOT_FOUND) != FALSE;
    g_mount_unmount_with_operation(mount.get(), G_MOUNT_UNMOUNT_NONE, answers.operation(),
                                   pending.request.cancellable(), onUnmountAnswer, &pending);
    pending.request.waitForAnswer();
    return pending.isDone;
}

} // namespace

Result<MountOutcome> requestMount(const std::string& url, const std::string& user,
                                  const std::string& password, const std::function<bool()>& isWanted)
{
    PendingMount pending{Request(isWanted, mountLimit), nullptr};
    const Answers answers(user, password);
    const GPointer<GFile> file(g_file_new_for_uri(url.c_str()));
    g_file_mount_enclosing_volume(file.get(), G_MOUNT_MOUNT_NONE, answers.operation(),
                                  pending.request.cancellable(), onMountAnswer, &pending);
    pending.request.waitForAnswer();
    if (!pending.error)
        return MountOutcome::Mounted;
    if (g_error_matches(pending.error.get(), G_IO_ERROR, G_IO_ERROR_ALREADY_MOUNTED) != FALSE)
        return MountOutcome::MountedBefore;
    if (pending.request.failure())
        return *pending.request.failure();
    if (!answers.refusal().empty())
        return Error{answers.refusal()};
    return Error{pending.error->message};
}

void requestUnmount(const std::string& path)
{
    const GPointer<GFile> file(g_file_new_for_path(path.c_str()));
    // GIO remembers which process serves a volume. If the volume was unmounted and mounted again since, that
    // process is gone; querying a file of the volume makes GIO look it up again, which may take a moment.
    for (int attempt = 0; attempt < unmountAttempts && !unmountEnclosing(file.get()); ++attempt) {
        (void)g_file_query_exists(file.get(), nullptr);
        std::this_thread::sleep_for(std::chrono::milliseconds(pollMilliseconds));
    }
}

} // namespace luma
