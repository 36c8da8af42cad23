// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/markupdifference.h"

namespace luma {

namespace {

/// The children of one side that have no equal at the same place of the other: [first, end).
struct Run
{
    html::Node* first = nullptr;
    html::Node* end = nullptr;

    [[nodiscard]] bool isEmpty() const { return first == end; }
    [[nodiscard]] bool isOneElement() const
    {
        return first != end && first->next() == end && first->asElement();
    }
};

html::Node* before(const html::Node* end, const html::ParentNode& parent)
{
    return end ? end->previous() : parent.lastChild();
}

void shortenFromBehind(Run& mine, const html::ParentNode& parent, Run& theirs,
                       const html::ParentNode& theirParent)
{
    while (!mine.isEmpty() && !theirs.isEmpty()) {
        html::Node* const last = before(mine.end, parent);
        html::Node* const theirLast = before(theirs.end, theirParent);
        if (!html::sameTree(*last, *theirLast))
            return;
        mine.end = last;
        theirs.end = theirLast;
    }
}

bool isSameElement(const Run& mine, const Run& theirs)
{
    if (!mine.isOneElement() || !theirs.isOneElement())
        return false;
    const html::Element& a = *mine.first->asElement();
    const html::Element& b = *theirs.first->asElement();
    return a.tagName() == b.tagName() && a.nameSpace() == b.nameSpace();
}

void compareAttributes(html::ParentNode& mine, html::ParentNode& theirs, MarkupDifference& difference)
{
    html::Element* const element = mine.asElement();
    const html::Element* const other = theirs.asElement();
    if (element && other && element->attributes() != other->attributes())
        difference.attributes.emplace_back(element, other->attributes());
}

} // namespace

MarkupDifference differenceTo(html::ParentNode& mine, html::ParentNode& theirs)
{
    MarkupDifference ofAttributes;
    compareAttributes(mine, theirs, ofAttributes);
    MarkupDifference difference = differenceInRun(mine, mine.firstChild(), nullptr, theirs);
    for (auto& each : difference.attributes)
        ofAttributes.attributes.push_back(std::move(each));
    difference.attributes = std::move(ofAttributes.attributes);
    return difference;
}

MarkupDifference differenceInRun(html::ParentNode& mine, html::Node* first, html::Node* end,
                                 html::ParentNode& theirs)
{
    MarkupDifference difference;
    html::ParentNode* parent = &mine;
    html::ParentNode* theirParent = &theirs;
    Run run = {first, end};
    for (;;) {
        Run theirRun = {theirParent->firstChild(), nullptr};
        while (!run.isEmpty() && theirRun.first && html::sameTree(*run.first, *theirRun.first)) {
            run.first = run.first->next();
            theirRun.first = theirRun.first->next();
        }
        shortenFromBehind(run, *parent, theirRun, *theirParent);
        if (run.isEmpty() && theirRun.isEmpty())
            return difference;
        if (!isSameElement(run, theirRun)) {
            difference.parent = parent;
            difference.previous = before(run.first, *parent);
            difference.next = run.end;
            while (theirRun.first != theirRun.end) {
                html::Node* const node = theirRun.first;
                theirRun.first = node->next();
                difference.nodes.push_back(node->detach());
            }
            return difference;
        }
        parent = run.first->asParent();
        theirParent = theirRun.first->asParent();
        compareAttributes(*parent, *theirParent, difference);
        run = {parent->firstChild(), nullptr};
    }
}

} // namespace luma
