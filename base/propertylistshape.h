// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace luma {

/// Whether the bytes are a property list, binary or XML, of at most 100 levels and a million values, which
/// recursive code can handle; an object referred to twice counts twice. The library that reads property lists
/// does not check. Any thread.
bool hasReadableShape(const QByteArray& bytes);

} // namespace luma
