// SPDX-License-Identifier: GPL-3.0-or-later
#include "bench/editor/pagewindow.h"
#include "html/parse.h"
#include "web/pagescheme.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QTreeView>

#include <cstdio>
#include <functional>
#include <vector>

// The longest time for which the window of a page of 1 MB and 20,000 elements doesn't respond, for one command after the
// other and what follows from it. In milliseconds, the median and the longest of several rounds, and as a multiple of
// once parsing the page in the same run.

namespace {

using namespace luma;
using namespace luma::bench;

struct Step
{
    const char* name;
    std::function<void()> run;
};

QTreeView& outlineOf(HTMLDocument& document)
{
    return *document.findChild<QTreeView*>(QStringLiteral("myOutlineView"));
}

/// Selects the element in the middle of the body, or one so many rows behind it.
void selectMiddle(HTMLDocument& document, int behind = 0)
{
    QTreeView& outline = outlineOf(document);
    const QAbstractItemModel& model = *outline.model();
    const QModelIndex body = model.index(1, 0, model.index(0, 0));
    outline.setCurrentIndex(model.index(model.rowCount(body) / 2 + behind, 0, body));
}

std::vector<Step> stepsOf(Window& window)
{
    HTMLDocument& document = window.document();
    const auto action = [&document](const char* name) {
        return [name, &document] {
            auto* const found = document.findChild<QAction*>(QString::fromLatin1(name));
            if (!found || !found->isEnabled()) {
                std::fprintf(stderr, "%s is off\n", name);
                std::exit(1);
            }
            found->trigger();
        };
    };
    const auto find = [&document](const char* text) {
        return [text, &document] {
            document.findChild<QLineEdit*>(QStringLiteral("outlineFindField"))
                ->setText(QString::fromLatin1(text));
        };
    };
    return {
        {"select", [&document] { selectMiddle(document); }},
        {"letter", [&window] { window.type(); }},
        {"duplicate", action("duplicateAction")},
        {"move up", action("moveUpAction")},
        {"delete", action("deleteTagAction")},
        {"undo delete", action("undoAction")},
        {"undo move", action("undoAction")},
        {"undo duplicate", action("undoAction")},
        {"redo", action("redoAction")},
        {"undo again", action("undoAction")},
        {"attributes", action("attributesAction")},
        {"select with attributes", [&document] { selectMiddle(document, 3); }},
        {"attributes off", action("attributesAction")},
        {"page check", action("pageCheckAction")},
        {"letter with page check", [&window] { window.type(); }},
        {"page check off", action("pageCheckAction")},
        {"find", action("findAction")},
        {"find many", find("section")},
        {"find one", find("#entry4000")},
        {"hide", action("hideAction")},
        {"show again", action("hideAction")},
        {"all nodes", action("allNodesAction")},
        {"letter with all nodes", [&window] { window.type(); }},
        {"all nodes off", action("allNodesAction")},
        {"expand all", [&document] { outlineOf(document).expandAll(); }},
        {"collapse all", [&document] { outlineOf(document).collapseAll(); }},
        {"save", action("saveAction")},
        {"page source", action("showSourceAction")},
    };
}

} // namespace

int main(int argc, char** argv)
{
    PageScheme::registerScheme();
    (void)std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const QApplication application(argc, argv);
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    const std::string page = samplePage(5000);
    std::vector<double> parses;
    std::vector<std::vector<double>> pauses;
    std::vector<Step> steps;
    for (int round = 0; round < rounds; ++round) {
        parses.push_back(measured([&page] { (void)html::parse(page); }));
        Window window(page);
        steps = stepsOf(window);
        pauses.resize(steps.size());
        for (std::size_t i = 0; i < steps.size(); ++i) {
            const Pauses watched;
            steps[i].run();
            rest(2500); // until the two copies of the page have been compared
            pauses[i].push_back(watched.longest());
        }
        window.document().undoStack()->setClean();
    }
    const double parse = middle(parses);
    std::printf("parse %.1f\n", parse);
    for (std::size_t i = 0; i < steps.size(); ++i)
        std::printf("%-24s %6.1f, longest %6.1f, %5.2f x parse\n", steps[i].name, middle(pauses[i]),
                    *std::max_element(pauses[i].begin(), pauses[i].end()), middle(pauses[i]) / parse);
    return 0;
}
