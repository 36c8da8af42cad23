// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>

/// Included by registry.h, hence by each test: on a machine under load QtTest's five seconds are too few.
/// A wait that succeeds takes no longer.

inline constexpr int patience = 60'000; // milliseconds

#undef QTRY_VERIFY
#undef QTRY_VERIFY2
#undef QTRY_COMPARE
#define QTRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, patience)
#define QTRY_VERIFY2(condition, message) QTRY_VERIFY2_WITH_TIMEOUT(condition, message, patience)
#define QTRY_COMPARE(value, expected) QTRY_COMPARE_WITH_TIMEOUT(value, expected, patience)
