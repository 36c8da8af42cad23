// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/stillwanted.h"
#include "site/keptplace.h"

#include <string>
#include <vector>

namespace luma {

/// The kept versions of a folder on this computer or on a mounted share. No symbolic link in it is followed,
/// and nothing in it is removed but the folders of publishes. One thread at a time.
class KeptFolder final
{
public:
    explicit KeptFolder(KeptPlace place) : m_place(std::move(place)) {}

    enum class Original { Stays, Goes };
    /// Keeps the file or link `name` of the open `folder`; `path` is its path in the site. It is linked where
    /// that is possible, so that the site's file is never missing; else it is copied. With Original::Goes it is
    /// moved if possible; after a copy the caller removes it. Makes the publish's folder when it is first needed.
    /// Returns the reason for a failure; empty if there was none.
    [[nodiscard]] std::string keep(const FileDescriptor& folder, const std::string& name,
                                   const std::string& publish, const std::string& path, Original original,
                                   const StillWanted& stillWanted);
    /// Takes the last keep() back: what it kept was not replaced after all.
    void forget(const std::string& publish, const std::string& path) const;

    /// The folders of publishes, the oldest first. None if nothing was ever kept.
    [[nodiscard]] Result<std::vector<std::string>> publishes() const;
    /// Removes the folders of publishes that began before `time`, in seconds since 1970.
    [[nodiscard]] Result<void> removeBefore(std::int64_t time) const;

private:
    KeptPlace m_place;

    [[nodiscard]] Result<FileDescriptor> open() const;
    [[nodiscard]] Result<FileDescriptor> openOrMake(const std::string& publish,
                                                    std::string_view folder) const;
};

} // namespace luma
