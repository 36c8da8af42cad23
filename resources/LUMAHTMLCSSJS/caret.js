// SPDX-License-Identifier: GPL-3.0-or-later
// The position of the caret: kept while the page is reloaded, and set where something is dropped.

'use strict';

// Both ends of the selection, each as the path of child positions from the root element and an offset; an
// empty text without a selection.
function caretPosition() {
    const { anchorNode, anchorOffset, focusNode, focusOffset } = getSelection();
    if (!anchorNode)
        return '';
    return JSON.stringify([[wayToNode(anchorNode), anchorOffset], [wayToNode(focusNode), focusOffset]]);
}

// Restores the selection that caretPosition() returned, as far as the page still has such places.
function restoreCaret(position) {
    const [anchor, focus] = JSON.parse(position).map(([way, offset]) => placeAt(way, offset));
    const range = getSelection();
    range.setBaseAndExtent(anchor.node, anchor.offset, focus.node, focus.offset);
    activeElement.chosen = range.getRangeAt(0).cloneRange();
}

// Whether the page is untouched since it was shown.
const isAsShown = () => caret.isAsShown;
const caret = { isAsShown: true };
const markAsShown = () => { caret.isAsShown = true; };
for (const type of ['keydown', 'mousedown', 'wheel', 'drop'])
    document.addEventListener(type, () => { caret.isAsShown = false; }, { capture: true, passive: true });

function wayToNode(node) {
    const way = [];
    for (; node.parentNode && node !== document.documentElement; node = node.parentNode)
        way.unshift(Array.prototype.indexOf.call(node.parentNode.childNodes, node));
    return way;
}

function placeAt(way, offset) {
    let node = document.documentElement;
    for (const step of way) {
        if (!node.childNodes[step])
            return { node, offset: node.childNodes.length };
        node = node.childNodes[step];
    }
    const length = node instanceof CharacterData ? node.length : node.childNodes.length;
    return { node, offset: Math.min(offset, length) };
}

// Sets the caret at a point of the viewport, in CSS pixels.
function setCaretAt(x, y) {
    const range = document.caretRangeFromPoint(x, y);
    if (range && document.body.contains(range.startContainer))
        getSelection().collapse(range.startContainer, range.startOffset);
}
