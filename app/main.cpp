// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/program.h"
#include "web/pagescheme.h"

#include <QApplication>
#include <QIcon>

#include <cstdio>

namespace {

std::vector<std::string> argumentsIn(int argc, char** argv)
{
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

int answerOnTerminal(const luma::CommandLine& line)
{
    if (line.request == luma::CommandLine::Request::Version)
        return std::printf("LUMA %s\n", LUMA_VERSION) < 0 ? 1 : 0;
    if (line.request == luma::CommandLine::Request::Help)
        return std::fputs(luma::usageText, stdout) < 0 ? 1 : 0;
    (void)std::fprintf(stderr, "luma: %s\n%s", line.message.c_str(), luma::usageText);
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    if (const auto early = argumentsIn(argc, argv); luma::isAnsweredOnTerminal(early))
        return answerOnTerminal(luma::readCommandLine(early));

    luma::PageScheme::registerScheme();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("luma"));
    QApplication::setApplicationDisplayName(QStringLiteral("LUMA"));
    QApplication::setApplicationVersion(QStringLiteral(LUMA_VERSION));

    // The application object has removed Qt's own options.
    const luma::CommandLine line = luma::readCommandLine(argumentsIn(argc, argv));
    if (line.request == luma::CommandLine::Request::Unusable)
        return answerOnTerminal(line);

    luma::Program program;
    if (const auto launched = program.launch(line); !launched) {
        (void)std::fprintf(stderr, "luma: %s\n", launched.error().text.c_str());
        return 2;
    }
    return QApplication::exec();
}
