// SPDX-License-Identifier: GPL-3.0-or-later
// Finds elements for the outline.

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
