// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/gpointer.h"

namespace luma {

/// A GLib main context for the calling thread: during its lifetime, the callbacks of GIO operations started on
/// this thread arrive when the context is iterated. Destroyed on the thread that created it.
class OwnContext final
{
public:
    OwnContext() { g_main_context_push_thread_default(m_context.get()); }
    OwnContext(const OwnContext&) = delete;
    OwnContext& operator=(const OwnContext&) = delete;
    ~OwnContext()
    {
        // Otherwise idle callbacks left by GLib would keep their objects for ever.
        while (g_main_context_iteration(m_context.get(), FALSE) != FALSE) {
        }
        g_main_context_pop_thread_default(m_context.get());
    }

    [[nodiscard]] GMainContext* get() const { return m_context.get(); }

private:
    GPointer<GMainContext> m_context{g_main_context_new()};
};

} // namespace luma
