// SPDX-License-Identifier: GPL-3.0-or-later
// Blocks: the elements that start on a line of their own, and how they are split and joined.

'use strict';

const blockNames = new Set(('address article aside blockquote body caption center dd details dialog dir div dl dt '
    + 'fieldset figcaption figure footer form h1 h2 h3 h4 h5 h6 header hgroup hr html legend li main menu nav ol '
    + 'p pre search section summary table tbody td tfoot th thead tr ul').split(' '));

// Blocks that hold nothing but running text (HTML, phrasing content), and those of them that may become another one.
const textBlocks = new Set('p h1 h2 h3 h4 h5 h6 pre address dt summary legend figcaption caption'.split(' '));
const plainBlocks = new Set('p h1 h2 h3 h4 h5 h6 pre address'.split(' '));
// Blocks that take text but neither lists nor quotes.
const headBlocks = 'summary, legend, caption, dt';

const isBlock = (node) => node instanceof Element && blockNames.has(node.localName);
const isHeading = (node) => /^h[1-6]$/.test(node.localName);
const isHidden = (node) => node instanceof Comment || node instanceof Element && !node.matches(serverCode)
    && /^(script|style|template|link|meta|base|title)$/.test(node.localName);
const holdsBlocks = (node) => node instanceof Element && node.querySelector(Array.from(blockNames).join()) !== null;
// Part of a line of text.
const isInline = (node) => node && !isBlock(node) && !isHidden(node) && !holdsBlocks(node);
const isBlank = (node) => node instanceof Text && !/[^ \t\r\n\f]/.test(node.data);

// The innermost block around a node, which may be the node itself.
function blockOf(node) {
    while (node && !isBlock(node))
        node = node.parentNode;
    return node || document.body;
}

function closestAt(node, selector) {
    const element = node instanceof Element ? node : node && node.parentElement;
    return element ? element.closest(selector) : null;
}

// The innermost element of the kind around a node, in the same cell of a table.
function closestInCell(node, selector) {
    const element = closestAt(node, `${selector}, td, th, caption`);
    return element && element.matches(selector) ? element : null;
}

function currentRange() {
    const selection = getSelection();
    return selection.rangeCount ? selection.getRangeAt(0) : null;
}

function setCaret(node, offset) {
    getSelection().collapse(node, offset);
}

const visibleElements = 'img, hr, table, video, audio, iframe, object, svg, math, input, textarea, select, button, canvas, '
    + 'embed, meter, progress, picture';

// Whether nothing opens a line in the block.
function isBlankBlock(block) {
    return block.textContent.replace(/[ \t\r\n\f]/g, '') === '' && !block.querySelector(visibleElements)
        && !block.querySelector(serverCode);
}

const formattingNames = new Set(('a abbr b big cite code del dfn em font i ins kbd mark q s samp small span strike strong '
    + 'sub sup tt u var').split(' '));

// Whether the block holds nothing that an author put there: neither text nor an icon or another element that only a
// style sheet shows, nor a comment or script.
function isEmptyBlock(block) {
    if (!isBlankBlock(block))
        return false;
    const walker = document.createTreeWalker(block, NodeFilter.SHOW_ELEMENT | NodeFilter.SHOW_COMMENT);
    for (let node; (node = walker.nextNode());)
        if (isHidden(node) || node.localName !== 'br' && !isBlock(node)
            && (!formattingNames.has(node.localName) || node.attributes.length > 0))
            return false;
    return true;
}

// Nodes that are visible by themselves: text that is not blank, and elements that can't have content.
function isLeaf(node) {
    return node instanceof Text ? !isBlank(node) : node instanceof Element && holdsNothing(node);
}

function leavesOf(range) {
    const leaves = [];
    const walker = document.createTreeWalker(range.commonAncestorContainer, NodeFilter.SHOW_ALL);
    for (let node = walker.currentNode; node; node = walker.nextNode())
        if (isLeaf(node) && range.intersectsNode(node) && !onlyTouches(range, node))
            leaves.push(node);
    return leaves;
}

// A selection that starts at the end of a text, or ends at its beginning, contains nothing of it.
function onlyTouches(range, node) {
    if (range.collapsed || !(node instanceof Text))
        return false;
    return range.startContainer === node && range.startOffset === node.length
        || range.endContainer === node && range.endOffset === 0;
}

// The innermost blocks of the selection, in document order, without the body.
function selectedBlocks() {
    const range = currentRange();
    if (!range)
        return [];
    const blocks = new Set(leavesOf(range).map(blockOf));
    if (blocks.size === 0)
        blocks.add(blockOf(range.startContainer));
    blocks.delete(document.body);
    return Array.from(blocks);
}

// Wraps inline content that stands beside blocks, or directly in the body, in a block: everything inline around
// `node`, up to the neighbouring blocks.
function wrapInline(node, name) {
    const block = blockOf(node);
    while (node.parentNode !== block)
        node = node.parentNode;
    let first = node;
    let last = node;
    while (isInline(first.previousSibling))
        first = first.previousSibling;
    while (isInline(last.nextSibling))
        last = last.nextSibling;
    // Line ends and indentation stay outside.
    while (first !== last && first !== node && isBlank(first))
        first = first.nextSibling;
    while (first !== last && last !== node && isBlank(last))
        last = last.previousSibling;
    const wrapper = document.createElement(name);
    keepingSelection(() => {
        first.before(wrapper);
        while (wrapper.nextSibling !== last)
            wrapper.append(wrapper.nextSibling);
        wrapper.append(last);
    });
    return wrapper;
}

