// SPDX-License-Identifier: GPL-3.0-or-later
// Reports changes of the page ("mutationObserver"), once for everything that one event changed, with the number
// of changes so far. The editor decides when to read the page: with the page's own scripts switched off, timers
// don't run here.

'use strict';

const changes = { count: 0 };

// A change of the title's text, which only a script can make here, is also sent as text.
function postTitle(records) {
    const title = document.querySelector('head > title');
    if (title && records.some((record) => title.contains(record.target)))
        post('callback_text', title.textContent);
}

function postChanges(records) {
    if (records.length === 0)
        return;
    postTitle(records);
    post('mutationObserver', ++changes.count);
}

// The number of changes, those of the current event included. A blank that is a no-break space for the moment is
// made a plain one first.
function countOfChanges() {
    settleBlank();
    postChanges(changes.observer.takeRecords());
    return changes.count;
}

// That number and the page's markup if it is greater than `known`; otherwise an empty list.
function markupSince(known) {
    return countOfChanges() > known ? [changes.count, document.documentElement.outerHTML] : [];
}

changes.observer = new MutationObserver(postChanges);

changes.observer.observe(document, {
    attributes: true,
    characterData: true,
    childList: true,
    subtree: true,
});
