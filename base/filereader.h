// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace luma {

/// Reads one file after another into memory that it uses again, for work that goes over many files. One
/// thread.
class FileReader final
{
public:
    /// The whole file as bytes, under readFile's rules. They stay until the next read.
    Result<std::string_view> read(const std::string& path);

private:
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
};

} // namespace luma
