// SPDX-License-Identifier: GPL-3.0-or-later
// Finds elements for the outline, and selects text that the editor found.

'use strict';

// The elements that a CSS selector or an XPath expression finds, as their numbers in document order, joined by blanks.
function findElements(text) {
    const found = new Set([...elementsOfSelector(text), ...elementsOfXPath(text)]);
    const numbers = [];
    Array.from(document.getElementsByTagName('*')).forEach((element, number) => {
        if (found.has(element))
            numbers.push(number);
    });
    return numbers.join(' ');
}

// Selects characters of the body's text nodes, counted in document order, and scrolls there.
function selectCharacters(start, end) {
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    const range = document.createRange();
    let before = 0;
    for (let node; before < end && (node = walker.nextNode()); before += node.length) {
        if (start >= before && start < before + node.length)
            range.setStart(node, start - before);
        if (end <= before + node.length)
            range.setEnd(node, end - before);
    }
    const selection = getSelection();
    selection.removeAllRanges();
    selection.addRange(range);
    caret.isAsShown = false;
    reveal(elementOfRange(range));
}

// A text that is no selector finds nothing.
function elementsOfSelector(text) {
    try {
        return Array.from(document.querySelectorAll(text));
    } catch {
        return [];
    }
}

// A found attribute or text stands for its element.
function elementsOfXPath(text) {
    const found = [];
    try {
        const nodes = document.evaluate(text, document, null, XPathResult.UNORDERED_NODE_ITERATOR_TYPE, null);
        for (let node = nodes.iterateNext(); node; node = nodes.iterateNext())
            found.push(node.ownerElement || (node instanceof Element ? node : node.parentElement));
    } catch {
        return [];
    }
    return found;
}
