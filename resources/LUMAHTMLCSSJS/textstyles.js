// SPDX-License-Identifier: GPL-3.0-or-later
// Text styles and block formats by title, as in the menus.

'use strict';

const textStyles = {
    'Bold': { inline: 'b', selector: 'b, strong' },
    'Italic': { inline: 'i', selector: 'i, em' },
    'Underline': { inline: 'u', selector: 'u' },
    'Strike Through': { inline: 's', selector: 's, strike, del' },
    'Superscript': { inline: 'sup', selector: 'sup' },
    'Subscript': { inline: 'sub', selector: 'sub' },
    'Code': { inline: 'code', selector: 'code' },
    'Paragraph': { block: 'p' },
    'Heading 1': { block: 'h1' },
    'Heading 2': { block: 'h2' },
    'Heading 3': { block: 'h3' },
    'Heading 4': { block: 'h4' },
    'Heading 5': { block: 'h5' },
    'Heading 6': { block: 'h6' },
    'Preformatted': { block: 'pre' },
    'Block Quote': { around: 'blockquote' },
    'Ordered List': { list: 'ol' },
    'Unordered List': { list: 'ul' },
};

const allInlineStyles = 'b, strong, i, em, u, s, strike, del, sup, sub, code, font, big, small, tt, mark, kbd, samp, '
    + 'var, span[style]:not([class]):not([id])';

// The titles of all styles at the selection.
function getTextTags() {
    const range = currentRange();
    if (!range)
        return [];
    const nodes = range.collapsed ? [range.startContainer] : leavesOf(range);
    return Object.keys(textStyles).filter((title) =>
        nodes.length > 0 && nodes.every((node) => closestInCell(node, selectorOfStyle(textStyles[title]))));
}

function selectorOfStyle(style) {
    return style.selector || style.block || style.around || style.list;
}

function toggleStyle(title) {
    if (getTextTags().includes(title))
        removeStyle(title);
    else
        applyStyle(title);
}

function applyStyle(title) {
    const style = Object.hasOwn(textStyles, title) ? textStyles[title] : null;
    if (!style || !currentRange())
        return;
    if (style.inline)
        applyInline(style);
    else if (style.block)
        applyBlock(style.block);
    else if (style.around)
        quoteBlocks(selectedParagraphs());
    else if (!getTextTags().includes(title))
        toggleList(style.list);
    cleanUp();
}

// Removes a style from the selection; without a title, all text styles.
function removeStyle(title) {
    if (!currentRange() || title && !Object.hasOwn(textStyles, title))
        return;
    const style = title ? textStyles[title] : { inline: 'span', selector: allInlineStyles };
    if (style.inline)
        removeInline(style.selector);
    else if (style.block)
        selectedBlocks().filter((block) => block.localName === style.block)
            .forEach((block) => block.parentElement.matches(headBlocks) ? unwrap(block) : renameBlock(block, 'p'));
    else if (style.around)
        new Set(selectedBlocks().map(quoteAt))
            .forEach((quote) => quote && unwrap(quote));
    else if (getTextTags().includes(title))
        toggleList(style.list);
    cleanUp();
}

// Blocks

function blocksOrWrapped() {
    const blocks = selectedBlocks();
    return blocks.length > 0 ? blocks : [wrapInline(inlineAtCaret(), 'p')];
}

// The selected blocks of text and list items; what stands bare in a cell, a division or beside blocks is made a
// paragraph. None in blocks that can hold no others.
function selectedParagraphs() {
    const leaves = leavesOf(currentRange());
    const blocks = new Set();
    for (const leaf of leaves.length > 0 ? leaves : [inlineAtCaret()]) {
        const block = blockOf(leaf);
        if (plainBlocks.has(block.localName) || block.localName === 'li')
            blocks.add(block);
        else if (!block.matches(headBlocks))
            blocks.add(wrapInline(leaf, 'p'));
    }
    return Array.from(blocks);
}

// The inline node at the caret; a new line break if there is none.
function inlineAtCaret() {
    const { startContainer, startOffset } = currentRange();
    if (!isBlock(startContainer))
        return startContainer;
    const child = startContainer.childNodes[startOffset] || startContainer.lastChild;
    if (isInline(child))
        return child;
    const line = document.createElement('br');
    startContainer.insertBefore(line, startContainer.childNodes[startOffset] || null);
    setCaret(startContainer, Array.prototype.indexOf.call(startContainer.childNodes, line));
    return line;
}

