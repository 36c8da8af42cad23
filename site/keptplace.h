// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// Whether, and where, a publish keeps what it replaces or deletes.
struct KeepChoice
{
    int days = 0;            ///< kept for so long; 0 keeps nothing
    std::string folder = {}; ///< an absolute path on the receiving side; empty: beside the receiving folder

    bool operator==(const KeepChoice&) const = default;
};

/// The folder of the kept versions of one receiving folder. Each publish that replaces or deletes something
/// makes a folder of its own in it, named by its time, with the old files at their paths. Paths are bytes; on
/// a server they are the server's. Immutable, any thread.
class KeptPlace final
{
public:
    /// Beside `receiving` as ".NAME.luma-kept", or where `choice` says. An error if that is no usable place:
    /// not absolute, inside the receiving folder (visitors could read it there), or without a name.
    static Result<KeptPlace> of(const std::string& receiving, const KeepChoice& choice);

    /// The folder that holds this one; relative to the home folder if the receiving folder is.
    [[nodiscard]] const std::string& parent() const { return m_parent; }
    [[nodiscard]] const std::string& name() const { return m_name; }
    /// As a path from the receiving folder, or an absolute one.
    [[nodiscard]] const std::string& fromReceiving() const { return m_fromReceiving; }

    /// The name for the folder of a publish that begins now. Different in each millisecond.
    static std::string publishNow();
    /// When a publish began, from the name of its folder: seconds since 1970. None for any other name.
    static std::optional<std::int64_t> timeOf(std::string_view publish);

private:
    std::string m_parent;
    std::string m_name;
    std::string m_fromReceiving;
};

/// What one transfer is to keep, and where.
struct KeptPublish
{
    KeptPlace place;
    std::string publish; ///< the name of its folder
};

} // namespace luma
