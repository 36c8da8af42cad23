// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <functional>
#include <optional>

namespace luma {

/// Runs a shell with these arguments, waits for it, and gives its standard output without the last character;
/// nothing when there was none. The application's is a TaskWrapper, a test's may be anything.
using ShellRunner = std::function<std::optional<QString>(const QStringList& arguments)>;

} // namespace luma
