// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gio/gio.h>

#include <memory>

namespace luma {

/// Releases GLib's objects for GPointer. GLib's headers use Qt's word `signals` for a member, so include this
/// file before any header of Qt, and only in .cpp files.
struct GRelease final
{
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(char* text) const { g_free(text); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    void operator()(GSource* source) const
    {
        g_source_destroy(source);
        g_source_unref(source);
    }
};

/// An owned reference to a GObject, string, error, loop, context, hash table or source.
template <class T>
using GPointer = std::unique_ptr<T, GRelease>;

} // namespace luma
