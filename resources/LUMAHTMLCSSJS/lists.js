// SPDX-License-Identifier: GPL-3.0-or-later
// Lists: making and removing them, and moving items in and out.

'use strict';

const itemAt = (node) => closestInCell(node, 'li');
const quoteAt = (node) => closestInCell(node, 'blockquote');

const listOf = (item) => item.parentElement.closest('ol, ul, menu');

// Makes the selected blocks items of a list, or paragraphs again if they already are items of such a list.
function toggleList(name) {
    const blocks = selectedParagraphs();
    const items = blocks.map(itemAt);
    if (blocks.length === 0)
        return;
    if (items.every((item) => item && listOf(item).localName === name)) {
        new Set(items).forEach((item) => leaveList(item, { keepsAttributes: true }));
    } else if (items.every((item) => item)) {
        new Set(items.map(listOf)).forEach((list) => renameBlock(list, name));
    } else {
        byParent(blocks.filter((block, index) => !items[index])).forEach((group) => makeList(group, name));
    }
}

// Blocks of different cells or divisions stay apart.
function byParent(blocks) {
    const groups = new Map();
    for (const block of blocks)
        groups.set(block.parentElement, [...groups.get(block.parentElement) || [], block]);
    return Array.from(groups.values());
}

function makeList(blocks, name) {
    const list = document.createElement(name);
    keepingSelection(() => {
        blocks[0].before(list);
        for (const block of blocks) {
            const item = document.createElement('li');
            copyAttributes(block, item);
            item.append(...block.childNodes);
            block.remove();
            list.append(item);
        }
    });
    list.querySelectorAll('li').forEach(keepOpen);
}

// Takes an item out of its list: a nested item becomes the next item of the outer list, any other a paragraph.
// The items after it stay a list.
function leaveList(item, { keepsAttributes = false } = {}) {
    const list = listOf(item);
    const behind = list.cloneNode(false);
    behind.removeAttribute('id');
    const outer = itemAt(list.parentElement);
    const hadCaret = item.contains(getSelection().anchorNode);
    const blocks = [];
    keepingSelection(() => {
        blocks.push(...(outer ? [item] : paragraphsOf(item)));
        if (keepsAttributes && !outer && blocks[0].attributes.length === 0)
            copyAttributes(item, blocks[0]);
        while (item.nextSibling)
            behind.append(item.nextSibling);
        if (outer) {
            outer.after(item);
            if (behind.querySelector('li'))
                item.append(behind);
        } else {
            list.after(...blocks, ...(behind.querySelector('li') ? [behind] : []));
            item.remove();
        }
        if (!list.querySelector('li'))
            list.remove();
    });
    blocks.forEach(keepOpen);
    if (hadCaret && !blocks.some((block) => block.contains(getSelection().anchorNode)))
        caretToStart(blocks[0]);
}

// An item's content as blocks; inline content becomes a paragraph.
function paragraphsOf(item) {
    const blocks = [];
    let paragraph = null;
    for (const node of Array.from(item.childNodes)) {
        if (isBlock(node)) {
            paragraph = null;
            blocks.push(node);
        } else if (paragraph) {
            paragraph.append(node);
        } else if (!isBlank(node)) {
            paragraph = document.createElement('p');
            paragraph.append(node);
            blocks.push(paragraph);
        }
    }
    if (blocks.length === 0) {
        blocks.push(document.createElement('p'));
        keepOpen(blocks[0]);
    }
    return blocks;
}

// Items move into a list inside the previous item, other blocks into a block quote.
function indent() {
    const blocks = selectedParagraphs();
    const items = new Set(blocks.map(itemAt).filter((item) => item && item.previousElementSibling));
    keepingSelection(() => items.forEach(indentItem));
    const others = blocks.filter((block) => !itemAt(block));
    if (others.length > 0)
        quoteBlocks(others);
}

function indentItem(item) {
    const before = item.previousElementSibling;
    const last = before.lastElementChild;
    const list = last && last.localName === listOf(item).localName ? last : before.appendChild(
        document.createElement(listOf(item).localName));
    list.append(item);
}

function outdent() {
    const blocks = selectedBlocks();
    const items = new Set(blocks.map(itemAt).filter((item) => item));
    Array.from(items).reverse().forEach((item) => leaveList(item, { keepsAttributes: true }));
    new Set(blocks.filter((block) => !itemAt(block)).map(quoteAt))
        .forEach((quote) => quote && unwrap(quote));
}

function quoteBlocks(blocks) {
    const paragraphs = blocks.map((block) => block.localName === 'li'
        ? wrapInline(Array.from(block.childNodes).find((node) => isInline(node) && !isBlank(node)) || block.firstChild, 'p')
        : block);
    for (const group of byParent(paragraphs)) {
        const quote = document.createElement('blockquote');
        keepingSelection(() => {
            group[0].before(quote);
            quote.append(...group);
        });
    }
}
