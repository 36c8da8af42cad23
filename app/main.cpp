// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktopstyle.h"
#include "app/program.h"
#include "base/resources.h"
#include "desktop/icons.h"
#include "desktop/singleinstance.h"
#include "revision.h"
#include "web/pagescheme.h"
#include "web/previewprocess.h"
#include "web/previewprogram.h"

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QSettings>
#include <QTranslator>

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace {

std::vector<std::string> argumentsIn(int argc, char** argv)
{
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

int answerOnTerminal(const luma::CommandLine& line)
{
    if (line.request == luma::CommandLine::Request::Version)
        return std::puts("LUMA " LUMA_VERSION_TEXT) < 0 ? 1 : 0;
    if (line.request == luma::CommandLine::Request::Help)
        return std::fputs(luma::usageText, stdout) < 0 ? 1 : 0;
    (void)std::fprintf(stderr, "luma: %s\n%s", line.message.c_str(), luma::usageText);
    return 2;
}

int failed(const luma::Error& error)
{
    (void)std::fprintf(stderr, "luma: %s\n", error.text.c_str());
    return 2;
}

QList<QByteArray> asBytes(const std::vector<std::string>& arguments)
{
    QList<QByteArray> bytes;
    for (const std::string& argument : arguments)
        bytes += QByteArray::fromStdString(argument);
    return bytes;
}

luma::CommandLine commandLineIn(const QList<QByteArray>& arguments)
{
    std::vector<std::string> words;
    for (const QByteArray& argument : arguments)
        words.push_back(argument.toStdString());
    return luma::readCommandLine(words);
}

bool installTranslation(const QString& name, const QString& folder)
{
    auto* const translator = new QTranslator(qApp);
    return translator->load(name, folder) && QCoreApplication::installTranslator(translator);
}

// The user's choice, or the first of the desktop's languages that there are texts in; those in the sources are English.
void chooseLanguage()
{
    const QString chosen = QSettings(luma::defaultPreferencesFile(), QSettings::IniFormat)
                               .value(luma::Preferences::language)
                               .toString();
    const QString ours = QFile::decodeName((luma::resourceFolder() / "translations").c_str());
    const QString theirs = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    const QStringList languages = chosen.isEmpty() ? QLocale::system().uiLanguages() : QStringList(chosen);
    for (QString language : languages) {
        language.replace(u'-', u'_');
        if (language.startsWith(QLatin1StringView("en")))
            return;
        if (installTranslation(QStringLiteral("luma_") + language, ours)) {
            installTranslation(QStringLiteral("qtbase_") + language, theirs);
            return;
        }
    }
}

bool showsWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(),
                       [](const QWidget* window) { return window->isVisible(); });
}

// `line` is not Unusable.
int run(const luma::CommandLine& line)
{
    using luma::SingleInstance;
    luma::Program* running = nullptr;
    SingleInstance instance(
        [&running](const QList<QByteArray>& arguments) { return running->launch(commandLineIn(arguments)); });
    // Before anything else: the program's start ends folder watchers, and may only end those of no process.
    const auto start = instance.begin(asBytes(luma::argumentsFor(line)));
    if (!start)
        return failed(start.error());
    if (*start == SingleInstance::Start::HandedOver)
        return 0;
    luma::Program program;
    running = &program;
    if (const auto launched = program.launch(line); !launched)
        return failed(launched.error());
    // A page that could not be opened has said so already.
    if (!showsWindow()) {
        program.terminate();
        return 0;
    }
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    using luma::PageScheme;
    if (const auto early = argumentsIn(argc, argv); luma::isAnsweredOnTerminal(early))
        return answerOnTerminal(luma::readCommandLine(early));

    // The web engine prints its settings where it finds no graphics driver.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext.info=false"));
    // A process that this program has started for one preview (see PreviewProcess).
    const bool isPreview = argc == 2 && argv[1] == std::string_view(luma::PreviewProcess::option);
    PageScheme::registerScheme(isPreview ? PageScheme::Network::Closed : PageScheme::Network::Open);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("luma"));
    QApplication::setApplicationDisplayName(QStringLiteral("LUMA"));
    QApplication::setApplicationVersion(QStringLiteral(LUMA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("org.luma.LUMA"));
    QApplication::setWindowIcon(luma::icons::application());
    chooseLanguage();
    luma::DesktopStyle::use();
    if (isPreview)
        return luma::PreviewProgram::run();

    // The application object has removed Qt's own options.
    const luma::CommandLine line = luma::readCommandLine(argumentsIn(argc, argv));
    if (line.request == luma::CommandLine::Request::Unusable)
        return answerOnTerminal(line);

    return run(line);
}
