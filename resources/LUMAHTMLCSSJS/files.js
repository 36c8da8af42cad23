// SPDX-License-Identifier: GPL-3.0-or-later
// The files that the page shows, and showing them again when they have changed on disk.

'use strict';

const renewal = {
    waiting: 0, // calls whose files have not been dropped yet
    links: new Set(), // that load their sheets again
};

const withoutFragment = (address) => address.replace(/#.*$/, '');

// The addresses of style sheets, imported ones included, images, and what the styles show.
function shownFiles() {
    const addresses = new Set(Array.from(document.images, (image) => withoutFragment(image.currentSrc || image.src)));
    for (const sheet of document.styleSheets)
        addFiles(sheet, addresses);
    for (const [{ style }, base] of stylesThatShowFiles())
        filesOfStyle(style.cssText, base).forEach((address) => addresses.add(address));
    addresses.delete('');
    return Array.from(addresses);
}

function addFiles(sheet, addresses) {
    if (sheet.href && addresses.has(sheet.href))
        return;
    addresses.add(sheet.href || '');
    for (const { styleSheet } of rulesOf(sheet))
        if (styleSheet)
            addFiles(styleSheet, addresses);
}

// The rules and the elements whose styles hold addresses, each with the address of the file that holds it.
function* stylesThatShowFiles() {
    for (const element of document.querySelectorAll('[style*="url("]'))
        yield [element, document.baseURI];
    for (const [rule, sheet] of styleRulesOfPage())
        yield [rule, sheet.href || document.baseURI];
}

// The engine writes each address in double quotes.
function filesOfStyle(declarations, base) {
    return Array.from(declarations.matchAll(/url\("((?:\\[^]|[^"\\])*)"\)/g), ([, address]) => address)
        .filter((address) => !address.startsWith('data:'))
        .map((address) => withoutFragment(resolvedAddress(withoutEscapes(address), base)));
}

function resolvedAddress(address, base) {
    try {
        return new URL(address, base).href;
    } catch {
        return '';
    }
}

// The engine keeps what it has loaded from a private scheme for ever, by address and kind: a request of another kind
// replaces it.
function dropKept(address) {
    return new Promise((done) => {
        const request = new XMLHttpRequest();
        request.onloadend = done;
        request.open('GET', address);
        request.send();
    });
}

// Loads these files again; what is shown stays until they are there. Nothing of the page's markup changes.
async function renewFiles(addresses) {
    ++renewal.waiting;
    await Promise.all(addresses.map(dropKept));
    --renewal.waiting;
    const uses = (sheet) => {
        const files = new Set();
        addFiles(sheet, files);
        return addresses.some((address) => files.has(address));
    };
    postChanges(changes.observer.takeRecords());
    const owners = Array.from(document.styleSheets).filter(uses).map(({ ownerNode }) => ownerNode);
    // What is still being loaded is not among the sheets, and may show the files as they were.
    for (const owner of new Set([...owners, ...renewal.links])) {
        if (owner.localName === 'link') {
            renewal.links.add(owner);
            setAgain(owner, 'href');
        } else {
            owner.firstChild.data += '';
        }
    }
    // A style that is set again, as it is, shows its files as they are.
    for (const [styled, base] of stylesThatShowFiles()) {
        if (!filesOfStyle(styled.style.cssText, base).some((address) => addresses.includes(address)))
            continue;
        if (styled instanceof Element)
            setAgain(styled, 'style');
        else
            styled.style.cssText += '';
    }
    for (const image of document.images)
        if (addresses.includes(withoutFragment(image.currentSrc || image.src)))
            ['srcset', 'src'].forEach((name) => setAgain(image, name));
    changes.observer.takeRecords();
}

// Tells the editor once the sheets are there, or that it has waited long enough, and says so: the engine sends no event
// when an element loads its sheet another time.
function tellIfRenewed(isLastQuestion) {
    const isLoaded = (sheet) => Boolean(sheet) &&
        Array.from(rulesOf(sheet)).every((rule) => !('styleSheet' in rule) || isLoaded(rule.styleSheet));
    const isThere = (link) => !link.isConnected || isLoaded(link.sheet);
    if (!isLastQuestion && (renewal.waiting > 0 || !Array.from(renewal.links).every(isThere)))
        return false;
    renewal.links.clear();
    if (media.isDark || media.isPrint)
        applyMedia();
    send('tellLoaded', location.href);
    return true;
}

function setAgain(element, name) {
    if (element.hasAttribute(name))
        element.setAttribute(name, element.getAttribute(name));
}
