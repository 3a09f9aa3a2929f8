#pragma once
#include <gio/gio.h>
// GLib comes before Qt, whose keywords would be its names.
#include "Base/Jobs/Completion.h"
#include <memory>

// Owners of what GLib counts references of, and of its errors.
template <class Object> using GLibObject = std::shared_ptr<Object>;

template <class Object> GLibObject<Object> adopted(Object *object)
{
    return object ? GLibObject<Object>(object, g_object_unref) : nullptr;
}

class GLibError {
public:
    GLibError() = default;
    GLibError(const GLibError &) = delete;
    GLibError &operator=(const GLibError &) = delete;
    ~GLibError() { g_clear_error(&m_error); }

    GError **out() { return &m_error; }
    explicit operator bool() const { return m_error != nullptr; }
    const GError &operator*() const { return *m_error; }

private:
    GError *m_error = nullptr;
};

// One asynchronous call of GLib that a job waits for: give cancellable(), finished and callData() to the call, then
// await its result. The cancellation of the job cancels the call and throws Cancelled at once, since some calls never
// answer: the callee may have left the bus for good. Main thread only; GLib answers through the main thread's event
// loop.
class GLibCall {
public:
    using Result = GLibObject<GAsyncResult>;

    class Cancelled : public std::exception {
    public:
        const char *what() const noexcept override { return "nobody waits for this call any more"; }
    };

    explicit GLibCall(jobs::MainQueue &queue)
        : m_cancellable(adopted(g_cancellable_new())),
          m_completion(queue),
          m_answer(m_completion.resolver()),
          m_cancelled(m_answer.stopToken(), Cancel{m_cancellable, m_answer})
    {
    }
    GLibCall(const GLibCall &) = delete;
    GLibCall &operator=(const GLibCall &) = delete;
    ~GLibCall() = default;

    GCancellable *cancellable() const { return m_cancellable.get(); }

    // Once; finished() deletes it.
    gpointer callData() const { return new jobs::Resolver<Result>(m_answer); }

    static void finished(GObject * /*source*/, GAsyncResult *result, gpointer callData)
    {
        const std::unique_ptr<jobs::Resolver<Result>> answer(static_cast<jobs::Resolver<Result> *>(callData));
        g_object_ref(result);
        answer->resolve(adopted(result));
    }

    auto operator co_await() const { return m_completion.operator co_await(); }

private:
    struct Cancel {
        GLibObject<GCancellable> cancellable;
        jobs::Resolver<Result> answer;
        void operator()() const
        {
            answer.fail(std::make_exception_ptr(Cancelled()));
            g_cancellable_cancel(cancellable.get());
        }
    };

    GLibObject<GCancellable> m_cancellable;
    jobs::Completion<Result> m_completion;
    jobs::Resolver<Result> m_answer;
    std::stop_callback<Cancel> m_cancelled;
};