function applyBlock(name) {
    const leaves = leavesOf(currentRange());
    const blocks = new Set();
    for (const leaf of leaves.length > 0 ? leaves : [inlineAtCaret()]) {
        const block = blockOf(leaf);
        blocks.add(plainBlocks.has(block.localName) ? block : wrapInline(leaf, name));
    }
    blocks.forEach((block) => renameBlock(block, name));
}

// Running text

// The text nodes of the selection, split at its ends so that each is selected entirely.
function selectedTexts() {
    if (currentRange().collapsed)
        selectWord();
    const range = currentRange();
    const texts = leavesOf(range).filter((node) => node instanceof Text);
    const { startContainer, startOffset, endContainer, endOffset } = range;
    const last = texts.length - 1;
    if (last >= 0 && texts[last] === endContainer && endOffset < endContainer.length)
        endContainer.splitText(endOffset);
    if (last >= 0 && texts[0] === startContainer && startOffset > 0)
        texts[0] = startContainer.splitText(startOffset);
    return texts;
}

function selectWord() {
    const selection = getSelection();
    const { anchorNode, anchorOffset } = selection;
    if (!(anchorNode instanceof Text))
        return;
    const before = anchorNode.data.slice(0, anchorOffset).match(/[\p{L}\p{N}_]*$/u)[0].length;
    const after = anchorNode.data.slice(anchorOffset).match(/^[\p{L}\p{N}_]*/u)[0].length;
    selection.setBaseAndExtent(anchorNode, anchorOffset - before, anchorNode, anchorOffset + after);
}

function selectTexts(texts) {
    const connected = texts.filter((text) => text.isConnected);
    if (connected.length === 0)
        return;
    const last = connected[connected.length - 1];
    getSelection().setBaseAndExtent(connected[0], 0, last, last.length);
}

function applyInline(style) {
    const texts = selectedTexts();
    for (const text of texts) {
        if (text.parentElement.closest(style.selector))
            continue;
        const before = text.previousSibling;
        if (before instanceof Element && before.localName === style.inline && texts.includes(before.lastChild)) {
            before.append(text);
            continue;
        }
        const wrapper = document.createElement(style.inline);
        text.replaceWith(wrapper);
        wrapper.append(text);
    }
    selectTexts(texts);
}

function removeInline(selector) {
    const texts = selectedTexts();
    for (const text of texts)
        for (let styled; (styled = text.parentElement.closest(selector));)
            freeFrom(styled, text);
    selectTexts(texts);
}

// Removes `styled` around `node` and keeps it around the rest of its content.
function freeFrom(styled, node) {
    for (let inner = node; inner !== styled; inner = inner.parentNode)
        for (const sibling of Array.from(inner.parentNode.childNodes))
            if (sibling !== inner && !isBlank(sibling)) {
                const copy = styled.cloneNode(false);
                sibling.replaceWith(copy);
                copy.append(sibling);
                knowStyles(copy);
            }
    styled.replaceWith(...styled.childNodes);
}

// Styles that are chosen at a caret: what is typed next there gets them, or is freed from them.

function toggleNextStyle(title) {
    const titles = new Set(takePendingStyles());
    if (!titles.delete(title))
        titles.add(title);
    waitWithStyles(Array.from(titles));
}

function waitWithStyles(titles) {
    const { startContainer: node, startOffset: offset } = currentRange();
    typing.next = { node, offset, titles };
}

// None where the caret has moved on.
function nextStyles({ startContainer, startOffset }) {
    const { next } = typing;
    return next && next.node.isConnected && (next.node === startContainer && next.offset === startOffset
        || next.node.contains(startContainer) && next.node instanceof Element) ? next.titles : [];
}

function takePendingStyles() {
    const titles = nextStyles(currentRange());
    typing.next = null;
    return titles;
}

// The styles chosen at the caret that the edit has not brought about go on waiting, for the next letter.
function withWaitingStyles(edit) {
    const pending = takePendingStyles();
    const before = getTextTags();
    const result = edit(pending);
    const now = getTextTags();
    waitWithStyles(pending.filter((title) => now.includes(title) === before.includes(title)));
    return result;
}

// From the innermost element outwards, so that those around keep what else is in them.
function styleTyped(node, offset, length, titles) {
    const depthOf = (title) => {
        let depth = 0;
        for (let each = node.parentElement.closest(textStyles[title].selector); each; each = each.parentElement)
            ++depth;
        return depth;
    };
    const depths = new Map(titles.map((title) => [title, depthOf(title)]));
    for (const title of Array.from(titles).sort((a, b) => depths.get(b) - depths.get(a))) {
        getSelection().setBaseAndExtent(node, offset, node, offset + length);
        toggleStyle(title);
        ({ startContainer: node, startOffset: offset } = currentRange());
    }
    getSelection().collapseToEnd();
}
