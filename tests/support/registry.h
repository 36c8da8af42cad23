// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/patience.h"

#include <QObject>

#include <functional>
#include <memory>

namespace luma::test {

/// Registers a test class. LUMA_TEST(Class) at the end of tst_class.cpp does this; the program runs the class
/// named by its first argument, with further arguments for QtTest, or all classes.
class Registration final
{
public:
    Registration(const char* name, std::function<std::unique_ptr<QObject>()> make);
};

/// Runs the tests that the command line names; 0 if all passed. Needs an application object.
int run(int argc, char** argv);

/// Gives the process temporary folders for home, settings, cache and runtime files. Call it before the
/// application object is created.
void useOwnHome();

} // namespace luma::test

// NOLINTBEGIN(bugprone-macro-parentheses)
#define LUMA_TEST(Class)                                                                                     \
    static const luma::test::Registration registrationOf##Class(                                             \
        #Class, [] { return std::unique_ptr<QObject>(new Class); });
// NOLINTEND(bugprone-macro-parentheses)
