// SPDX-License-Identifier: GPL-3.0-or-later
// The files that the page shows, and showing them again when they have changed on disk.

'use strict';

const withoutFragment = (address) => address.replace(/#.*$/, '');

// The addresses of style sheets, imported ones included, and images.
function shownFiles() {
    const addresses = new Set(Array.from(document.images, (image) => withoutFragment(image.currentSrc || image.src)));
    for (const sheet of document.styleSheets)
        addFiles(sheet, addresses);
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

// Stays on a sheet's element, as a load may begin before the last one has ended.
function tellSheetLoaded() {
    send('tellLoaded', location.href);
}

// Loads these files again; what is shown stays until they are there. Nothing of the page's markup changes.
async function renewFiles(addresses) {
    await Promise.all(addresses.map(dropKept));
    const uses = (sheet) => {
        const files = new Set();
        addFiles(sheet, files);
        return addresses.some((address) => files.has(address));
    };
    postChanges(changes.observer.takeRecords());
    for (const { ownerNode } of Array.from(document.styleSheets).filter(uses)) {
        if (ownerNode.localName === 'link') {
            ownerNode.addEventListener('load', tellSheetLoaded);
            setAgain(ownerNode, 'href');
        } else {
            ownerNode.firstChild.data += '';
        }
    }
    for (const image of document.images)
        if (addresses.includes(withoutFragment(image.currentSrc || image.src)))
            ['srcset', 'src'].forEach((name) => setAgain(image, name));
    changes.observer.takeRecords();
}

function setAgain(element, name) {
    if (element.hasAttribute(name))
        element.setAttribute(name, element.getAttribute(name));
}
