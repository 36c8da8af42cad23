// SPDX-License-Identifier: GPL-3.0-or-later
// Tells the editor that the page changed ("mutationObserver"), once for all that one event changed, with the
// number of such changes so far. The editor reads the page when it has the time: timers do not run here, as
// the page's scripts are switched off, so it is the editor that lets a burst pass.

const changes = { count: 0 };

// A change of the title's text, which only a script can make here, is told as text too.
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

// How many changes there were, those of this very moment included. A blank that stands for the moment only is
// settled first.
function countOfChanges() {
    settleBlank();
    postChanges(changes.observer.takeRecords());
    return changes.count;
}

changes.observer = new MutationObserver(postChanges);

changes.observer.observe(document, {
    attributes: true,
    characterData: true,
    childList: true,
    subtree: true,
});
