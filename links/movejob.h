// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkplan.h"

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Something that a copy has made.
struct CopiedItem
{
    enum class Type : std::uint8_t { File, Folder, Link };

    std::filesystem::path path;
    Type type = Type::File;
    std::uint64_t size = 0;
    timespec modified = {};
    std::string mark; // of a page whose links changed its hash, of a symbolic link what it says
};

/// A plan as its journal keeps it: all that is needed to carry it out, to finish it after a crash, and to take it back.
struct MoveJob
{
    enum class Kind : std::uint8_t {
        Move,
        Copy,
        RemoveCopies,
        Links, // the items stay where they are; only pages change
        Text   // there are no items; text changes that is no link
    };

    Kind kind = Kind::Move;
    std::string tag;          // three letters or digits in the names of its temporary files
    std::uint64_t undoes = 0; // the number of the job that it takes back
    std::vector<MovedItem> items;
    std::vector<PageRewrite> pages;
    std::vector<SymlinkChange> symlinks;
    bool restoresTimes = false; // a page gets the time in `modified`
    std::vector<CopiedItem> copies;
    std::string title; // of Text
};

MoveJob jobOf(const LinkPlan& plan);
/// The job that takes `job` back. One that removes copies can't be taken back: its inverse does nothing.
MoveJob inverseOf(const MoveJob& job);

/// What the job does, for the user: "Move x.html to b", "Rename x.html to y.html", "Copy 3 items to b".
std::string titleOf(const MoveJob& job);
std::string titleOf(const LinkPlan& plan);

/// The name of the job's temporary file number `index`.
std::string temporaryName(const MoveJob& job, std::size_t index);

/// The job as bytes, and back; nothing for bytes that are none. Behind a job's bytes, others may follow: their place is put
/// into `end`.
std::string serialized(const MoveJob& job);
std::optional<MoveJob> parseJob(std::string_view bytes, std::size_t& end);

} // namespace luma
