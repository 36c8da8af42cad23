// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/registry.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <string_view>
#include <vector>

namespace luma::test {

namespace {

struct Entry
{
    const char* name;
    std::function<std::unique_ptr<QObject>()> make;
};

std::vector<Entry>& entries()
{
    static std::vector<Entry> all;
    return all;
}

} // namespace

Registration::Registration(const char* name, std::function<std::unique_ptr<QObject>()> make)
{
    entries().push_back({name, std::move(make)});
}

int run(int argc, char** argv)
{
    std::string_view wanted = argc > 1 && argv[1][0] != '-' ? argv[1] : "";
    std::vector<char*> arguments = {argv[0]};
    for (int i = wanted.empty() ? 1 : 2; i < argc; ++i)
        arguments.push_back(argv[i]);
    int failures = 0;
    bool found = false;
    for (const Entry& entry : entries()) {
        if (!wanted.empty() && wanted != entry.name)
            continue;
        found = true;
        const std::unique_ptr<QObject> object = entry.make();
        failures += QTest::qExec(object.get(), static_cast<int>(arguments.size()), arguments.data());
    }
    if (!found) {
        (void)std::fprintf(stderr, "no test class %s in this program\n", argc > 1 ? argv[1] : "");
        return 1;
    }
    return failures == 0 ? 0 : 1;
}

void useOwnHome()
{
    static const QTemporaryDir home;
    const QByteArray path = QFile::encodeName(home.path());
    qputenv("HOME", path);
    qputenv("XDG_CONFIG_HOME", path + "/.config");
    qputenv("XDG_CACHE_HOME", path + "/.cache");
    qputenv("XDG_DATA_HOME", path + "/.local/share");
    qputenv("XDG_STATE_HOME", path + "/.local/state");
    if (!qEnvironmentVariableIsSet("LUMA_PRIVATE_SESSION")) {
        qputenv("XDG_RUNTIME_DIR", path + "/run");
        QDir().mkpath(home.path() + QLatin1String("/run"));
        QFile::setPermissions(home.path() + QLatin1String("/run"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

} // namespace luma::test
