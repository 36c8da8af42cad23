// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace luma {

/// Reads one file after another into the same memory, for jobs that go through many files. One thread at a
/// time.
class FileReader final
{
public:
    /// The whole file as bytes, under readFile's rules; valid until the next read.
    Result<std::string_view> read(const std::string& path);

private:
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
};

} // namespace luma
