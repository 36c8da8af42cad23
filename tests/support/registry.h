// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace luma::test {

/// The test classes of one executable. LUMA_TEST(Class) at the end of a tst_class.cpp enters the class; the
/// program runs the one named by its first argument (further arguments go to QtTest), or all of them.
class Registration final
{
public:
    Registration(const char* name, std::function<std::unique_ptr<QObject>()> make);
};

/// Runs as the command line says; 0 when everything passed. Call with an application object alive.
int run(int argc, char** argv);

/// Gives the process a home folder, settings, cache and runtime folder of its own, removed at exit. Call
/// before the application object is made.
void useOwnHome();

} // namespace luma::test

// NOLINTNEXTLINE(bugprone-macro-parentheses)
#define LUMA_TEST(Class)                                                                                     \
    static const luma::test::Registration registrationOf##Class(                                             \
        #Class, [] { return std::unique_ptr<QObject>(new Class); });
