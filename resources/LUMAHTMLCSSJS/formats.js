// SPDX-License-Identifier: GPL-3.0-or-later
// Tells the editor the formats at the selection ("formats"): the titles of its text styles and of its alignment,
// whenever they change.

'use strict';

const formats = { told: '' };
const mostFormatNodes = 1000; // of a selection, the first; so that no step of the caret walks through the page

function postFormats() {
    const titles = currentFormats();
    if (titles.join() !== formats.told) {
        formats.told = titles.join();
        post('formats', titles);
    }
}

// Tells them even if they are the same, for an editor that may show others.
function tellFormats() {
    formats.told = null;
    postFormats();
}

function currentFormats() {
    const range = currentRange();
    if (!range || !document.body)
        return [];
    const titles = new Set(range.collapsed ? stylesAround(range.startContainer) : stylesInRange(range));
    for (const title of nextStyles(range))
        if (!titles.delete(title))
            titles.add(title);
    return [...titles, ...getCurrentJustification()];
}

const stylesAround = (node, titles = Object.keys(textStyles)) =>
    titles.filter((title) => closestAt(node, selectorOfStyle(textStyles[title])));

// Those of every text and image.
function stylesInRange(range) {
    const walker = document.createTreeWalker(range.commonAncestorContainer, NodeFilter.SHOW_ALL);
    walker.currentNode = range.startContainer.childNodes[range.startOffset] || range.startContainer;
    let titles = null;
    let parent = null; // of the last node looked at
    for (let node = walker.currentNode, left = mostFormatNodes; node && left > 0; node = walker.nextNode(), --left) {
        if (!isLeaf(node) || node.parentNode === parent || !range.intersectsNode(node) || onlyTouches(range, node))
            continue;
        parent = node.parentNode;
        titles = stylesAround(node, titles || undefined);
        if (titles.length === 0)
            break;
    }
    return titles || stylesAround(range.startContainer);
}

document.addEventListener('selectionchange', postFormats);