function copyAttributes(from, to) {
    for (const attribute of from.attributes)
        to.setAttributeNode(attribute.cloneNode());
}

// Changes a block's name; attributes and content stay.
function renameBlock(block, name) {
    if (block.localName === name)
        return block;
    const renamed = document.createElement(name);
    copyAttributes(block, renamed);
    keepingSelection(() => {
        renamed.append(...block.childNodes);
        block.replaceWith(renamed);
    });
    return renamed;
}

function unwrap(element) {
    keepingSelection(() => element.replaceWith(...element.childNodes));
}

// Runs `change`, which moves nodes, and restores the selection at their new place.
function keepingSelection(change) {
    const selection = getSelection();
    const { anchorNode, anchorOffset, focusNode, focusOffset } = selection;
    const child = anchorNode instanceof Element ? anchorNode.childNodes[anchorOffset] : null;
    change();
    if (anchorNode && anchorNode.isConnected && focusNode.isConnected)
        selection.setBaseAndExtent(anchorNode, Math.min(anchorOffset, lengthOf(anchorNode)),
            focusNode, Math.min(focusOffset, lengthOf(focusNode)));
    else if (child && child.isConnected)
        selection.collapse(child.parentNode, Array.prototype.indexOf.call(child.parentNode.childNodes, child));
}

function lengthOf(node) {
    return node instanceof CharacterData ? node.length : node.childNodes.length;
}

// Whether nothing visible lies between the caret and the block's start or end.
function isAtEdge(range, block, edge) {
    const rest = document.createRange();
    rest.selectNodeContents(block);
    if (edge === 'start')
        rest.setEnd(range.startContainer, range.startOffset);
    else
        rest.setStart(range.endContainer, range.endOffset);
    const held = rest.cloneContents();
    held.querySelectorAll('br').forEach((br) => edge === 'end' && !br.nextSibling && br.remove());
    return /^[ \t\r\n\f]*$/.test(held.textContent)
        && !Array.from(held.querySelectorAll('*')).some((element) => holdsNothing(element));
}

// Splits a block at the caret and returns the second half, a block of the same kind. Ids stay with the first
// half, as they must be unique.
function splitBlock(block, range) {
    const rest = document.createRange();
    rest.setStart(range.endContainer, range.endOffset);
    rest.setEnd(block, block.childNodes.length);
    const emptied = elementsBetween(range.endContainer, block);
    const second = block.cloneNode(false);
    second.append(rest.extractContents());
    for (const element of [second, ...second.querySelectorAll('[id]')])
        if (element === second || document.getElementById(element.id))
            element.removeAttribute('id');
    block.after(second);
    knowStyles(second);
    // Of an element that is split, the half that got nothing goes; of an empty one, the copy.
    const halves = [];
    let half = second;
    for (const element of emptied.reverse()) {
        half = half.firstChild;
        if (!half || half.localName !== element.localName)
            break;
        halves.unshift([element, half]);
    }
    for (const [element, copy] of halves)
        removeVacant(isVacant(copy) ? copy : element);
    for (const each of [block, second]) {
        each.normalize();
        keepOpen(each);
    }
    return second;
}

// The elements around a node below `block`, the innermost first.
function elementsBetween(node, block) {
    const elements = [];
    for (; node && node !== block; node = node.parentNode)
        if (node instanceof Element)
            elements.push(node);
    return elements;
}

const isVacant = (element) => Array.from(element.childNodes).every((node) => node instanceof Text && node.length === 0);

// Removes an inline element that an edit has emptied.
function removeVacant(element) {
    if (!isBlock(element) && isVacant(element))
        element.remove();
}

// An empty block has no line to type in without a line break.
function keepOpen(block) {
    if (isBlankBlock(block) && !block.querySelector('br') && !Array.from(block.children).some(isBlock))
        block.append(document.createElement('br'));
}

function caretToStart(block) {
    const walker = document.createTreeWalker(block, NodeFilter.SHOW_TEXT);
    const text = walker.nextNode();
    if (text && blockOf(text) === block)
        setCaret(text, 0);
    else
        setCaret(block, 0);
}

// Appends the second block's first line to the end of the first one's, removes what that leaves empty, and sets the
// caret between. Further content of the second stays where it is.
function joinBlocks(first, second) {
    dropLastBreak(first);
    const at = first.lastChild;
    const around = second.parentElement;
    const line = [];
    for (let node = second.firstChild; node && !isBlock(node); node = node.nextSibling)
        line.push(node);
    if (isEmptyBlock(second))
        line.splice(0).forEach((node) => node.remove());
    first.append(...line);
    if (Array.from(second.childNodes).every(isBlank)) {
        second.remove();
        removeEmptied(around);
    }
    keepOpen(first);
    caretBehind(first, at);
}

function dropLastBreak(block) {
    const last = block.lastChild;
    if (last instanceof Element && last.localName === 'br')
        last.remove();
}

function caretBehind(block, node) {
    if (!node)
        caretToStart(block);
    else if (node instanceof Text)
        setCaret(node, node.length);
    else
        setCaret(block, Array.prototype.indexOf.call(block.childNodes, node) + 1);
}

function removeEmptied(element) {
    while (element && element !== document.body && !element.matches('td, th, caption')
        && Array.from(element.childNodes).every(isBlank)) {
        const around = element.parentElement;
        element.remove();
        element = around;
    }
}
