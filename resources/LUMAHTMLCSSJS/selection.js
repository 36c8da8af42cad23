// SPDX-License-Identifier: GPL-3.0-or-later
// Selects elements for the editor, and reports the element that holds the caret ("activeElementHTML").

'use strict';

const activeElement = {
    told: null, // the element last reported
    chosen: null, // the range that the editor selected, which is not reported back
};

// Selects the content of `element`, or the element itself if it can't have any, and scrolls to it unless told not to.
// What is selected already stays: for another selection the engine walks through the page in front of it.
function selectText(element, scrolls = true) {
    if (!element || !document.body || !document.body.contains(element))
        return;
    const range = document.createRange();
    if (holdsNothing(element))
        range.selectNode(element);
    else
        range.selectNodeContents(element);
    activeElement.chosen = range;
    activeElement.told = null;
    const selection = getSelection();
    if (selection.rangeCount === 0 || !isChosenByEditor(selection.getRangeAt(0))) {
        selection.removeAllRanges();
        selection.addRange(range);
    }
    if (!scrolls)
        return;
    caret.isAsShown = false;
    reveal(element);
}

const emptyElements = new Set(('area audio base br canvas col embed hr iframe img input link meta object param '
    + 'picture select source svg textarea track video wbr').split(' '));

function holdsNothing(element) {
    return emptyElements.has(element.localName) || element.matches(serverCode);
}

// Scrolls no further than needed, and not at all if the element is visible.
function reveal(element) {
    const box = element.getBoundingClientRect();
    if (box.top < 0 || box.bottom > innerHeight)
        element.scrollIntoView({ block: box.height > innerHeight ? 'start' : 'center', behavior: 'instant' });
}

function isChosenByEditor(range) {
    const chosen = activeElement.chosen;
    return chosen !== null && range.startContainer === chosen.startContainer
        && range.startOffset === chosen.startOffset && range.endContainer === chosen.endContainer
        && range.endOffset === chosen.endOffset;
}

// The element that a range belongs to: the one element that it selects, else the innermost one around it.
function elementOfRange(range) {
    const { startContainer, startOffset, endContainer, endOffset } = range;
    if (startContainer === endContainer && endOffset === startOffset + 1
        && startContainer.childNodes[startOffset] instanceof Element)
        return startContainer.childNodes[startOffset];
    const node = range.commonAncestorContainer;
    return node instanceof Element ? node : node.parentElement;
}

// The path from the root element, as positions among element children; null for elements outside the page.
function pathOfElement(element) {
    const path = [];
    for (; element.parentElement; element = element.parentElement) {
        let position = 0;
        for (let each = element.previousElementSibling; each; each = each.previousElementSibling)
            ++position;
        path.unshift(position);
    }
    return element === document.documentElement ? path : null;
}

function postActiveElement() {
    const selection = getSelection();
    if (selection.rangeCount === 0 || isChosenByEditor(selection.getRangeAt(0)))
        return;
    activeElement.chosen = null;
    const element = elementOfRange(selection.getRangeAt(0));
    if (!element || element === activeElement.told)
        return;
    const path = pathOfElement(element);
    if (!path)
        return;
    activeElement.told = element;
    postChanges(changes.observer.takeRecords()); // First the change of the page to which the path refers.
    post('activeElementHTML', path);
}

document.addEventListener('selectionchange', postActiveElement);
