// SPDX-License-Identifier: GPL-3.0-or-later
// Repeats changes of the editor's tree in the page. Only what differs is touched, so images, caret and scroll position
// stay.

'use strict';

// Applies the changes if the page has changed no more often than the editor knows, and all of them fit; otherwise
// returns false, and the page has to be shown anew. `placing` says whether the caret goes to the last change.
function applyChanges(known, list, placing) {
    if (countOfChanges() !== known)
        return false;
    patching.place = null;
    try {
        if (!list.every(applyChange))
            return false;
    } finally {
        changes.observer.takeRecords(); // These changes come from the editor.
        forgetFingerprint();
    }
    if (placing)
        placeCaret();
    postFormats();
    return true;
}

const patching = { place: null }; // node and offset of the last change

function applyChange({ path, name, before, after, markup, elements, attributes }) {
    const element = elementAtPath(path);
    if (!element || element.localName !== name)
        return false;
    if (attributes) {
        copyExactly(attributes, element);
        return true;
    }
    const length = element.children.length;
    const holder = document.createElementNS(element.namespaceURI, name);
    holder.innerHTML = markup;
    if (before + after > length || countElements([holder]) !== elements + 1)
        return false;
    const first = before > 0 ? element.children[before - 1].nextSibling : element.firstChild;
    const end = after > 0 ? element.children[length - after] : null;
    exchangeRun(element, first, end, holder);
    knowStyles(element);
    return true;
}

function elementAtPath(path) {
    let element = document.documentElement;
    for (const step of path)
        element = element && element.children[step];
    return element;
}

function copyExactly(attributes, element) {
    openedDetails.delete(element);
    const names = new Set(attributes.map(([name]) => name));
    for (const { name } of Array.from(element.attributes))
        if (!names.has(name) && !isOwnSpellcheck(element.getAttributeNode(name)))
            element.removeAttribute(name);
    for (const [name, value] of attributes)
        if (element.getAttribute(name) !== value)
            element.setAttribute(name, value);
    if (Array.from(element.attributes).some(({ name }, index) => name !== attributes[index][0])) {
        names.forEach((name) => element.removeAttribute(name));
        attributes.forEach(([name, value]) => element.setAttribute(name, value));
    }
}

// The children from `first` up to `end` become what `holder` holds. Equal nodes at both ends stay; one element that
// gives way to another of its name is changed from within.
function exchangeRun(parent, first, end, holder) {
    while (first !== end && holder.firstChild && first.isEqualNode(holder.firstChild)) {
        first = first.nextSibling;
        holder.firstChild.remove();
    }
    const previousOf = (node) => node ? node.previousSibling : parent.lastChild;
    while (first !== end && holder.lastChild && previousOf(end).isEqualNode(holder.lastChild)) {
        end = previousOf(end);
        holder.lastChild.remove();
    }
    if (first === end && !holder.firstChild)
        return;
    const isOne = first !== end && first.nextSibling === end && holder.childNodes.length === 1;
    if (isOne && first instanceof Text && holder.firstChild instanceof Text) {
        exchangeText(first, holder.firstChild.data);
    } else if (isOne && isSameKind(first, holder.firstChild)) {
        copyExactly(Array.from(holder.firstChild.attributes, ({ name, value }) => [name, value]), first);
        exchangeRun(first, first.firstChild, null, holder.firstChild);
    } else {
        const range = document.createRange();
        range.setStart(parent, positionOf(parent, first));
        range.setEnd(parent, positionOf(parent, end));
        range.deleteContents();
        let last = holder.lastChild;
        parent.insertBefore(fragmentOf(holder), end);
        for (last = last || previousOf(end); isBlank(last); last = last.previousSibling);
        patching.place = last ? placeBehind(last) : [parent, 0];
    }
}

const isSameKind = (a, b) => a instanceof Element && b instanceof Element && a.localName === b.localName
    && a.namespaceURI === b.namespaceURI && !(a instanceof HTMLTemplateElement);

const positionOf = (parent, node) => node ? Array.prototype.indexOf.call(parent.childNodes, node) : parent.childNodes.length;

function fragmentOf(holder) {
    const fragment = document.createDocumentFragment();
    fragment.append(...holder.childNodes);
    return fragment;
}

// Where the text that a node ends with is to be continued.
function placeBehind(node) {
    while (node.lastChild && !holdsNothing(node))
        node = node.lastChild;
    return node instanceof Text ? [node, node.length] : [node.parentNode, positionOf(node.parentNode, node) + 1];
}

function exchangeText(node, text) {
    const before = node.data;
    let start = 0;
    while (start < Math.min(before.length, text.length) && before[start] === text[start])
        ++start;
    let rest = 0;
    while (rest < Math.min(before.length, text.length) - start
        && before[before.length - 1 - rest] === text[text.length - 1 - rest])
        ++rest;
    node.replaceData(start, before.length - rest - start, text.slice(start, text.length - rest));
    patching.place = [node, text.length - rest];
}

function placeCaret() {
    const [node, offset] = patching.place || [];
    if (!node || !document.body || !document.body.contains(node))
        return;
    setCaret(node, offset);
    const shown = node instanceof Text ? node.parentElement : node.childNodes[offset - 1] || node;
    if (shown instanceof Element && shown !== document.body)
        reveal(shown);
}
