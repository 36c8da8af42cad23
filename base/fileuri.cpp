// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/fileuri.h"

namespace luma {

QByteArray fileUri(const std::filesystem::path& path)
{
    const std::string& bytes = path.native();
    return "file://" +
           QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())).toPercentEncoding("!$&'()*+,;=:@/");
}

} // namespace luma
