// SPDX-License-Identifier: GPL-3.0-or-later
// Details that are closed in the page, opened for editing. The attribute that shows them is the editor's: it is neither
// reported nor part of the page's markup.

'use strict';

const openedDetails = new Set();

function toggleDetails(details) {
    if (!details || details.open && !openedDetails.has(details))
        return;
    postChanges(changes.observer.takeRecords());
    if (openedDetails.delete(details)) {
        details.removeAttribute('open');
    } else {
        openedDetails.add(details);
        details.setAttribute('open', '');
    }
    changes.observer.takeRecords();
}

const holdsOpened = (node) => Array.from(openedDetails).some((details) => node.contains(details));

// Makes a copy of `node` what the page is without the editor's attributes.
function closeOpened(node, copy) {
    const all = (top) => [...top.matches('details') ? [top] : [], ...top.querySelectorAll('details')];
    const copies = all(copy);
    all(node).forEach((details, index) => openedDetails.has(details) && copies[index].removeAttribute('open'));
}
