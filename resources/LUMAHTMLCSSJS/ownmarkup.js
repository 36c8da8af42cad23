// SPDX-License-Identifier: GPL-3.0-or-later
// What is cut, copied or dragged in one of LUMA's own pages keeps everything that it holds. It travels beside the ordinary
// markup with a secret that only the editor's pages know, as any page can put anything on the clipboard.

'use strict';

const ownType = 'application/x-luma-markup';
const addressAttributes = 'href src poster data action formaction background cite longdesc xlink:href'.split(' ');
const idAttributes = ('for form headers list aria-controls aria-describedby aria-details aria-flowto aria-labelledby '
    + 'aria-owns').split(' ');
// Elements that are nothing without the ones around them.
const partsOfWholes = /^(ul|ol|menu|dl|table|tbody|thead|tfoot|tr)$/;

const ownSecret = () => bridge.object && bridge.object.secret;

// The markup of a range, inside the styles, links, lists and tables around it.
function markupOf(range) {
    let contents = range.cloneContents();
    const node = range.commonAncestorContainer;
    for (let around = node instanceof Element ? node : node.parentElement;
        around && (!isBlock(around) || partsOfWholes.test(around.localName)); around = around.parentElement) {
        const copy = around.cloneNode(false);
        copy.append(contents);
        contents = copy;
    }
    const holder = document.createElement('div');
    holder.append(contents);
    withoutOwnSpellcheck(holder);
    for (const part of partsOf(holder))
        beginningWithLineEnd(part).forEach((element) => element.prepend('\n'));
    return holder.innerHTML;
}

function giveOwn(transfer, range) {
    if (ownSecret())
        transfer.setData(ownType, JSON.stringify({ secret: ownSecret(), base: document.baseURI, markup: markupOf(range) }));
}

function give(transfer, range) {
    transfer.setData('text/html', markupOf(range));
    transfer.setData('text/plain', getSelection().toString());
    giveOwn(transfer, range);
}

// The engine's own copying carries the look of a page over, and its own cutting leaves no-break spaces behind.
for (const type of ['copy', 'cut'])
    document.addEventListener(type, (event) => {
        const range = currentRange();
        if (!range || range.collapsed)
            return;
        event.preventDefault();
        give(event.clipboardData, range);
        if (type === 'copy')
            return;
        deleteSelection();
        showLastBlank();
    }, true);

document.addEventListener('dragstart', ({ target, dataTransfer }) => {
    let range = currentRange();
    if (!range || range.collapsed || !range.intersectsNode(target)) {
        range = document.createRange();
        range.selectNode(target);
    }
    giveOwn(dataTransfer, range);
}, true);

// What another place of LUMA's own pages gave, ready for this one; null for anything else.
function ownFragment(transfer) {
    const own = ownSecret() ? parsedOwn(transfer.getData(ownType)) : {};
    if (!own.secret || own.secret !== ownSecret())
        return null;
    const holder = document.createElement('template');
    holder.innerHTML = own.markup;
    const fragment = document.adoptNode(holder.content);
    if (Array.from(fragment.childNodes).some(isBlock))
        while (isBlank(fragment.lastChild))
            fragment.lastChild.remove();
    rebaseLinks(fragment, own.base);
    return fragment;
}

function parsedOwn(text) {
    try {
        return Object(JSON.parse(text));
    } catch {
        return {};
    }
}

function makeIdsUnique(fragment) {
    const renamed = new Map();
    const taken = new Set();
    for (const element of fragment.querySelectorAll('[id]')) {
        const before = element.id;
        for (let number = 2; taken.has(element.id) || document.getElementById(element.id); ++number)
            element.id = `${before}-${number}`;
        taken.add(element.id);
        if (element.id !== before)
            renamed.set(before, element.id);
    }
    if (renamed.size === 0)
        return;
    const nameOf = (id) => renamed.get(id) || id;
    for (const element of fragment.querySelectorAll('*')) {
        for (const name of idAttributes.filter((each) => element.hasAttribute(each)))
            element.setAttribute(name, element.getAttribute(name).split(/\s+/).map(nameOf).join(' '));
        for (const name of ['href', 'xlink:href'].filter((each) => (element.getAttribute(each) || '').startsWith('#')))
            element.setAttribute(name, '#' + nameOf(element.getAttribute(name).slice(1)));
    }
}

// Links from another page lead to the same files from here.
function rebaseLinks(fragment, base) {
    if (new URL(base).pathname === new URL(document.baseURI).pathname)
        return;
    const isInside = (address) => address.startsWith('#') && fragment.getElementById(address.slice(1));
    const rebased = (address) => isInside(address) ? address : rebasedAddress(address, base);
    for (const element of fragment.querySelectorAll('*')) {
        for (const name of addressAttributes.filter((each) => element.hasAttribute(each)))
            element.setAttribute(name, rebased(element.getAttribute(name)));
        for (const name of ['srcset', 'imagesrcset'].filter((each) => element.hasAttribute(each)))
            element.setAttribute(name, element.getAttribute(name).replace(/(^|,\s+|,(?=\S+\s))(\s*)([^\s,]\S*)/g,
                (all, comma, blanks, address) => comma + blanks + rebased(address)));
    }
}

// Server code, addresses of other schemes and those from the site's root stay.
function rebasedAddress(address, base) {
    if (address.trim() === '' || /^\s*(\/|\\|[a-z][a-z0-9+.-]*:)/i.test(address) || /<[?%]|\{[{%]/.test(address))
        return address;
    const target = new URL(address, base);
    if (target.protocol !== location.protocol)
        return target.href;
    const here = new URL(document.baseURI).pathname.split('/').slice(0, -1);
    const there = target.pathname.split('/');
    let same = 0;
    while (same < here.length && same < there.length - 1 && here[same] === there[same])
        ++same;
    const path = '../'.repeat(here.length - same) + there.slice(same).join('/');
    return (path === '' || /^[^/]*:/.test(path) ? './' : '') + path + target.search + target.hash;
}

// Items among items join the list. Returns whether they did.
function insertItems(fragment) {
    const list = fragment.firstElementChild;
    const item = currentRange() && itemAt(blockOf(currentRange().startContainer));
    if (!item || !list || fragment.children.length > 1 || list.localName !== item.parentElement.localName)
        return false;
    const last = list.lastElementChild;
    item.after(...list.childNodes);
    if (isEmptyBlock(item))
        item.remove();
    caretToEnd(last || item);
    return true;
}
