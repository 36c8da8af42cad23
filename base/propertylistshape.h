// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace luma {

/// True when these bytes are a property list, binary or XML, whose nesting and number of values stay within
/// what recursive code can take: at most 100 levels and a million values, an object that is referred to twice
/// counting twice. The library that reads property lists trusts both. Any thread.
bool hasReadableShape(const QByteArray& bytes);

} // namespace luma
